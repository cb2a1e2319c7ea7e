#include "Zun/Rtp/Reports/ZunRtcpBye.h"

#include "Zun/Os/Log.h"
#include "Zun/Rtp/Core/EntryList.h"
#include "Zun/Rtp/Core/Padding.h"
#include "Zun/Rtp/Core/Row.h"

ZUN_VECTOR_USE_PLAIN(ZunRtpSourceId)

namespace {

constexpr zun::SubpacketIdentity kIdentity = zun::IsSubpacket(ZUN_RTCPSUBPACKET_TYPE_BYE);
using Sources = zun::VectorOfZunRtpSourceId;
using Fields = zun::Owned<&ZunRtcpBye::sources, &ZunRtcpBye::reason>;

constexpr ZunSizeT kReasonHeaderSize = 1;
constexpr ZunSizeT kMinSources = 1;
constexpr ZunSizeT kMaxSources = 31;
constexpr ZunSizeT kMaxReasonSize = 255;

bool CheckSources(const ZunVector_ZunRtpSourceId* sources, const char* function) {
  const ZunSizeT count = Sources::Size(sources);
  if (count >= kMinSources && count <= kMaxSources) return true;
  ZUN_LOG_ERROR_(ZunLogRtcp_, function, "Number of sources for bye subpacket is not in the range 1 -- 31.");
  return false;
}

bool CheckReason(const ZunString* reason, const char* function) {
  if (reason->size <= kMaxReasonSize) return true;
  ZUN_LOG_ERROR_(ZunLogRtcp_, function, "Length of bye subpacket reason is greater than 255");
  return false;
}

// With its length byte and the zeros after it.
ZunSizeT ReasonLength(ZunSizeT size) {
  const ZunSizeT length = kReasonHeaderSize + size;
  return length + zun::PaddingAfter(length);
}

ZunSizeT WireLength(const ZunRtcpBye& p) {
  const ZunSizeT length = zun::kSubpacketHeaderSize + zun::kSourceIdSize * Sources::Size(&p.sources);
  return ZunStringEmpty(&p.reason) ? length : length + ReasonLength(p.reason.size);
}

bool WriteReason(zun::BodyWriter& w, const ZunString& reason) {
  if (ZunStringEmpty(&reason)) return true;
  return w.U8(static_cast<ZunUint8>(reason.size & 0xFF)) && w.String(reason) &&
         w.Zeros(zun::PaddingAfter(kReasonHeaderSize + reason.size));
}

bool ReadReason(zun::BodyReader& r, ZunString* reason) {
  if (r.AtEnd()) {
    ZunStringClear(reason);
    return true;
  }
  const ZunSizeT length = r.BytesBeforeEnd();
  ZunUint8 size = 0;
  if (!r.U8(&size)) return false;
  if (ReasonLength(size) > length) return r.Refuse(ZUN_RTCP_DECODE_REASON_TOO_SHORT);
  if (ReasonLength(size) < length) return r.Refuse(ZUN_RTCP_DECODE_REASON_LEFT_OVER);
  return r.String(reason, size);
}

struct Wire {
  static ZunSizeT Length(const ZunRtcpBye& p) {
    return CheckSources(&p.sources, "ZunRtcpByeGetPacketLength") ? WireLength(p) : 0;
  }

  // Nobody may leave in the registered dialect.
  static ZunSizeT EncodedLength(const ZunRtcpBye& p, ZunSizeT, ZunRtcpDialect) { return WireLength(p); }

  static ZunRtcpEncodeReason FindUnencodable(const ZunRtcpBye& p, ZunRtcpDialect dialect) {
    const ZunSizeT count = Sources::Size(&p.sources);
    if (count == 0 && dialect != ZUN_RTCP_DIALECT_REGISTERED) return ZUN_RTCP_ENCODE_REASON_NO_ENTRIES;
    if (count > kMaxSources) return ZUN_RTCP_ENCODE_REASON_TOO_MANY;
    return p.reason.size > kMaxReasonSize ? ZUN_RTCP_ENCODE_REASON_TEXT_TOO_LONG : ZUN_RTCP_ENCODE_REASON_NONE;
  }

  static bool Write(const ZunRtcpBye& p, zun::Output& out, bool pad) {
    if (!out.IsRegistered() && !CheckSources(&p.sources, "ZunRtcpByeWritePacket")) return false;
    const ZunSizeT length = WireLength(p);
    const ZunUint8 count = static_cast<ZunUint8>(Sources::Size(&p.sources));
    zun::BodyWriter w(out, length);
    return zun::WriteSubpacketHeader(w, pad, count, p.type, length) &&
           zun::WriteEntries<zun::kSourceIdSize>(w, p.sources, zun::EncodeSourceId) && WriteReason(w, p.reason);
  }

  static bool Read(ZunRtcpBye* p, zun::BodyReader& r, const zun::Body& body) {
    const ZunUint8 count = body.header.count;
    if (count == 0 && !body.IsRegistered()) return r.Refuse(ZUN_RTCP_DECODE_REASON_NO_ENTRIES);
    return zun::ReadCountedEntries<zun::kSourceIdSize, Sources>(r, &p->sources, count, zun::DecodeSourceId) &&
           ReadReason(r, &p->reason);
  }
};

}  // namespace

ZunRtcpBye* ZunRtcpByeConstructDefault(ZunRtcpBye* p, ZunAllocator* a) {
  Fields::ConstructDefault(p, a);
  return kIdentity.Mark(p);
}

ZunRtcpBye* ZunRtcpByeConstructFull(ZunRtcpBye* p, const ZunVector_ZunRtpSourceId* sources, const ZunString* reason,
                                    ZunAllocator* a) {
  if (!CheckSources(sources, "ZunRtcpByeConstructFull")) return nullptr;
  if (!CheckReason(reason, "ZunRtcpByeConstructFull")) return nullptr;
  ZunRtcpByeConstructDefault(p, a);
  if (ZunStringAssign(&p->reason, reason) != nullptr && Sources::Assign(&p->sources, sources) != nullptr) return p;
  ZunRtcpByeDestruct(p);
  return nullptr;
}

ZUN_RTCP_OWNING_KIND_DEFINE(ZunRtcpBye, kIdentity, &ZunRtcpBye::sources, &ZunRtcpBye::reason)

ZunBool ZunRtcpByeSetSources(ZunRtcpBye* p, const ZunVector_ZunRtpSourceId* sources) {
  return CheckSources(sources, "ZunRtcpByeSetSources") && Sources::Assign(&p->sources, sources) != nullptr;
}

ZunBool ZunRtcpByeSetReason(ZunRtcpBye* p, const ZunString* reason) {
  return CheckReason(reason, "ZunRtcpByeSetReason") && ZunStringAssign(&p->reason, reason) != nullptr;
}

ZUN_RTCP_ROW_DEFINE(ZunRtcpBye, Wire)
