#include "Zun/Rtp/Dialect/ZunRtcpEncode.h"

#include "Zun/Rtp/Core/BodyWriter.h"
#include "Zun/Rtp/SubpacketDispatch.h"

namespace {

using zun::Output;
using zun::SubpacketDispatch;

constexpr ZunSizeT kMaxSubpacketLength = 262144;  // 65536 words

// Subpackets [begin, end) of a list, as they follow each other in a datagram.
struct Run {
  const ZunRtcpSubpacket* begin;
  const ZunRtcpSubpacket* end;
};

Run All(const ZunVector_ZunRtcpSubpacket& v) { return {v.begin, v.end}; }

// A length depends on where it begins by less than a word; it is that at the beginning of a word that counts.
bool IsTooLong(const ZunRtcpSubpacket* sp, ZunRtcpDialect dialect) {
  return SubpacketDispatch::EncodedLength(sp, 0, dialect) > kMaxSubpacketLength;
}

ZunRtcpEncodeReason FindUnencodable(const ZunRtcpSubpacket* sp, ZunRtcpDialect dialect) {
  const ZunRtcpEncodeReason reason = SubpacketDispatch::FindUnencodable(sp, dialect);
  if (reason != ZUN_RTCP_ENCODE_REASON_NONE) return reason;
  return IsTooLong(sp, dialect) ? ZUN_RTCP_ENCODE_REASON_TOO_LONG : ZUN_RTCP_ENCODE_REASON_NONE;
}

// The length of a run that begins at byte `begin`; stores it only when all of the run can be encoded.
bool AddLength(Run run, ZunRtcpDialect dialect, ZunSizeT* total) {
  ZunSizeT size = *total;
  for (const ZunRtcpSubpacket* sp = run.begin; sp != run.end; ++sp) {
    if (FindUnencodable(sp, dialect) != ZUN_RTCP_ENCODE_REASON_NONE) return false;
    size += SubpacketDispatch::EncodedLength(sp, size, dialect);
  }
  *total = size;
  return true;
}

// Appends one subpacket. False when it cannot be encoded or does not fit.
bool Write(const ZunRtcpSubpacket* sp, Output& out) {
  const ZunSizeT begin = out.Size();
  if (!SubpacketDispatch::Write(sp, out, false)) return false;
  return out.Size() - begin <= kMaxSubpacketLength || !IsTooLong(sp, out.dialect());
}

bool WriteAll(Run run, Output& out) {
  for (const ZunRtcpSubpacket* sp = run.begin; sp != run.end; ++sp) {
    if (!Write(sp, out)) return false;
  }
  return true;
}

// Appends subpackets from the beginning of a run while they can be encoded and fit. Returns the first that is left, and
// stores the size up to it.
const ZunRtcpSubpacket* WriteWhatFits(Run run, Output& out, ZunSizeT* size) {
  const ZunRtcpSubpacket* sp = run.begin;
  *size = out.Size();
  for (; sp != run.end && Write(sp, out); ++sp) *size = out.Size();
  return sp;
}

}  // namespace

ZunBool ZunRtcpPacketEncode(const ZunRtcpPacket* p, void* octets, ZunSizeT capacity, ZunRtcpDialect dialect,
                            ZunSizeT* size) {
  Output out(static_cast<ZunUint8*>(octets), capacity, dialect);
  const bool written = WriteAll(All(p->subpackets), out) && out.Size() != 0;
  *size = written ? out.Size() : ZunRtcpPacketGetEncodedLength(p, dialect);
  return written;
}

ZunBool ZunRtcpPacketEncodePart(const ZunRtcpPacket* p, void* octets, ZunSizeT capacity, ZunRtcpDialect dialect,
                                ZunSizeT first, const ZunVector_ZunRtcpSubpacket* prefix, ZunSizeT* last,
                                ZunSizeT* size) {
  *size = 0;
  const ZunRtcpSubpacket* const from = ZunRtcpPacketGetSubpacket(p, first);
  if (from == nullptr) return 0;
  const Run in_front = prefix != nullptr ? All(*prefix) : Run{nullptr, nullptr};
  Output out(static_cast<ZunUint8*>(octets), capacity, dialect);
  if (WriteAll(in_front, out)) {
    const ZunRtcpSubpacket* const left = WriteWhatFits({from, p->subpackets.end}, out, size);
    if (left != from) {
      *last = first + static_cast<ZunSizeT>(left - from);
      return 1;
    }
  }
  ZunSizeT needed = 0;
  *size = AddLength(in_front, dialect, &needed) && AddLength({from, from + 1}, dialect, &needed) ? needed : 0;
  return 0;
}

ZunSizeT ZunRtcpPacketGetEncodedLength(const ZunRtcpPacket* p, ZunRtcpDialect dialect) {
  ZunSizeT length = 0;
  return AddLength(All(p->subpackets), dialect, &length) ? length : 0;
}

ZunRtcpEncodeReason ZunRtcpPacketFindUnencodable(const ZunRtcpPacket* p, ZunRtcpDialect dialect, ZunSizeT* index) {
  const ZunSizeT count = ZunRtcpPacketGetSubpacketCount(p);
  ZunRtcpEncodeReason reason = count == 0 ? ZUN_RTCP_ENCODE_REASON_EMPTY : ZUN_RTCP_ENCODE_REASON_NONE;
  ZunSizeT i = 0;
  for (; i < count; ++i) {
    reason = FindUnencodable(ZunRtcpPacketGetSubpacket(p, i), dialect);
    if (reason != ZUN_RTCP_ENCODE_REASON_NONE) break;
  }
  if (index != nullptr) *index = i;
  return reason;
}
