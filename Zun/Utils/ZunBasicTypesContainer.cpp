#include "Zun/Utils/ZunBasicTypesContainer.h"

#include "Zun/Utils/VectorAlgorithms.h"

ZUN_VECTOR_USE_PLAIN(ZunInt)
ZUN_VECTOR_DEFINE(ZunInt)
ZUN_VECTOR_USE_PLAIN(ZunUint16)
ZUN_VECTOR_DEFINE(ZunUint16)
