#include "Zun/Rtp/Reports/ZunRtcpSdesItem.h"

#include <cstring>

#include "Zun/Rtp/Core/OwnedMember.h"
#include "Zun/Utils/VectorAlgorithms.h"

ZUN_VECTOR_DEFINE_OWNING(ZunRtcpSdesItem)

namespace {

using OwnedText = zun::OwnedMember<&ZunRtcpSdesItem::text, ZunStringConstructCopy, ZunStringAssign>;

constexpr ZunSizeT kMaxTextSize = 255;  // what the length byte can say

}  // namespace

ZunRtcpSdesItem* ZunRtcpSdesItemConstructDefault(ZunRtcpSdesItem* p, ZunAllocator* a) {
  p->type = ZUN_RTCPSDESITEM_TYPE_EndOfList;
  ZunStringConstructDefault(&p->text, a);
  return p;
}

ZunRtcpSdesItem* ZunRtcpSdesItemConstruct(ZunRtcpSdesItem* p, ZunRtcpSdesItemType type, const ZunString* s) {
  if (ZunStringConstructCopy(&p->text, s) == nullptr) return nullptr;
  p->type = type;
  return p;
}

ZunRtcpSdesItem* ZunRtcpSdesItemConstructCopy(ZunRtcpSdesItem* p, const ZunRtcpSdesItem* o) {
  return OwnedText::ConstructCopy(p, o);
}

ZunRtcpSdesItem* ZunRtcpSdesItemAssign(ZunRtcpSdesItem* p, const ZunRtcpSdesItem* o) { return OwnedText::Assign(p, o); }

void ZunRtcpSdesItemDestruct(ZunRtcpSdesItem* p) { ZunStringDestruct(&p->text); }

ZunBool ZunRtcpSdesItemSetText(ZunRtcpSdesItem* p, const char* text) {
  return std::strlen(text) <= kMaxTextSize && ZunStringAssignCStr(&p->text, text) != nullptr;
}
