#include "Zun/Rtp/Dialect/ZunRtcpTmmb.h"

#include <bit>

#include "Zun/Rtp/Core/FeedbackHeader.h"
#include "Zun/Rtp/Core/RegisteredNumbers.h"
#include "Zun/Rtp/Datagram.h"

namespace {

constexpr ZunSizeT kEntrySize = 8;
constexpr ZunSizeT kMaxEntries = (65535 - 2) / 2;  // words after the feedback header, two each
constexpr int kExponentShift = 26;
constexpr int kMantissaShift = 9;
constexpr ZunUint32 kMaxMantissa = 0x1FFFF;
constexpr int kMantissaBits = 17;
constexpr ZunUint16 kMaxOverhead = 0x1FF;
constexpr int kMaxExponent = 63;
static_assert(ZUN_RTCP_TMMB_TYPE_TMMBR == zun::kRegisteredTmmbr && ZUN_RTCP_TMMB_TYPE_TMMBN == zun::kRegisteredTmmbn);

bool IsType(ZunRtcpTmmbType type) { return type == ZUN_RTCP_TMMB_TYPE_TMMBR || type == ZUN_RTCP_TMMB_TYPE_TMMBN; }

bool IsInRange(const ZunRtcpTmmbEntry& entry) {
  return entry.exponent <= kMaxExponent && entry.mantissa <= kMaxMantissa && entry.overhead <= kMaxOverhead;
}

bool AreInRange(const ZunRtcpTmmbEntry* entries, ZunSizeT count) {
  for (ZunSizeT i = 0; i < count; ++i) {
    if (!IsInRange(entries[i])) return false;
  }
  return true;
}

// 2^exponent, for the exponents of normal doubles.
double PowerOfTwo(int exponent) { return std::bit_cast<double>(static_cast<ZunUint64>(exponent + 1023) << 52); }

ZunRtcpDecodeReason ReadEntries(ZunRtcpTmmb* p, ZunRtcpTmmbType type, zun::BodyReader r) {
  if (r.ReadableBytes() % kEntrySize != 0) return ZUN_RTCP_DECODE_REASON_TOO_SHORT;
  if (type == ZUN_RTCP_TMMB_TYPE_TMMBR && r.AtEnd()) return ZUN_RTCP_DECODE_REASON_NO_ENTRIES;
  p->type = type;
  p->count = r.ReadableBytes() / kEntrySize;
  p->entries = r.Take(p->count * kEntrySize);
  return ZUN_RTCP_DECODE_REASON_NONE;
}

ZunRtcpDecodeReason ReadPacket(ZunRtcpTmmb* p, const ZunUint8* octets, ZunSizeT size) {
  zun::Datagram datagram({octets, size, 0, 0, 0, {}, nullptr, nullptr, nullptr});
  const ZunRtcpDecodeReason reason = datagram.RtcpSubpacketReadHeader();
  if (reason != ZUN_RTCP_DECODE_REASON_NONE) return reason;
  if (!datagram.AtEnd()) return ZUN_RTCP_DECODE_REASON_LEFT_OVER;
  const zun::Body& body = datagram.body();
  if (body.header.type != ZUN_RTCPSUBPACKET_TYPE_RTPFB || !IsType(body.header.count)) {
    return ZUN_RTCP_DECODE_REASON_VALUE;
  }
  if (!datagram.TakePadding()) return ZUN_RTCP_DECODE_REASON_PADDING;
  zun::BodyReader r(body);
  ZunUint32 source;
  if (!r.U32(&p->sender) || !r.U32(&source)) return ZUN_RTCP_DECODE_REASON_TOO_SHORT;
  return ReadEntries(p, body.header.count, r);
}

ZunRtcpDecodeReason ReadSubpacket(ZunRtcpTmmb* p, const ZunRtcpSubpacket* sp) {
  if (ZunRtcpSubpacketGetType(sp) != ZUN_RTCPSUBPACKET_TYPE_RTPFB) return ZUN_RTCP_DECODE_REASON_VALUE;
  const ZunRtcpRtpfbUnknown& message = sp->rtpfb.unk;
  if (message.fmt != ZUN_RTCP_TMMB_TYPE_TMMBN) return ZUN_RTCP_DECODE_REASON_VALUE;
  p->sender = message.sender;
  const ZunString& data = message.data;
  return ReadEntries(p, message.fmt,
                     zun::BodyReader(reinterpret_cast<const ZunUint8*>(data.buf), data.size, 0, data.size));
}

bool Tell(ZunRtcpDecodeReason reason, ZunRtcpDecodeReason* where) {
  if (where != nullptr) *where = reason;
  return reason == ZUN_RTCP_DECODE_REASON_NONE;
}

}  // namespace

ZunBool ZunRtcpTmmbRead(ZunRtcpTmmb* p, const void* octets, ZunSizeT size, ZunRtcpDecodeReason* reason) {
  return Tell(ReadPacket(p, static_cast<const ZunUint8*>(octets), size), reason);
}

ZunBool ZunRtcpTmmbReadSubpacket(ZunRtcpTmmb* p, const ZunRtcpSubpacket* sp, ZunRtcpDecodeReason* reason) {
  return Tell(ReadSubpacket(p, sp), reason);
}

ZunBool ZunRtcpTmmbGetEntry(const ZunRtcpTmmb* p, ZunSizeT n, ZunRtcpTmmbEntry* entry) {
  if (n >= p->count) return 0;
  const ZunUint8* const octets = p->entries + n * kEntrySize;
  const ZunUint32 word = ZunUint32FromOctets(octets + 4);
  *entry = {ZunUint32FromOctets(octets), static_cast<ZunUint8>(word >> kExponentShift),
            word >> kMantissaShift & kMaxMantissa, static_cast<ZunUint16>(word & kMaxOverhead)};
  return 1;
}

ZunBool ZunRtcpTmmbWrite(ZunRtcpTmmbType type, ZunRtpSourceId sender, const ZunRtcpTmmbEntry* entries, ZunSizeT count,
                         void* octets, ZunSizeT capacity, ZunSizeT* size) {
  *size = 0;
  const ZunSizeT least = type == ZUN_RTCP_TMMB_TYPE_TMMBR ? 1 : 0;
  if (!IsType(type) || count < least || count > kMaxEntries || !AreInRange(entries, count)) return 0;
  *size = zun::kFeedbackHeaderSize + count * kEntrySize;
  if (*size > capacity) return 0;
  zun::FieldWriter f(static_cast<ZunUint8*>(octets));
  f.U32(zun::FeedbackHeaderWord(false, zun::IsRtpfb(type), *size));
  f.U32(sender);
  f.U32(0);
  for (ZunSizeT i = 0; i < count; ++i) {
    f.U32(entries[i].ssrc);
    f.U32(static_cast<ZunUint32>(entries[i].exponent) << kExponentShift | entries[i].mantissa << kMantissaShift |
          entries[i].overhead);
  }
  return 1;
}

double ZunRtcpTmmbEntryGetBitrate(const ZunRtcpTmmbEntry* p) { return p->mantissa * PowerOfTwo(p->exponent); }

ZunBool ZunRtcpTmmbEntrySetBitrate(ZunRtcpTmmbEntry* p, double bitrate) {
  int exponent = 0;
  // Not a number compares false with everything.
  while (exponent <= kMaxExponent && !(bitrate < PowerOfTwo(exponent + kMantissaBits))) ++exponent;
  if (exponent > kMaxExponent || !(bitrate >= 0)) return 0;
  p->exponent = static_cast<ZunUint8>(exponent);
  p->mantissa = static_cast<ZunUint32>(bitrate / PowerOfTwo(exponent));
  return 1;
}
