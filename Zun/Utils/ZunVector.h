/*
 * The typed vectors. ZUN_VECTOR_DECLARE(E), one line after the declaration of the element type E, declares
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
 * Iterators are plain pointers to elements; a reverse iterator holds the pointer one past the element that it
 * designates.
 *
 * What holds for every object stands in ZunConventions.h; the operations stand at the end of this header, each as it is
 * declared for an element type named Element.
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

#ifdef ZUN_VECTOR_DOCUMENTATION
/*
 * What ZUN_VECTOR_DECLARE(Element) declares. Only readers and the check that nothing is missing see these lines.
 */

typedef struct ZunVector_Element ZunVector_Element;
typedef ZunSizeT ZunVector_ElementSizeType;
typedef Element* ZunVector_ElementIterator;
typedef const Element* ZunVector_ElementConstIterator;
typedef Element* ZunVector_ElementReverseIterator;
typedef const Element* ZunVector_ElementConstReverseIterator;
typedef ZunDistanceT ZunVector_ElementIteratorDifferenceType;
typedef ZunDistanceT ZunVector_ElementConstIteratorDifferenceType;
typedef ZunDistanceT ZunVector_ElementReverseIteratorDifferenceType;
typedef ZunDistanceT ZunVector_ElementConstReverseIteratorDifferenceType;

/* Empty, without storage. */
ZunVector_Element* ZunVector_ElementConstructDefault(ZunVector_Element* x, ZunAllocator* a);

/* `n` copies of `*value`. The capacity is exactly the size, as with the next two. */
ZunVector_Element* ZunVector_ElementConstructN(ZunVector_Element* x, ZunVector_ElementSizeType n, const Element* value,
                                               ZunAllocator* a);

/* Copies of [first, last). */
ZunVector_Element* ZunVector_ElementConstructRange(ZunVector_Element* x, ZunVector_ElementConstIterator first,
                                                   ZunVector_ElementConstIterator last, ZunAllocator* a);

/* A copy of `o` with its allocator. */
ZunVector_Element* ZunVector_ElementConstructCopy(ZunVector_Element* x, const ZunVector_Element* o);

/* Destructs the elements from the last to the first and frees the storage. */
void ZunVector_ElementDestruct(ZunVector_Element* x);

/*
 * Makes `x` a copy of `o`; `x` keeps its allocator. Within the capacity elements are overwritten in place: on failure
 * `x` keeps what was done. Beyond it the storage is replaced by one of exactly o's size: when that is refused `x` is
 * empty and without storage, when an element fails `x` keeps those before it.
 */
ZunVector_Element* ZunVector_ElementAssign(ZunVector_Element* x, const ZunVector_Element* o);

/*
 * Exchanges the contents; each vector keeps its allocator. With one allocator the storage changes hands; with two the
 * elements are copied, and on failure one of the vectors may have lost its own.
 */
ZunBool ZunVector_ElementSwap(ZunVector_Element* x, ZunVector_Element* y);

/* The vector's allocator, which gives its storage; the elements' allocators are their own. */
ZunAllocator* ZunVector_ElementGetAllocator(const ZunVector_Element* x);

/* Is there no element? */
ZunBool ZunVector_ElementEmpty(const ZunVector_Element* x);

/* The number of elements. */
ZunVector_ElementSizeType ZunVector_ElementSize(const ZunVector_Element* x);

/* The number of elements that there is storage for. */
ZunVector_ElementSizeType ZunVector_ElementCapacity(const ZunVector_Element* x);

/* (2^32 - 1) / sizeof(Element). No operation checks it. */
ZunVector_ElementSizeType ZunVector_ElementMaxSize(void);

/* The first element, or the end. */
ZunVector_ElementIterator ZunVector_ElementBegin(ZunVector_Element* x);
ZunVector_ElementConstIterator ZunVector_ElementBeginConst(const ZunVector_Element* x);

/* The place after the last element. */
ZunVector_ElementIterator ZunVector_ElementEnd(ZunVector_Element* x);
ZunVector_ElementConstIterator ZunVector_ElementEndConst(const ZunVector_Element* x);

/* The last element, or the reverse end. */
ZunVector_ElementReverseIterator ZunVector_ElementRBegin(ZunVector_Element* x);
ZunVector_ElementConstReverseIterator ZunVector_ElementRBeginConst(const ZunVector_Element* x);

/* The place before the first element. */
ZunVector_ElementReverseIterator ZunVector_ElementREnd(ZunVector_Element* x);
ZunVector_ElementConstReverseIterator ZunVector_ElementREndConst(const ZunVector_Element* x);

/* Element `n`, from 0. */
Element* ZunVector_ElementAt(ZunVector_Element* x, ZunVector_ElementSizeType n);
const Element* ZunVector_ElementAtConst(const ZunVector_Element* x, ZunVector_ElementSizeType n);

/* The first element; there must be one. */
Element* ZunVector_ElementFront(ZunVector_Element* x);
const Element* ZunVector_ElementFrontConst(const ZunVector_Element* x);

/* The last element; there must be one. */
Element* ZunVector_ElementBack(ZunVector_Element* x);
const Element* ZunVector_ElementBackConst(const ZunVector_Element* x);

/* Appends a copy. A full vector first grows to twice its size, or to 2. On failure `x` is as it was. */
ZunBool ZunVector_ElementPushBack(ZunVector_Element* x, const Element* value);

/* Destructs the last element; there must be one. */
void ZunVector_ElementPopBack(ZunVector_Element* x);

/* Sees to storage for `capacity` elements. Never shrinks. `x` is unchanged on failure. */
ZunBool ZunVector_ElementReserve(ZunVector_Element* x, ZunVector_ElementSizeType capacity);

/* Destructs the elements from the last to the first and keeps the storage. */
void ZunVector_ElementClear(ZunVector_Element* x);

/*
 * Inserts a copy before `pos` and gives it. The capacity, where it does not suffice, becomes the larger of twice the
 * old one (2 without storage) and the new size. On failure the size is as it was, and elements from `pos` on may have
 * the values of others.
 */
ZunVector_ElementIterator ZunVector_ElementInsert(ZunVector_Element* x, ZunVector_ElementIterator pos,
                                                  const Element* value);

/* Inserts `n` copies before `pos`, as Insert does; a vector without storage gets room for 2 * n. */
ZunBool ZunVector_ElementInsertN(ZunVector_Element* x, ZunVector_ElementIterator pos, ZunVector_ElementSizeType n,
                                 const Element* value);

/* Inserts copies of [first, last) before `pos`, as InsertN does. */
ZunBool ZunVector_ElementInsertRange(ZunVector_Element* x, ZunVector_ElementIterator pos,
                                     ZunVector_ElementConstIterator first, ZunVector_ElementConstIterator last);

/*
 * Removes the element at `pos`, moves those after it down, and gives `pos`. On failure `x` ends where an element could
 * not be moved to.
 */
ZunVector_ElementIterator ZunVector_ElementErase(ZunVector_Element* x, ZunVector_ElementIterator pos);

/* Removes [first, last), as Erase does, and gives `last` as it was given (`first` when there is nothing to remove). */
ZunVector_ElementIterator ZunVector_ElementEraseRange(ZunVector_Element* x, ZunVector_ElementIterator first,
                                                      ZunVector_ElementIterator last);

/*
 * Destructs elements from the last on, or reserves size + n and appends copies of `*value`; false when it would have
 * to append and `value` is NULL. When a copy fails, those before it stay.
 */
ZunBool ZunVector_ElementResize(ZunVector_Element* x, ZunVector_ElementSizeType n, const Element* value);

/* Does nothing. */
void ZunVector_ElementDump(const ZunVector_Element* x);

/* The operations of the iterator; those of the other three kinds differ in their names and in what is const. */

/* Plain copies. */
ZunVector_ElementIterator* ZunVector_ElementIteratorConstructCopy(ZunVector_ElementIterator* x,
                                                                  const ZunVector_ElementIterator* o);
ZunVector_ElementIterator* ZunVector_ElementIteratorAssign(ZunVector_ElementIterator* x,
                                                           const ZunVector_ElementIterator* o);

/* Does nothing. */
void ZunVector_ElementIteratorDestruct(ZunVector_ElementIterator* x);

/* Exchanges the two. */
void ZunVector_ElementIteratorSwap(ZunVector_ElementIterator* x, ZunVector_ElementIterator* y);

/* Is `x` the same place as `y`? */
ZunBool ZunVector_ElementIteratorEqual(const ZunVector_ElementIterator* x, const ZunVector_ElementIterator* y);

/* Does `x` come before `y` in the order of Increment? */
ZunBool ZunVector_ElementIteratorLess(const ZunVector_ElementIterator* x, const ZunVector_ElementIterator* y);

/* The element that `x` designates. */
Element* ZunVector_ElementIteratorContentOf(const ZunVector_ElementIterator* x);
const Element* ZunVector_ElementIteratorContentOfConst(const ZunVector_ElementIterator* x);

/* The element `n` increments from `x`. */
Element* ZunVector_ElementIteratorAt(const ZunVector_ElementIterator* x, ZunVector_ElementIteratorDifferenceType n);

/* NULL, which says that there is no such place. */
ZunVector_ElementIterator* ZunVector_ElementIteratorConstructExceptional(ZunVector_ElementIterator* x);
ZunBool ZunVector_ElementIteratorIsExceptional(const ZunVector_ElementIterator* x);

/* Moves `x` by one, or by `n`, and gives it. */
ZunVector_ElementIterator* ZunVector_ElementIteratorIncrement(ZunVector_ElementIterator* x);
ZunVector_ElementIterator* ZunVector_ElementIteratorDecrement(ZunVector_ElementIterator* x);
ZunVector_ElementIterator* ZunVector_ElementIteratorIncrementN(ZunVector_ElementIterator* x,
                                                               ZunVector_ElementIteratorDifferenceType n);
ZunVector_ElementIterator* ZunVector_ElementIteratorDecrementN(ZunVector_ElementIterator* x,
                                                               ZunVector_ElementIteratorDifferenceType n);

/* The place `n` increments from `x`. */
ZunVector_ElementIterator ZunVector_ElementIteratorAdd(const ZunVector_ElementIterator* x,
                                                       ZunVector_ElementIteratorDifferenceType n);

/* The number of increments from `y` to `x`. */
ZunVector_ElementIteratorDifferenceType ZunVector_ElementIteratorSubtract(const ZunVector_ElementIterator* x,
                                                                          const ZunVector_ElementIterator* y);

#endif /* ZUN_VECTOR_DOCUMENTATION */

#endif
