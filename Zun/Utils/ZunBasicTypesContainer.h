/* The vectors of base types. */
#ifndef ZUN_UTILS_ZUNBASICTYPESCONTAINER_H
#define ZUN_UTILS_ZUNBASICTYPESCONTAINER_H

#include "Zun/Utils/ZunVector.h"

ZUN_VECTOR_DECLARE(ZunInt)
ZUN_VECTOR_DECLARE(ZunUint16)

#endif
