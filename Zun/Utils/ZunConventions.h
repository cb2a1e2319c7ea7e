/*
 * What holds for every object and every function of the library, said once. The comment of a function says what is its
 * own; where it says nothing else, this page holds.
 *
 * Storage. An object is a struct in storage of the caller's. It owns what it points to, never knows its own address,
 * and may be moved by copying its bytes as long as one of the two is then forgotten.
 *
 * Construction. A function with Construct in its name builds an object in raw storage and returns it. It returns NULL
 * when an argument or an allocation is refused, and the storage then owns nothing. ConstructDefault takes an allocator
 * and no storage from it, so it cannot fail; it returns `p`, empty, with every number 0 and the type of its kind.
 * (ConstructFromBuffer and ZunRtcpAppConstructFull have results of their own, which ZunRtcpRow.h and ZunRtcpApp.h
 * tell.)
 *
 * Allocators. An object keeps the allocator that it was built with, and gives every block back to it with the size that
 * it asked for. The allocator of an object is that of its first field that owns memory; it outlives the object. An
 * allocator that is NULL refuses everything, and an object that owns no memory has none (GetAllocator gives NULL).
 *
 * Lifecycle. Every struct that owns memory has
 *   - ConstructCopy(p, o): a copy with the allocators of `o`, elements of lists with those of the elements that they
 *     are copies of;
 *   - Assign(p, o): makes `p` a copy of `o`; `p` and what stays in its lists keep their allocators. The fields that own
 *     memory come first, in the order of the struct. When an allocation is refused the result is NULL: the fields
 *     before the one that was refused are those of `o`; that one is as it was if it is a string, and if it is a list,
 *     what its vector's Assign leaves (without elements where new storage was refused); all others are as they were.
 *     `p` and `o` may be the same object;
 *   - Destruct(p): releases all and leaves `p` empty. Once more does nothing.
 *
 * Lifecycle of a plain value. A struct that owns nothing has the same three. The first two copy all fields, return `p`
 * and cannot fail, and there is nothing to release.
 *
 * Lifecycle of a tagged union. A union of kinds has the same three. Within a kind, and between unknown kinds, Assign
 * works in place. Across kinds it destructs `p` and builds it anew with its own allocator, or with that of `o` where it
 * has none; when that is refused, `p` is an empty unknown object of its level.
 *
 * Setters. A setter returns true. One with a limit returns false for a value beyond it and leaves the object as it was.
 * One that copies a string or a list returns false when an allocation is refused: the string is then as it was, the
 * list what its vector's Assign leaves.
 *
 * Getters. A getter changes nothing. A pointer that it returns is good until the object that it points into is changed
 * or destructed. A getter that gives a member of a tagged union does not check which member lives.
 *
 * Refusals. No function aborts; debug builds assert what the library promises itself. A refused argument, malformed
 * bytes and a refused allocation are a false or null result, and nothing that was allocated is lost. What is logged is
 * said where it is logged: errors are refused arguments and malformed bytes, warnings are what is accepted all the
 * same.
 *
 * Threads. Nothing is shared but the log's handler and levels, which may be set while others log. One object is used by
 * one thread at a time; different objects may be used by different threads, if their allocators may.
 *
 * Time and numbers. A size is in bytes, a ZunTime in nanoseconds. Integers of the wire are big-endian.
 */
#ifndef ZUN_UTILS_ZUNCONVENTIONS_H
#define ZUN_UTILS_ZUNCONVENTIONS_H

#endif
