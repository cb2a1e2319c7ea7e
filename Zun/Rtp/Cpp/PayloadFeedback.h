// Payload-specific feedback: PLI, SLI, RPSI, FIR, TSTR, TSTA, and what is unknown. The fields have the names, units and
// ranges that the C structs tell of them, in Zun/Rtp/PayloadFeedback/.
#ifndef ZUN_RTP_CPP_PAYLOADFEEDBACK_H
#define ZUN_RTP_CPP_PAYLOADFEEDBACK_H

#include "Zun/Rtp/Cpp/Feedback.h"
#include "Zun/Rtp/PayloadFeedback/ZunRtcpPsfb.h"

namespace zun::rtcp {

ZUN_RTCP_CPP_FUNCTIONS_(ZunRtcpPsfbPli)
ZUN_RTCP_CPP_FUNCTIONS_(ZunRtcpPsfbSli)
ZUN_RTCP_CPP_FUNCTIONS_(ZunRtcpPsfbRpsi)
ZUN_RTCP_CPP_FUNCTIONS_(ZunRtcpPsfbFir)
ZUN_RTCP_CPP_FUNCTIONS_(ZunRtcpPsfbTstr)
ZUN_RTCP_CPP_FUNCTIONS_(ZunRtcpPsfbTsta)
ZUN_RTCP_CPP_FUNCTIONS_(ZunRtcpPsfbUnknown)
ZUN_RTCP_CPP_VECTOR_(ZunRtcpPsfbSliItem)
ZUN_RTCP_CPP_VECTOR_(ZunRtcpPsfbFirEntry)
ZUN_RTCP_CPP_VECTOR_(ZunRtcpPsfbTstrEntry)
ZUN_RTCP_CPP_VECTOR_(ZunRtcpPsfbTstaEntry)

// ---- loss of pictures and parts of them

template <class S>
class BasicPli : public Feedback<S> {
 public:
  using Feedback<S>::Feedback;

  std::span<const std::byte> profile_specific_ext() const noexcept {
    return octets_of(this->get()->profile_specific_ext);
  }
  // False when its size is no multiple of 4, or an allocation is refused.
  [[nodiscard]] bool profile_specific_ext(std::span<const std::byte> value) noexcept {
    const ZunString octets = borrowed(value);
    return ZunRtcpPsfbPliSetProfileSpecificExt(this->get(), &octets) != 0;
  }
};

template <>
struct Face<ZunRtcpPsfbPli> {
  template <class S>
  using Of = BasicPli<S>;
};
using Pli = BasicPli<Owning<ZunRtcpPsfbPli>>;

using SliItem = ZunRtcpPsfbSliItem;

template <class S>
class BasicSli : public Feedback<S> {
 public:
  using Feedback<S>::Feedback;

  auto items() noexcept { return list_of(this->get()->items); }
  auto items() const noexcept { return list_of(this->get()->items); }
  // False, the items unchanged, when a number exceeds its field (13, 13 and 6 bits) or an allocation is refused.
  [[nodiscard]] bool add(std::uint16_t lost_mblock, std::uint16_t num_lost_mblocks, std::uint8_t picture_id) noexcept {
    if (lost_mblock > 0x1FFF || num_lost_mblocks > 0x1FFF || picture_id > 0x3F) return false;
    return items().push_back(SliItem{lost_mblock, num_lost_mblocks, picture_id});
  }
};

template <>
struct Face<ZunRtcpPsfbSli> {
  template <class S>
  using Of = BasicSli<S>;
};
using Sli = BasicSli<Owning<ZunRtcpPsfbSli>>;

template <class S>
class BasicRpsi : public Feedback<S> {
 public:
  using Feedback<S>::Feedback;

  std::uint8_t unbits() const noexcept { return this->get()->unbits; }
  void unbits(std::uint8_t value) noexcept { this->get()->unbits = value; }
  std::uint8_t pt() const noexcept { return this->get()->pt; }
  // False when it exceeds 127.
  [[nodiscard]] bool pt(std::uint8_t value) noexcept { return ZunRtcpPsfbRpsiSetPt(this->get(), value) != 0; }
  std::span<const std::byte> rpsi() const noexcept { return octets_of(this->get()->rpsi); }
  [[nodiscard]] bool rpsi(std::span<const std::byte> value) noexcept {
    const ZunString octets = borrowed(value);
    return ZunRtcpPsfbRpsiSetRpsi(this->get(), &octets) != 0;
  }
};

template <>
struct Face<ZunRtcpPsfbRpsi> {
  template <class S>
  using Of = BasicRpsi<S>;
};
using Rpsi = BasicRpsi<Owning<ZunRtcpPsfbRpsi>>;

// ---- codec control

using FirEntry = ZunRtcpPsfbFirEntry;
using TstrEntry = ZunRtcpPsfbTstrEntry;
using TstaEntry = ZunRtcpPsfbTstaEntry;

template <class S>
class BasicFir : public Feedback<S> {
 public:
  using Feedback<S>::Feedback;

  auto fci() noexcept { return list_of(this->get()->fci); }
  auto fci() const noexcept { return list_of(this->get()->fci); }
  [[nodiscard]] bool add(Ssrc ssrc, std::uint8_t seqno) noexcept { return fci().push_back(FirEntry{ssrc, seqno}); }
};

template <>
struct Face<ZunRtcpPsfbFir> {
  template <class S>
  using Of = BasicFir<S>;
};
using Fir = BasicFir<Owning<ZunRtcpPsfbFir>>;

template <class S>
class BasicTstr : public Feedback<S> {
 public:
  using Feedback<S>::Feedback;

  auto fci() noexcept { return list_of(this->get()->fci); }
  auto fci() const noexcept { return list_of(this->get()->fci); }
  // False, the entries unchanged, when the index exceeds 31 or an allocation is refused.
  [[nodiscard]] bool add(Ssrc ssrc, std::uint8_t seqno, std::uint8_t index) noexcept {
    return index <= 31 && fci().push_back(TstrEntry{ssrc, seqno, index});
  }
};

template <>
struct Face<ZunRtcpPsfbTstr> {
  template <class S>
  using Of = BasicTstr<S>;
};
using Tstr = BasicTstr<Owning<ZunRtcpPsfbTstr>>;

template <class S>
class BasicTsta : public Feedback<S> {
 public:
  using Feedback<S>::Feedback;

  auto fci() noexcept { return list_of(this->get()->fci); }
  auto fci() const noexcept { return list_of(this->get()->fci); }
  // False, the entries unchanged, when the index exceeds 31 or an allocation is refused.
  [[nodiscard]] bool add(Ssrc ssrc, std::uint8_t seqno, std::uint8_t index) noexcept {
    return index <= 31 && fci().push_back(TstaEntry{ssrc, seqno, index});
  }
};

template <>
struct Face<ZunRtcpPsfbTsta> {
  template <class S>
  using Of = BasicTsta<S>;
};
using Tsta = BasicTsta<Owning<ZunRtcpPsfbTsta>>;

// ---- what is unknown

template <class S>
class BasicUnknownPsfb : public Feedback<S> {
 public:
  using Feedback<S>::Feedback;

  ZunRtcpPsfbType fmt() const noexcept { return this->get()->fmt; }
  // False for a type that the library models, and for one outside 0 to 31.
  [[nodiscard]] bool fmt(ZunRtcpPsfbType type) noexcept {
    return ZunRtcpPsfbTypeIsUnknown(type) && ZunRtcpPsfbUnknownSetFeedbackMessageType(this->get(), type);
  }
  std::span<const std::byte> data() const noexcept { return octets_of(this->get()->data); }
  // False when its size is no multiple of 4, or an allocation is refused.
  [[nodiscard]] bool data(std::span<const std::byte> value) noexcept {
    const ZunString octets = borrowed(value);
    return ZunRtcpPsfbUnknownSetData(this->get(), &octets) != 0;
  }
};

template <>
struct Face<ZunRtcpPsfbUnknown> {
  template <class S>
  using Of = BasicUnknownPsfb<S>;
};
using UnknownPsfb = BasicUnknownPsfb<Owning<ZunRtcpPsfbUnknown>>;

}  // namespace zun::rtcp

#endif
