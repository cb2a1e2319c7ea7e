#include "Zun/Utils/ZunString.h"

#include <cstring>

#include "Zun/Utils/StringStorage.h"

namespace {

constexpr ZunSizeT kSmallestGrowth = 16;

// A block that holds `capacity` bytes and the zero after them, or null.
char* AllocateBuffer(ZunAllocator* a, ZunSizeT capacity) {
  if (capacity == SIZE_MAX) return nullptr;
  return static_cast<char*>(ZunAllocatorAllocate(a, capacity + 1));
}

void ReleaseBuffer(ZunString* s) {
  if (s->buf != nullptr) ZunAllocatorDeallocate(s->allocator, s->buf, s->capacity + 1);
}

void TakeBuffer(ZunString* s, char* buf, ZunSizeT size, ZunSizeT capacity) {
  s->buf = buf;
  s->size = size;
  s->capacity = capacity;
  s->buf[size] = '\0';
}

// The capacity after growing `capacity` to at least `needed`: twice as much, where that suffices.
ZunSizeT GrownCapacity(ZunSizeT capacity, ZunSizeT needed) {
  const ZunSizeT doubled = capacity > SIZE_MAX / 2 ? needed : capacity * 2;
  const ZunSizeT grown = doubled > needed ? doubled : needed;
  return grown > kSmallestGrowth ? grown : kSmallestGrowth;
}

// memmove and memcpy must not be handed the null pointer of an empty source.
void CopyBytes(char* to, const char* from, ZunSizeT count) {
  if (count != 0) std::memcpy(to, from, count);
}

ZunString* AssignBytes(ZunString* s, const char* bytes, ZunSizeT count) {
  return zun::AssignStringBytes(s, bytes, count) ? s : nullptr;
}

// The bytes may be a part of `s`: its old buffer is released only once they are copied.
ZunString* AppendBytes(ZunString* s, const char* bytes, ZunSizeT count) {
  if (count == 0) return s;
  const ZunSizeT old_size = s->size;
  if (count <= s->capacity - old_size) {
    std::memmove(s->buf + old_size, bytes, count);
    s->size = old_size + count;
    s->buf[s->size] = '\0';
    return s;
  }
  if (count > SIZE_MAX - old_size) return nullptr;
  const ZunSizeT capacity = GrownCapacity(s->capacity, old_size + count);
  char* const fresh = AllocateBuffer(s->allocator, capacity);
  if (fresh == nullptr) return nullptr;
  CopyBytes(fresh, s->buf, old_size);
  std::memcpy(fresh + old_size, bytes, count);
  ReleaseBuffer(s);
  TakeBuffer(s, fresh, old_size + count, capacity);
  return s;
}

ZunSizeT CutToEnd(const ZunString* o, ZunSizeT pos, ZunSizeT len) {
  const ZunSizeT rest = o->size - pos;
  return len < rest ? len : rest;
}

}  // namespace

bool zun::GrowStringBy(ZunString* s, ZunSizeT count) {
  if (count > SIZE_MAX - s->size) return false;
  const ZunSizeT capacity = GrownCapacity(s->capacity, s->size + count);
  char* const fresh = AllocateBuffer(s->allocator, capacity);
  if (fresh == nullptr) return false;
  CopyBytes(fresh, s->buf, s->size);
  ReleaseBuffer(s);
  TakeBuffer(s, fresh, s->size, capacity);
  return true;
}

bool zun::AssignStringFresh(ZunString* s, const char* bytes, ZunSizeT count) {
  char* const fresh = AllocateBuffer(s->allocator, count);
  if (fresh == nullptr) return false;
  CopyBytes(fresh, bytes, count);
  ReleaseBuffer(s);
  TakeBuffer(s, fresh, count, count);
  return true;
}

ZunString* ZunStringConstructDefault(ZunString* s, ZunAllocator* a) {
  *s = {a, nullptr, 0, 0};
  return s;
}

ZunString* ZunStringConstructCopy(ZunString* s, const ZunString* o) {
  return ZunStringConstructSubstring(s, o, 0, o->size, o->allocator);
}

ZunString* ZunStringConstructSubstring(ZunString* s, const ZunString* o, ZunSizeT pos, ZunSizeT len, ZunAllocator* a) {
  ZunStringConstructDefault(s, a);
  return ZunStringAssignSubstring(s, o, pos, len);
}

void ZunStringDestruct(ZunString* s) {
  ReleaseBuffer(s);
  ZunStringConstructDefault(s, s->allocator);
}

ZunString* ZunStringAssign(ZunString* s, const ZunString* o) { return AssignBytes(s, o->buf, o->size); }

ZunString* ZunStringAssignCStr(ZunString* s, const char* c) { return AssignBytes(s, c, std::strlen(c)); }

ZunString* ZunStringAssignSubstring(ZunString* s, const ZunString* o, ZunSizeT pos, ZunSizeT len) {
  if (pos > o->size) return nullptr;
  const ZunSizeT count = CutToEnd(o, pos, len);
  return AssignBytes(s, count == 0 ? nullptr : o->buf + pos, count);
}

ZunString* ZunStringAppend(ZunString* s, const ZunString* o) { return AppendBytes(s, o->buf, o->size); }

ZunString* ZunStringAppendN(ZunString* s, ZunSizeT n, char c) {
  if (!zun::ReserveStringTail(s, n)) return nullptr;
  if (n == 0) return s;
  std::memset(s->buf + s->size, c, n);
  s->size += n;
  s->buf[s->size] = '\0';
  return s;
}

ZunString* ZunStringAppendCStrLen(ZunString* s, const char* c, ZunSizeT len) { return AppendBytes(s, c, len); }

ZunString* ZunStringAppendSubstring(ZunString* s, const ZunString* o, ZunSizeT pos, ZunSizeT len) {
  if (pos > o->size) return nullptr;
  const ZunSizeT count = CutToEnd(o, pos, len);
  return AppendBytes(s, count == 0 ? nullptr : o->buf + pos, count);
}
