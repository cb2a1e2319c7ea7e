#include "Zun/Rtp/Reports/ZunRtcpSdesChunk.h"

#include "Zun/Rtp/Core/OwnedMember.h"
#include "Zun/Utils/VectorAlgorithms.h"

ZUN_VECTOR_DEFINE_OWNING(ZunRtcpSdesChunk)

namespace {

using OwnedItems =
    zun::OwnedMember<&ZunRtcpSdesChunk::items, ZunVector_ZunRtcpSdesItemConstructCopy, ZunVector_ZunRtcpSdesItemAssign>;

}  // namespace

ZunRtcpSdesChunk* ZunRtcpSdesChunkConstructDefault(ZunRtcpSdesChunk* p, ZunAllocator* a) {
  p->ssrc = 0;
  ZunVector_ZunRtcpSdesItemConstructDefault(&p->items, a);
  return p;
}

ZunRtcpSdesChunk* ZunRtcpSdesChunkConstructCopy(ZunRtcpSdesChunk* p, const ZunRtcpSdesChunk* o) {
  return OwnedItems::ConstructCopy(p, o);
}

ZunRtcpSdesChunk* ZunRtcpSdesChunkAssign(ZunRtcpSdesChunk* p, const ZunRtcpSdesChunk* o) {
  return OwnedItems::Assign(p, o);
}

void ZunRtcpSdesChunkDestruct(ZunRtcpSdesChunk* p) { ZunVector_ZunRtcpSdesItemDestruct(&p->items); }

ZunBool ZunRtcpSdesChunkSetItems(ZunRtcpSdesChunk* p, const ZunVector_ZunRtcpSdesItem* items) {
  return ZunVector_ZunRtcpSdesItemAssign(&p->items, items) != nullptr;
}
