#include "Zun/Rtp/Dialect/ZunRtcpComposition.h"

namespace {

bool IsReport(const ZunRtcpSubpacket& sp) {
  const ZunRtcpSubpacketType type = ZunRtcpSubpacketGetType(&sp);
  return type == ZUN_RTCPSUBPACKET_TYPE_SR || type == ZUN_RTCPSUBPACKET_TYPE_RR;
}

bool IsBye(const ZunRtcpSubpacket& sp) { return ZunRtcpSubpacketGetType(&sp) == ZUN_RTCPSUBPACKET_TYPE_BYE; }

bool HasCname(const ZunRtcpSdes& sdes) {
  for (const ZunRtcpSdesChunk* chunk = sdes.chunks.begin; chunk != sdes.chunks.end; ++chunk) {
    for (const ZunRtcpSdesItem* item = chunk->items.begin; item != chunk->items.end; ++item) {
      if (item->type == ZUN_RTCPSDESITEM_TYPE_CNAME && item->text.size != 0) return true;
    }
  }
  return false;
}

bool HasCname(const ZunRtcpSubpacket& sp) {
  return ZunRtcpSubpacketGetType(&sp) == ZUN_RTCPSUBPACKET_TYPE_SDES && HasCname(sp.sdes);
}

}  // namespace

ZunRtcpComposition ZunRtcpPacketCheckComposition(const ZunRtcpPacket* p) {
  const ZunRtcpSubpacket* const first = p->subpackets.begin;
  const ZunRtcpSubpacket* const last = p->subpackets.end;
  if (first == last) return ZUN_RTCP_COMPOSITION_EMPTY;
  bool has_cname = false;
  bool follows_bye = false;
  for (const ZunRtcpSubpacket* sp = first; sp != last; ++sp) {
    has_cname = has_cname || HasCname(*sp);
    follows_bye = follows_bye || (sp != first && IsBye(sp[-1]) && !IsBye(*sp));
  }
  ZunRtcpComposition objections = 0;
  if (!IsReport(*first)) objections |= ZUN_RTCP_COMPOSITION_NO_REPORT_FIRST;
  if (!has_cname) objections |= ZUN_RTCP_COMPOSITION_NO_CNAME;
  if (follows_bye) objections |= ZUN_RTCP_COMPOSITION_BYE_NOT_LAST;
  return objections;
}

const char* ZunRtcpCompositionGetText(ZunRtcpComposition objection) {
  switch (objection) {
    case 0:
      return "nothing to object to";
    case ZUN_RTCP_COMPOSITION_EMPTY:
      return "the packet is empty";
    case ZUN_RTCP_COMPOSITION_NO_REPORT_FIRST:
      return "it does not begin with a report";
    case ZUN_RTCP_COMPOSITION_NO_CNAME:
      return "no CNAME is in it";
    case ZUN_RTCP_COMPOSITION_BYE_NOT_LAST:
      return "a BYE is not last";
    default:
      return "several objections";
  }
}
