/* The base types, and the types of quantities built on them. */
#ifndef ZUN_UTILS_ZUNTYPES_H
#define ZUN_UTILS_ZUNTYPES_H

#include "Zun/Utils/SysDep/ZunBaseTypes.h"

/* A point in time or a span of it, in nanoseconds. */
typedef ZunInt64 ZunTime;

#endif
