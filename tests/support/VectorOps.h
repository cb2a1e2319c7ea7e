// The C functions of one vector as members of a type, so that a test can be written once for all vectors:
//   TEST_VECTOR_OPS(ZunInt)   defines ZunIntVectorOps, with ZunIntVectorOps::PushBack(&v, &e) and so on.
#ifndef TESTS_SUPPORT_VECTOROPS_H
#define TESTS_SUPPORT_VECTOROPS_H

#include "Zun/Utils/ZunVector.h"

#define TEST_OP_(Prefix, Name) static constexpr auto Name = &Prefix##Name;

#define TEST_ITERATOR_OPS_(Name, Prefix)   \
  struct Name {                            \
    using I = Prefix;                      \
    using D = Prefix##DifferenceType;      \
    TEST_OP_(Prefix, ConstructCopy)        \
    TEST_OP_(Prefix, Assign)               \
    TEST_OP_(Prefix, Destruct)             \
    TEST_OP_(Prefix, Swap)                 \
    TEST_OP_(Prefix, Equal)                \
    TEST_OP_(Prefix, Less)                 \
    TEST_OP_(Prefix, ContentOf)            \
    TEST_OP_(Prefix, ContentOfConst)       \
    TEST_OP_(Prefix, At)                   \
    TEST_OP_(Prefix, ConstructExceptional) \
    TEST_OP_(Prefix, IsExceptional)        \
    TEST_OP_(Prefix, Increment)            \
    TEST_OP_(Prefix, Decrement)            \
    TEST_OP_(Prefix, IncrementN)           \
    TEST_OP_(Prefix, DecrementN)           \
    TEST_OP_(Prefix, Add)                  \
    TEST_OP_(Prefix, Subtract)             \
  };

#define TEST_VECTOR_OPS(Element) TEST_VECTOR_OPS_(Element, ZunVector_##Element)
#define TEST_VECTOR_OPS_(Element, Prefix)                                  \
  struct Element##VectorOps {                                              \
    using E = Element;                                                     \
    using V = Prefix;                                                      \
    using SizeType = Prefix##SizeType;                                     \
    TEST_OP_(Prefix, ConstructDefault)                                     \
    TEST_OP_(Prefix, ConstructN)                                           \
    TEST_OP_(Prefix, ConstructRange)                                       \
    TEST_OP_(Prefix, ConstructCopy)                                        \
    TEST_OP_(Prefix, Destruct)                                             \
    TEST_OP_(Prefix, Assign)                                               \
    TEST_OP_(Prefix, Swap)                                                 \
    TEST_OP_(Prefix, GetAllocator)                                         \
    TEST_OP_(Prefix, Empty)                                                \
    TEST_OP_(Prefix, Size)                                                 \
    TEST_OP_(Prefix, Capacity)                                             \
    TEST_OP_(Prefix, MaxSize)                                              \
    TEST_OP_(Prefix, Begin)                                                \
    TEST_OP_(Prefix, End)                                                  \
    TEST_OP_(Prefix, BeginConst)                                           \
    TEST_OP_(Prefix, EndConst)                                             \
    TEST_OP_(Prefix, RBegin)                                               \
    TEST_OP_(Prefix, REnd)                                                 \
    TEST_OP_(Prefix, RBeginConst)                                          \
    TEST_OP_(Prefix, REndConst)                                            \
    TEST_OP_(Prefix, At)                                                   \
    TEST_OP_(Prefix, AtConst)                                              \
    TEST_OP_(Prefix, Front)                                                \
    TEST_OP_(Prefix, FrontConst)                                           \
    TEST_OP_(Prefix, Back)                                                 \
    TEST_OP_(Prefix, BackConst)                                            \
    TEST_OP_(Prefix, PushBack)                                             \
    TEST_OP_(Prefix, PopBack)                                              \
    TEST_OP_(Prefix, Reserve)                                              \
    TEST_OP_(Prefix, Clear)                                                \
    TEST_OP_(Prefix, Insert)                                               \
    TEST_OP_(Prefix, InsertN)                                              \
    TEST_OP_(Prefix, InsertRange)                                          \
    TEST_OP_(Prefix, Erase)                                                \
    TEST_OP_(Prefix, EraseRange)                                           \
    TEST_OP_(Prefix, Resize)                                               \
    TEST_OP_(Prefix, Dump)                                                 \
    TEST_ITERATOR_OPS_(Iterator, Prefix##Iterator)                         \
    TEST_ITERATOR_OPS_(ConstIterator, Prefix##ConstIterator)               \
    TEST_ITERATOR_OPS_(ReverseIterator, Prefix##ReverseIterator)           \
    TEST_ITERATOR_OPS_(ConstReverseIterator, Prefix##ConstReverseIterator) \
  };

#endif
