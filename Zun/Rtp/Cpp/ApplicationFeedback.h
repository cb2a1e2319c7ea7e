// Application-layer feedback: REMB, the house messages ABAFB, ALBR, SHOW, SHOWACK and LIR, and what is unknown. The
// fields have the names, units and ranges that the C structs tell of them, in Zun/Rtp/ApplicationFeedback/.
#ifndef ZUN_RTP_CPP_APPLICATIONFEEDBACK_H
#define ZUN_RTP_CPP_APPLICATIONFEEDBACK_H

#include <chrono>

#include "Zun/Rtp/ApplicationFeedback/ZunRtcpPsfbAfb.h"
#include "Zun/Rtp/Cpp/Feedback.h"

namespace zun::rtcp {

ZUN_RTCP_CPP_FUNCTIONS_(ZunRtcpPsfbAfbRemb)
ZUN_RTCP_CPP_FUNCTIONS_(ZunRtcpPsfbAfbAbafb)
ZUN_RTCP_CPP_FUNCTIONS_(ZunRtcpPsfbAfbAlbr)
ZUN_RTCP_CPP_FUNCTIONS_(ZunRtcpPsfbAfbShow)
ZUN_RTCP_CPP_FUNCTIONS_(ZunRtcpPsfbAfbShowAck)
ZUN_RTCP_CPP_FUNCTIONS_(ZunRtcpPsfbAfbLir)
ZUN_RTCP_CPP_FUNCTIONS_(ZunRtcpPsfbAfbUnknown)
ZUN_RTCP_CPP_VECTOR_(ZunRtcpPsfbAfbShowParameter)
ZUN_RTCP_CPP_VECTOR_(ZunRtcpPsfbAfbLirEntry)

// ---- REMB

template <class S>
class BasicRemb : public Feedback<S> {
 public:
  using Feedback<S>::Feedback;

  // In bit/s.
  float bitrate() const noexcept { return this->get()->bitrate; }
  // False when it is negative, not a number, or more than the wire can carry.
  [[nodiscard]] bool bitrate(float value) noexcept { return ZunRtcpPsfbAfbRembSetBitrate(this->get(), value) != 0; }
  auto sources() noexcept { return list_of(this->get()->sources); }
  auto sources() const noexcept { return list_of(this->get()->sources); }
  [[nodiscard]] bool add(Ssrc source) noexcept { return sources().push_back(source); }
};

template <>
struct Face<ZunRtcpPsfbAfbRemb> {
  template <class S>
  using Of = BasicRemb<S>;
};
using Remb = BasicRemb<Owning<ZunRtcpPsfbAfbRemb>>;

// ---- house messages

template <class S>
class BasicAfbAbafb : public Feedback<S> {
 public:
  using Feedback<S>::Feedback;

  std::uint32_t timestamp() const noexcept { return this->get()->timestamp; }
  void timestamp(std::uint32_t value) noexcept { this->get()->timestamp = value; }
  // In microseconds.
  std::uint32_t delay() const noexcept { return ZunRtcpPsfbAfbAbafbGetDelay(this->get()); }
  void delay(std::uint32_t value) noexcept { ZunRtcpPsfbAfbAbafbSetDelay(this->get(), value); }
  bool calculate_delay() const noexcept { return this->get()->calculate_delay != 0; }
  // From now on the delay is measured from this time on, of MonotonicClock.
  void timestamp_time(std::chrono::nanoseconds time) noexcept {
    ZunRtcpPsfbAfbAbafbSetTimestampTime(this->get(), time.count());
  }
  std::uint32_t data_rate() const noexcept { return this->get()->data_rate; }
  void data_rate(std::uint32_t value) noexcept { this->get()->data_rate = value; }
  std::uint32_t loss_rate() const noexcept { return this->get()->loss_rate; }
  void loss_rate(std::uint32_t value) noexcept { this->get()->loss_rate = value; }
  std::uint32_t aba_data_rate() const noexcept { return this->get()->aba_data_rate; }
  void aba_data_rate(std::uint32_t value) noexcept { this->get()->aba_data_rate = value; }
  std::int32_t average_delay_difference() const noexcept { return this->get()->average_delay_difference; }
  void average_delay_difference(std::int32_t value) noexcept { this->get()->average_delay_difference = value; }
  std::uint32_t average_arrival_difference() const noexcept { return this->get()->average_arrival_difference; }
  void average_arrival_difference(std::uint32_t value) noexcept { this->get()->average_arrival_difference = value; }
};

template <>
struct Face<ZunRtcpPsfbAfbAbafb> {
  template <class S>
  using Of = BasicAfbAbafb<S>;
};
using AfbAbafb = BasicAfbAbafb<Owning<ZunRtcpPsfbAfbAbafb>>;

template <class S>
class BasicAlbr : public Feedback<S> {
 public:
  using Feedback<S>::Feedback;

  std::uint32_t available_bit_rate() const noexcept { return this->get()->available_bit_rate; }
  void available_bit_rate(std::uint32_t value) noexcept { this->get()->available_bit_rate = value; }
};

template <>
struct Face<ZunRtcpPsfbAfbAlbr> {
  template <class S>
  using Of = BasicAlbr<S>;
};
using Albr = BasicAlbr<Owning<ZunRtcpPsfbAfbAlbr>>;

using ShowParameter = ZunRtcpPsfbAfbShowParameter;

template <class S>
class BasicShow : public Feedback<S> {
 public:
  using Feedback<S>::Feedback;

  std::uint8_t seqno() const noexcept { return this->get()->seqno; }
  void seqno(std::uint8_t value) noexcept { this->get()->seqno = value; }
  auto parameters() noexcept { return list_of(this->get()->parameters); }
  auto parameters() const noexcept { return list_of(this->get()->parameters); }
  // False for a type that there is not, a value that it does not accept, and when an allocation is refused.
  [[nodiscard]] bool add(ZunRtcpPsfbAfbShowParameterType type, std::uint64_t value) noexcept {
    ShowParameter parameter;
    return ZunRtcpPsfbAfbShowParameterConstruct(&parameter, type, value) != nullptr &&
           parameters().push_back(parameter);
  }
};

template <>
struct Face<ZunRtcpPsfbAfbShow> {
  template <class S>
  using Of = BasicShow<S>;
};
using Show = BasicShow<Owning<ZunRtcpPsfbAfbShow>>;

template <class S>
class BasicShowAck : public Feedback<S> {
 public:
  using Feedback<S>::Feedback;

  std::uint8_t seqno() const noexcept { return this->get()->seqno; }
  void seqno(std::uint8_t value) noexcept { this->get()->seqno = value; }
  Ssrc show_sender() const noexcept { return this->get()->showSender; }
  void show_sender(Ssrc value) noexcept { this->get()->showSender = value; }
};

template <>
struct Face<ZunRtcpPsfbAfbShowAck> {
  template <class S>
  using Of = BasicShowAck<S>;
};
using ShowAck = BasicShowAck<Owning<ZunRtcpPsfbAfbShowAck>>;

template <>
struct Functions<ZunRtcpPsfbAfbLirEntry> {
  using Entry = ZunRtcpPsfbAfbLirEntry;
  static void ConstructDefault(Entry* p, ZunAllocator* a) noexcept {
    p->ssrc = 0;
    p->seqno = 0;
    p->payloadType = 0;
    ZunStringConstructDefault(&p->layerData, a);
  }
  static bool ConstructCopy(Entry* p, const Entry* o) noexcept {
    return ZunRtcpPsfbAfbLirEntryConstructCopy(p, o) != nullptr;
  }
  static bool Assign(Entry* p, const Entry* o) noexcept { return ZunRtcpPsfbAfbLirEntryAssign(p, o) != nullptr; }
  static void Destruct(Entry* p) noexcept { ZunRtcpPsfbAfbLirEntryDestruct(p); }
  static ZunAllocator* GetAllocator(const Entry* p) noexcept { return p->layerData.allocator; }
};

template <class S>
class BasicLirEntry : public S {
 public:
  using S::S;

  Ssrc ssrc() const noexcept { return this->get()->ssrc; }
  void ssrc(Ssrc value) noexcept { this->get()->ssrc = value; }
  std::uint8_t seqno() const noexcept { return this->get()->seqno; }
  void seqno(std::uint8_t value) noexcept { this->get()->seqno = value; }
  std::uint8_t payload_type() const noexcept { return this->get()->payloadType; }
  // False when it exceeds 127.
  [[nodiscard]] bool payload_type(std::uint8_t value) noexcept {
    return value <= 127 && ZunRtcpPsfbAfbLirEntrySetPayloadType(this->get(), value);
  }
  std::span<const std::byte> layer_data() const noexcept { return octets_of(this->get()->layerData); }
  [[nodiscard]] bool layer_data(std::span<const std::byte> value) noexcept {
    const ZunString octets = borrowed(value);
    return ZunRtcpPsfbAfbLirEntrySetLayerData(this->get(), &octets) != 0;
  }
};

template <>
struct Face<ZunRtcpPsfbAfbLirEntry> {
  template <class S>
  using Of = BasicLirEntry<S>;
};
using LirEntry = BasicLirEntry<Owning<ZunRtcpPsfbAfbLirEntry>>;

template <>
struct Rebase<ZunRtcpPsfbAfbLir> {
  static bool Assign(ZunRtcpPsfbAfbLir* to, const ZunRtcpPsfbAfbLir* from) noexcept {
    to->sender = from->sender;
    to->source = from->source;
    return RebaseElements(&to->fci, &from->fci);
  }
};

template <class S>
class BasicLir : public Feedback<S> {
 public:
  using Feedback<S>::Feedback;

  auto fci() noexcept { return list_of(this->get()->fci); }
  auto fci() const noexcept { return list_of(this->get()->fci); }
  // False, the entries unchanged, when the payload type exceeds 127 or an allocation is refused.
  [[nodiscard]] bool add(Ssrc ssrc, std::uint8_t seqno, std::uint8_t payload_type,
                         std::span<const std::byte> layer_data) noexcept {
    LirEntry entry(this->get()->fci.allocator);
    entry.ssrc(ssrc);
    entry.seqno(seqno);
    return entry.payload_type(payload_type) && entry.layer_data(layer_data) && fci().push_back(std::move(entry));
  }
};

template <>
struct Face<ZunRtcpPsfbAfbLir> {
  template <class S>
  using Of = BasicLir<S>;
};
using Lir = BasicLir<Owning<ZunRtcpPsfbAfbLir>>;

// ---- what is unknown

template <class S>
class BasicUnknownAfb : public Feedback<S> {
 public:
  using Feedback<S>::Feedback;

  std::span<const std::byte> data() const noexcept { return octets_of(this->get()->data); }
  // False when its size is no multiple of 4, or an allocation is refused.
  [[nodiscard]] bool data(std::span<const std::byte> value) noexcept {
    const ZunString octets = borrowed(value);
    return ZunRtcpPsfbAfbUnknownSetData(this->get(), &octets) != 0;
  }
};

template <>
struct Face<ZunRtcpPsfbAfbUnknown> {
  template <class S>
  using Of = BasicUnknownAfb<S>;
};
using UnknownAfb = BasicUnknownAfb<Owning<ZunRtcpPsfbAfbUnknown>>;

}  // namespace zun::rtcp

#endif
