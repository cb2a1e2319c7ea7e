/*
 * The typed vectors. ZUN_VECTOR_DECLARE(E), one line behind the declaration of the element type E, declares
 * ZunVector_E with every operation below; one line in a source defines them (VectorAlgorithms.h). With
 * V for ZunVector_E:
 *
 *   typedef struct V { ZunAllocator* allocator; E *begin, *end, *endBuf; } V;
 *   VSizeType; VIterator, VConstIterator, VReverseIterator, VConstReverseIterator and their DifferenceType
 *
 * Elements in [begin, end) are alive, [end, endBuf) is raw storage; the storage is one block of the vector's
 * allocator, and all three pointers are NULL while there is none. An element is built with EConstructCopy,
 * overwritten with EAssign and ended with EDestruct; it takes the allocator that its own copy chooses (that of
 * its source), never the vector's. Elements move to new storage by copy and destruct.
 *
 * What can fail does so only because an allocation is refused, a size overflows or an element's own operation
 * fails; it says so with false, NULL or the exceptional (NULL) iterator. `value` and ranges may lie in the vector
 * itself: the result is as if they had been copied first. Positions are not checked.
 *
 *   V* VConstructDefault(V* x, ZunAllocator* a)
 *       Empty, without storage. Cannot fail.
 *   V* VConstructN(V* x, VSizeType n, const E* value, ZunAllocator* a)
 *   V* VConstructRange(V* x, VConstIterator first, VConstIterator last, ZunAllocator* a)
 *   V* VConstructCopy(V* x, const V* o)
 *       n copies of *value, copies of [first, last), a copy of o with its allocator. The capacity is exactly the size.
 *       On failure x owns nothing.
 *   void VDestruct(V* x)
 *       Ends the elements from the last to the first and frees the storage. x is empty then; once more does nothing.
 *   V* VAssign(V* x, const V* o)
 *       Makes x a copy of o; x keeps its allocator. Within the capacity elements are overwritten in place: on failure x
 *       keeps what was done. Beyond it the storage is replaced by one of exactly o's size: when that is refused x is
 *       empty and without storage, when an element fails x keeps those before it.
 *   ZunBool VSwap(V* x, V* y)
 *       Exchanges the contents; each vector keeps its allocator. With one allocator the storage changes hands; with two
 *       the elements are copied, and on failure one of the vectors may have lost its own.
 *   ZunAllocator* VGetAllocator(const V* x); ZunBool VEmpty(const V* x)
 *   VSizeType VSize(const V* x), VCapacity(const V* x)
 *   VSizeType VMaxSize(void)
 *       (2^32 - 1) / sizeof(E). No operation checks it.
 *   VIterator VBegin(V* x), VEnd(V* x); VReverseIterator VRBegin(V* x), VREnd(V* x)
 *       VBeginConst, VEndConst, VRBeginConst, VREndConst for a const vector.
 *   E* VAt(V* x, VSizeType n), VFront(V* x), VBack(V* x)
 *       VAtConst, VFrontConst, VBackConst for a const vector.
 *   ZunBool VPushBack(V* x, const E* value)
 *       Appends a copy. A full vector first grows to twice its size, or to 2.
 *   void VPopBack(V* x)
 *       Ends the last element; there must be one.
 *   ZunBool VReserve(V* x, VSizeType capacity)
 *       Sees to storage for `capacity` elements. Never shrinks. x is unchanged on failure.
 *   void VClear(V* x)
 *       Ends the elements from the last to the first and keeps the storage.
 *   VIterator VInsert(V* x, VIterator pos, const E* value)
 *   ZunBool VInsertN(V* x, VIterator pos, VSizeType n, const E* value)
 *   ZunBool VInsertRange(V* x, VIterator pos, VConstIterator first, VConstIterator last)
 *       Insert before pos; VInsert gives the new element. The capacity, where it does not suffice, becomes the larger of
 *       twice the old one (2 * count without storage) and the new size. On failure the size is as it was, and elements
 *       from pos on may have the values of others.
 *   VIterator VErase(V* x, VIterator pos), VEraseRange(V* x, VIterator first, VIterator last)
 *       Move the elements behind down. VErase gives pos, VEraseRange gives `last` as it was given (`first` when there is
 *       nothing to erase). On failure x ends where an element could not be moved to.
 *   ZunBool VResize(V* x, VSizeType n, const E* value)
 *       Ends elements from the last on, or reserves size + n and appends copies of *value; false when it would have to
 *       append and value is NULL. When a copy fails, those before it stay.
 *   void VDump(const V* x)
 *       Does nothing.
 *
 * Iterators are plain pointers to elements; a reverse iterator holds the pointer one past the element that it
 * designates. With I one of the four kinds and D its DifferenceType:
 *
 *   I* IConstructCopy(I* x, const I* o), IAssign(I* x, const I* o); void IDestruct(I* x), ISwap(I* x, I* y)
 *   ZunBool IEqual(const I* x, const I* y), ILess(const I* x, const I* y)
 *   E* IContentOf(const I* x); const E* IContentOfConst(const I* x); E* IAt(const I* x, D n)
 *   I* IConstructExceptional(I* x); ZunBool IIsExceptional(const I* x)
 *       NULL, which says that there is no such place.
 *   I* IIncrement(I* x), IDecrement(I* x), IIncrementN(I* x, D n), IDecrementN(I* x, D n)
 *   I IAdd(const I* x, D n); D ISubtract(const I* x, const I* y)      x - y in steps of Increment
 */
#ifndef ZUN_UTILS_ZUNVECTOR_H
#define ZUN_UTILS_ZUNVECTOR_H

#include "Zun/Utils/ZunAllocator.h"

#define ZUN_VECTOR_DECLARE(E)                                                                \
  ZUN_EXTERN_C_BEGIN                                                                         \
  ZUN_VECTOR_TYPES_(ZunVector_##E, E)                                                        \
  ZUN_VECTOR_ALGORITHMS_(ZunVector_##E, E)                                                   \
  ZUN_VECTOR_ACCESSORS_(ZunVector_##E, E)                                                    \
  ZUN_VECTOR_ITERATOR_(ZunVector_##E##Iterator, E, E, ZUN_VECTOR_FORWARD_)                   \
  ZUN_VECTOR_ITERATOR_(ZunVector_##E##ConstIterator, E, const E, ZUN_VECTOR_FORWARD_)        \
  ZUN_VECTOR_ITERATOR_(ZunVector_##E##ReverseIterator, E, E, ZUN_VECTOR_REVERSE_)            \
  ZUN_VECTOR_ITERATOR_(ZunVector_##E##ConstReverseIterator, E, const E, ZUN_VECTOR_REVERSE_) \
  ZUN_EXTERN_C_END

#define ZUN_VECTOR_TYPES_(V, E)                          \
  typedef struct V V;                                    \
  struct V {                                             \
    ZunAllocator* allocator;                             \
    E* begin;                                            \
    E* end;                                              \
    E* endBuf;                                           \
  };                                                     \
  typedef ZunSizeT V##SizeType;                          \
  typedef E* V##Iterator;                                \
  typedef const E* V##ConstIterator;                     \
  typedef E* V##ReverseIterator;                         \
  typedef const E* V##ConstReverseIterator;              \
  typedef ZunDistanceT V##IteratorDifferenceType;        \
  typedef ZunDistanceT V##ConstIteratorDifferenceType;   \
  typedef ZunDistanceT V##ReverseIteratorDifferenceType; \
  typedef ZunDistanceT V##ConstReverseIteratorDifferenceType;

#define ZUN_VECTOR_ALGORITHMS_(V, E)                                                            \
  V* V##ConstructN(V* x, V##SizeType n, const E* value, ZunAllocator* a);                       \
  V* V##ConstructRange(V* x, V##ConstIterator first, V##ConstIterator last, ZunAllocator* a);   \
  V* V##ConstructCopy(V* x, const V* o);                                                        \
  void V##Destruct(V* x);                                                                       \
  V* V##Assign(V* x, const V* o);                                                               \
  ZunBool V##Swap(V* x, V* y);                                                                  \
  ZunBool V##PushBack(V* x, const E* value);                                                    \
  void V##PopBack(V* x);                                                                        \
  ZunBool V##Reserve(V* x, V##SizeType capacity);                                               \
  void V##Clear(V* x);                                                                          \
  V##Iterator V##Insert(V* x, V##Iterator pos, const E* value);                                 \
  ZunBool V##InsertN(V* x, V##Iterator pos, V##SizeType n, const E* value);                     \
  ZunBool V##InsertRange(V* x, V##Iterator pos, V##ConstIterator first, V##ConstIterator last); \
  V##Iterator V##Erase(V* x, V##Iterator pos);                                                  \
  V##Iterator V##EraseRange(V* x, V##Iterator first, V##Iterator last);                         \
  ZunBool V##Resize(V* x, V##SizeType n, const E* value);                                       \
  void V##Dump(const V* x);

#define ZUN_VECTOR_ACCESSORS_(V, E)                                                                              \
  ZUN_INLINE V* V##ConstructDefault(V* x, ZunAllocator* a) {                                                     \
    x->allocator = a;                                                                                            \
    x->begin = x->end = x->endBuf = NULL;                                                                        \
    return x;                                                                                                    \
  }                                                                                                              \
  ZUN_INLINE ZunAllocator* V##GetAllocator(const V* x) { return x->allocator; }                                  \
  ZUN_INLINE ZunBool V##Empty(const V* x) { return x->begin == x->end; }                                         \
  ZUN_INLINE V##SizeType V##Size(const V* x) { return x->begin == NULL ? 0 : (V##SizeType)(x->end - x->begin); } \
  ZUN_INLINE V##SizeType V##Capacity(const V* x) {                                                               \
    return x->begin == NULL ? 0 : (V##SizeType)(x->endBuf - x->begin);                                           \
  }                                                                                                              \
  ZUN_INLINE V##SizeType V##MaxSize(void) { return (V##SizeType)(UINT32_MAX / sizeof(E)); }                      \
  ZUN_INLINE V##Iterator V##Begin(V* x) { return x->begin; }                                                     \
  ZUN_INLINE V##Iterator V##End(V* x) { return x->end; }                                                         \
  ZUN_INLINE V##ConstIterator V##BeginConst(const V* x) { return x->begin; }                                     \
  ZUN_INLINE V##ConstIterator V##EndConst(const V* x) { return x->end; }                                         \
  ZUN_INLINE V##ReverseIterator V##RBegin(V* x) { return x->end; }                                               \
  ZUN_INLINE V##ReverseIterator V##REnd(V* x) { return x->begin; }                                               \
  ZUN_INLINE V##ConstReverseIterator V##RBeginConst(const V* x) { return x->end; }                               \
  ZUN_INLINE V##ConstReverseIterator V##REndConst(const V* x) { return x->begin; }                               \
  ZUN_INLINE E* V##At(V* x, V##SizeType n) { return x->begin + n; }                                              \
  ZUN_INLINE const E* V##AtConst(const V* x, V##SizeType n) { return x->begin + n; }                             \
  ZUN_INLINE E* V##Front(V* x) { return x->begin; }                                                              \
  ZUN_INLINE const E* V##FrontConst(const V* x) { return x->begin; }                                             \
  ZUN_INLINE E* V##Back(V* x) { return x->end - 1; }                                                             \
  ZUN_INLINE const E* V##BackConst(const V* x) { return x->end - 1; }

/* How an iterator's pointer moves when it is incremented, and where its element lies from it. */
#define ZUN_VECTOR_FORWARD_(select) select(+1, 0)
#define ZUN_VECTOR_REVERSE_(select) select(-1, -1)
#define ZUN_VECTOR_STEP_(step, content) (step)
#define ZUN_VECTOR_CONTENT_(step, content) (content)

/* DESIGNATED is E, or const E for the Const kinds. */
#define ZUN_VECTOR_ITERATOR_(I, E, DESIGNATED, KIND)                                                             \
  ZUN_INLINE I* I##ConstructCopy(I* x, const I* o) {                                                             \
    *x = *o;                                                                                                     \
    return x;                                                                                                    \
  }                                                                                                              \
  ZUN_INLINE I* I##Assign(I* x, const I* o) {                                                                    \
    *x = *o;                                                                                                     \
    return x;                                                                                                    \
  }                                                                                                              \
  ZUN_INLINE void I##Destruct(I* x) { (void)x; }                                                                 \
  ZUN_INLINE void I##Swap(I* x, I* y) {                                                                          \
    I kept = *x;                                                                                                 \
    *x = *y;                                                                                                     \
    *y = kept;                                                                                                   \
  }                                                                                                              \
  ZUN_INLINE ZunBool I##Equal(const I* x, const I* y) { return *x == *y; }                                       \
  ZUN_INLINE I##DifferenceType I##Subtract(const I* x, const I* y) {                                             \
    return *x == *y ? 0 : (*x - *y) * KIND(ZUN_VECTOR_STEP_);                                                    \
  }                                                                                                              \
  ZUN_INLINE ZunBool I##Less(const I* x, const I* y) { return I##Subtract(x, y) < 0; }                           \
  ZUN_INLINE DESIGNATED* I##ContentOf(const I* x) { return *x + KIND(ZUN_VECTOR_CONTENT_); }                     \
  ZUN_INLINE const E* I##ContentOfConst(const I* x) { return *x + KIND(ZUN_VECTOR_CONTENT_); }                   \
  ZUN_INLINE DESIGNATED* I##At(const I* x, I##DifferenceType n) {                                                \
    return *x + (KIND(ZUN_VECTOR_STEP_) * n + KIND(ZUN_VECTOR_CONTENT_));                                        \
  }                                                                                                              \
  ZUN_INLINE I* I##ConstructExceptional(I* x) {                                                                  \
    *x = NULL;                                                                                                   \
    return x;                                                                                                    \
  }                                                                                                              \
  ZUN_INLINE ZunBool I##IsExceptional(const I* x) { return *x == NULL; }                                         \
  ZUN_INLINE I I##Add(const I* x, I##DifferenceType n) { return n == 0 ? *x : *x + KIND(ZUN_VECTOR_STEP_) * n; } \
  ZUN_INLINE I* I##IncrementN(I* x, I##DifferenceType n) {                                                       \
    *x = I##Add(x, n);                                                                                           \
    return x;                                                                                                    \
  }                                                                                                              \
  ZUN_INLINE I* I##DecrementN(I* x, I##DifferenceType n) { return I##IncrementN(x, -n); }                        \
  ZUN_INLINE I* I##Increment(I* x) { return I##IncrementN(x, 1); }                                               \
  ZUN_INLINE I* I##Decrement(I* x) { return I##IncrementN(x, -1); }

#endif
