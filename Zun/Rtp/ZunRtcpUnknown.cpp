#include "Zun/Rtp/ZunRtcpUnknown.h"

#include "Zun/Os/Log.h"
#include "Zun/Rtp/Core/Row.h"

namespace {

constexpr ZunUint8 kMaxSubtype = 31;
constexpr ZunRtcpSubpacketType kMaxType = 255;

bool CheckData(const ZunString* data, const char* function) {
  if (data->size % 4 == 0) return true;
  ZUN_LOG_ERROR_(ZunLogRtcp_, function, "Length of unknown subpacket data is not a multiple of 4");
  return false;
}

bool CheckSubtype(ZunUint8 subtype, const char* function) {
  if (subtype <= kMaxSubtype) return true;
  ZUN_LOG_ERROR_(ZunLogRtcp_, function, "Unknown subpacket subtype is not in the range 0 - 31");
  return false;
}

struct Wire {
  static ZunSizeT Length(const ZunRtcpUnknown& p) { return zun::kSubpacketHeaderSize + p.data.size; }

  static ZunRtcpEncodeReason FindUnencodable(const ZunRtcpUnknown& p, ZunRtcpDialect) {
    if (p.type < 0 || p.type > kMaxType || p.subtype > kMaxSubtype) return ZUN_RTCP_ENCODE_REASON_VALUE;
    return p.data.size % 4 == 0 ? ZUN_RTCP_ENCODE_REASON_NONE : ZUN_RTCP_ENCODE_REASON_NOT_WHOLE_WORDS;
  }

  static bool Write(const ZunRtcpUnknown& p, zun::Output& out, bool pad) {
    const ZunSizeT length = Length(p);
    zun::BodyWriter w(out, length);
    return zun::WriteSubpacketHeader(w, pad, p.subtype, p.type, length) && w.String(p.data);
  }

  static bool Read(ZunRtcpUnknown* p, zun::BodyReader& r, const zun::Body& body) {
    if (!r.StringToEnd(&p->data)) return false;
    p->type = body.header.type;
    p->subtype = body.header.count;
    return true;
  }
};

}  // namespace

ZunRtcpUnknown* ZunRtcpUnknownConstructDefault(ZunRtcpUnknown* p, ZunAllocator* a) {
  p->type = ZUN_RTCPSUBPACKET_TYPE_Unknown;
  p->subtype = 0;
  ZunStringConstructDefault(&p->data, a);
  return p;
}

ZunRtcpUnknown* ZunRtcpUnknownConstructFull(ZunRtcpUnknown* p, ZunRtcpSubpacketType type, ZunUint8 subtype,
                                            const ZunString* data, ZunAllocator* a) {
  constexpr char kFunction[] = "ZunRtcpUnknownConstructFull";
  if (!ZunRtcpSubpacketTypeIsUnknown(type)) {
    ZUN_LOG_ERROR_(ZunLogRtcp_, kFunction, "Type field for unknown subpacket is actually a known type");
    return nullptr;
  }
  if (!CheckData(data, kFunction) || !CheckSubtype(subtype, kFunction)) return nullptr;
  if (ZunStringConstructSubstring(&p->data, data, 0, data->size, a) == nullptr) return nullptr;
  p->type = type;
  p->subtype = subtype;
  return p;
}

ZUN_OWNING_DEFINE(ZunRtcpUnknown, &ZunRtcpUnknown::data)

ZunBool ZunRtcpUnknownSetSubtype(ZunRtcpUnknown* p, ZunUint8 subtype) {
  if (!CheckSubtype(subtype, "ZunRtcpUnknownSetSubtype")) return 0;
  p->subtype = subtype;
  return 1;
}

ZunBool ZunRtcpUnknownSetData(ZunRtcpUnknown* p, const ZunString* data) {
  return CheckData(data, "ZunRtcpUnknownSetData") && ZunStringAssign(&p->data, data) != nullptr;
}

ZUN_RTCP_ROW_DEFINE(ZunRtcpUnknown, Wire)
