#include "Zun/Rtp/Dialect/ZunRtcpDecode.h"

#include <cassert>

#include "Zun/Rtp/Datagram.h"
#include "Zun/Rtp/SubpacketDispatch.h"
#include "Zun/Utils/VectorAlgorithms.h"

ZUN_VECTOR_USE_OWNING(ZunRtcpSubpacket)

namespace {

using zun::Body;
using zun::Datagram;
using zun::SubpacketDispatch;
using zun::SubpacketLevel;
using Subpackets = zun::VectorOfZunRtcpSubpacket;

constexpr ZunRtcpDecodeOptions kDefaultOptions = {0, 1024, 65535, 32768, nullptr, nullptr};

zun::ReadTerms TermsOf(ZunRtcpDialect dialect, const ZunRtcpDecodeOptions& options) {
  return {dialect, options.maxEntries, options.maxStatuses, ZUN_RTCP_DECODE_REASON_NONE, 0};
}

class Decoder {
 public:
  Decoder(ZunRtcpPacket* p, const void* octets, ZunSizeT size, ZunRtcpDialect dialect,
          const ZunRtcpDecodeOptions& options, ZunRtcpDecodeReport* report)
      : subpackets_(&p->subpackets),
        next_(p->subpackets.begin),
        options_(options),
        report_(report),
        allowed_(options.maxSubpackets),
        is_registered_(dialect == ZUN_RTCP_DIALECT_REGISTERED),
        terms_(TermsOf(dialect, options)),
        datagram_({static_cast<const ZunUint8*>(octets),
                   size,
                   0,
                   0,
                   0,
                   {},
                   subpackets_->allocator,
                   subpackets_->allocator,
                   &terms_}) {
    if (report_ != nullptr) *report_ = {};
  }
  Decoder(const Decoder&) = delete;
  Decoder& operator=(const Decoder&) = delete;

  bool Decode() {
    const bool is_whole = DecodeAll();
    Subpackets::TruncateAt(subpackets_, next_);
    if (report_ != nullptr) report_->read = Count();
    return is_whole || (options_.tolerant && Count() != 0);
  }

 private:
  // Whether nothing was refused.
  bool DecodeAll() {
    if (datagram_.AtEnd()) return RefuseHeader(ZUN_RTCP_DECODE_REASON_EMPTY);
    while (!datagram_.AtEnd()) {
      const ZunRtcpDecodeReason reason = datagram_.RtcpSubpacketReadHeader();
      if (reason != ZUN_RTCP_DECODE_REASON_NONE) return RefuseHeader(reason);
      if (!Read(datagram_.body())) [[unlikely]] {
        RefuseBody();
        if (!options_.tolerant) return false;
      }
    }
    return refused_ == 0;
  }

  bool Read(const Body& body) {
    if (is_registered_ && !datagram_.TakePadding()) [[unlikely]]
      return terms_.Refuse(ZUN_RTCP_DECODE_REASON_PADDING, body.end);
    if (allowed_ == 0) [[unlikely]]
      return terms_.Refuse(ZUN_RTCP_DECODE_REASON_LIMIT, body.begin);
    if (next_ == subpackets_->end ? !Append(body) : !ReadOver(body)) return false;
    ++next_;
    --allowed_;
    return true;
  }

  // One that fails stays as it is, to be read over again or to go with the rest.
  bool ReadOver(const Body& body) {
    return SubpacketDispatch::AssignFromBody(SubpacketLevel::RowOf(body.header.type), next_, body,
                                             [](const Body& of, ZunAllocator*) { return of.packet_allocator; });
  }

  bool Append(const Body& body) {
    if (!MakeRoom()) return terms_.Refuse(ZUN_RTCP_DECODE_REASON_ALLOCATION, body.begin);
    if (!SubpacketLevel::RowOf(body.header.type).construct_from_body(next_, body, body.packet_allocator)) {
      ZunRtcpSubpacketDestruct(next_);
      return false;
    }
    ++subpackets_->end;
    return true;
  }

  // For all subpackets that are left and allowed, at once, or for as many as there are blocks for. They are counted
  // once: where room is refused it is asked for again at each of them.
  bool MakeRoom() {
    if (subpackets_->end != subpackets_->endBuf) return true;
    if (total_ == 0) total_ = Index() + 1 + zun::CountSubpackets(datagram_);
    const ZunSizeT count = Count();
    const ZunSizeT left = total_ - Index();
    Subpackets::ReserveGrownOrLess(subpackets_, count + (left < allowed_ ? left : allowed_));
    next_ = subpackets_->end;
    return subpackets_->end != subpackets_->endBuf;
  }

  ZunSizeT Count() const { return static_cast<ZunSizeT>(next_ - subpackets_->begin); }

  bool RefuseHeader(ZunRtcpDecodeReason reason) {
    const Body& body = datagram_.body();
    const ZunSizeT begin = datagram_.Position();
    ZunRtcpDecodeRefusal refusal = {reason, Index(), 0, 0, begin, body.size - begin, begin};
    if (reason == ZUN_RTCP_DECODE_REASON_VERSION || reason == ZUN_RTCP_DECODE_REASON_LENGTH) {
      refusal.type = body.header.type;
      refusal.count = body.header.count;
      refusal.length = zun::kSubpacketHeaderSize + ZunSizeT{4} * ZunUint16FromOctets(body.octets + begin + 2);
    }
    if (reason == ZUN_RTCP_DECODE_REASON_LENGTH) refusal.stoppedAt = begin + 2;
    Report(refusal);
    return false;
  }

  [[gnu::cold, gnu::noinline]] void RefuseBody() {
    assert(terms_.reason != ZUN_RTCP_DECODE_REASON_NONE && "a kind refuses a body and does not say why");
    const Body& body = datagram_.body();
    const ZunSizeT begin = body.begin - zun::kSubpacketHeaderSize;
    Report({terms_.reason, Index(), body.header.type, body.header.count, begin, datagram_.Position() - begin,
            terms_.position});
    terms_.reason = ZUN_RTCP_DECODE_REASON_NONE;
  }

  // Of the subpacket that is gone to: all in front of it were read or refused.
  ZunSizeT Index() const { return Count() + refused_; }

  void Report(const ZunRtcpDecodeRefusal& refusal) {
    if (report_ != nullptr && refused_ == 0) report_->first = refusal;
    ++refused_;
    if (report_ != nullptr) report_->refused = refused_;
    if (options_.onRefusal != nullptr) options_.onRefusal(options_.userData, &refusal);
  }

  ZunVector_ZunRtcpSubpacket* subpackets_;
  ZunRtcpSubpacket* next_;  // the place of the next one that is read; those before it are
  const ZunRtcpDecodeOptions& options_;
  ZunRtcpDecodeReport* report_;
  ZunSizeT allowed_;  // how many subpackets more may be read: counting those that are there takes a division
  const bool is_registered_;
  zun::ReadTerms terms_;
  Datagram datagram_;
  ZunSizeT refused_ = 0;
  ZunSizeT total_ = 0;  // of the subpackets in the datagram; 0 while nobody counted them
};

}  // namespace

void ZunRtcpDecodeOptionsConstructDefault(ZunRtcpDecodeOptions* o) { *o = kDefaultOptions; }

ZunBool ZunRtcpPacketDecode(ZunRtcpPacket* p, const void* octets, ZunSizeT size, ZunRtcpDialect dialect,
                            const ZunRtcpDecodeOptions* options, ZunRtcpDecodeReport* report) {
  return Decoder(p, octets, size, dialect, options != nullptr ? *options : kDefaultOptions, report).Decode();
}
