#include "Zun/Rtp/Reports/ZunRtcpSdesItem.h"

#include <cstring>

#include "Zun/Utils/Owned.h"

ZUN_VECTOR_USE_OWNING(ZunRtcpSdesItem)
ZUN_VECTOR_DEFINE(ZunRtcpSdesItem)
ZUN_OWNING_DEFINE(ZunRtcpSdesItem, &ZunRtcpSdesItem::text)

namespace {

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

ZunBool ZunRtcpSdesItemSetText(ZunRtcpSdesItem* p, const char* text) {
  return std::strlen(text) <= kMaxTextSize && ZunStringAssignCStr(&p->text, text) != nullptr;
}
