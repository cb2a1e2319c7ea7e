#include "Zun/Utils/ZunBasicTypesContainer.h"

#include "Zun/Utils/VectorAlgorithms.h"

ZUN_VECTOR_DEFINE_PLAIN(ZunInt)
ZUN_VECTOR_DEFINE_PLAIN(ZunUint16)
