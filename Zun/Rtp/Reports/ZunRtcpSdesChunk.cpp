#include "Zun/Rtp/Reports/ZunRtcpSdesChunk.h"

#include "Zun/Utils/Owned.h"

ZUN_VECTOR_USE_OWNING(ZunRtcpSdesItem)
ZUN_VECTOR_USE_OWNING(ZunRtcpSdesChunk)
ZUN_VECTOR_DEFINE(ZunRtcpSdesChunk)
ZUN_OWNING_DEFINE(ZunRtcpSdesChunk, &ZunRtcpSdesChunk::items)

ZunRtcpSdesChunk* ZunRtcpSdesChunkConstructDefault(ZunRtcpSdesChunk* p, ZunAllocator* a) {
  p->ssrc = 0;
  ZunVector_ZunRtcpSdesItemConstructDefault(&p->items, a);
  return p;
}

ZunBool ZunRtcpSdesChunkSetItems(ZunRtcpSdesChunk* p, const ZunVector_ZunRtcpSdesItem* items) {
  return ZunVector_ZunRtcpSdesItemAssign(&p->items, items) != nullptr;
}
