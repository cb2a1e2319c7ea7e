// Transport-layer feedback: NACK, TMMBR, TMMBN, transport-wide congestion control, CCFB, ABAFB, and what is unknown.
// The fields have the names, units and ranges that the C structs tell of them, in Zun/Rtp/TransportFeedback/.
#ifndef ZUN_RTP_CPP_TRANSPORTFEEDBACK_H
#define ZUN_RTP_CPP_TRANSPORTFEEDBACK_H

#include <chrono>
#include <optional>

#include "Zun/Rtp/Cpp/Feedback.h"
#include "Zun/Rtp/TransportFeedback/ZunRtcpRtpfb.h"

namespace zun::rtcp {

ZUN_RTCP_CPP_FUNCTIONS_(ZunRtcpRtpfbNack)
ZUN_RTCP_CPP_FUNCTIONS_(ZunRtcpRtpfbTmmbr)
ZUN_RTCP_CPP_FUNCTIONS_(ZunRtcpRtpfbTmmbn)
ZUN_RTCP_CPP_FUNCTIONS_(ZunRtcpRtpfbTransportCc)
ZUN_RTCP_CPP_FUNCTIONS_(ZunRtcpRtpfbCcfb)
ZUN_RTCP_CPP_FUNCTIONS_(ZunRtcpRtpfbAbafb)
ZUN_RTCP_CPP_FUNCTIONS_(ZunRtcpRtpfbUnknown)
ZUN_RTCP_CPP_VECTOR_(ZunRtcpRtpfbNackSeqMap)
ZUN_RTCP_CPP_VECTOR_(ZunRtcpRtpfbTmmbrEntry)
ZUN_RTCP_CPP_VECTOR_(ZunRtcpRtpfbTransportCcPacketInfo)
ZUN_RTCP_CPP_VECTOR_(ZunRtcpRtpfbCcfbPacketMetric)
ZUN_RTCP_CPP_VECTOR_(ZunRtcpRtpfbCcfbStream)

// ---- NACK

using NackSeqMap = ZunRtcpRtpfbNackSeqMap;

// The sequence numbers of a NACK, map by map: a forward range of std::uint16_t.
class LostNumbers {
 public:
  class iterator {
   public:
    using value_type = std::uint16_t;
    using reference = std::uint16_t;
    using pointer = void;
    using difference_type = std::ptrdiff_t;
    using iterator_category = std::input_iterator_tag;
    using iterator_concept = std::forward_iterator_tag;

    iterator() noexcept = default;
    explicit iterator(const NackSeqMap* map) noexcept : map_(map) {}

    std::uint16_t operator*() const noexcept { return static_cast<std::uint16_t>(map_->seqNumber + offset_); }
    iterator& operator++() noexcept {
      // Bit i of the map is of the number i + 1 above the base.
      do {
        ++offset_;
      } while (offset_ <= 16 && (map_->map >> (offset_ - 1) & 1U) == 0);
      if (offset_ > 16) *this = iterator(map_ + 1);
      return *this;
    }
    iterator operator++(int) noexcept {
      const iterator before = *this;
      ++*this;
      return before;
    }
    friend bool operator==(const iterator&, const iterator&) noexcept = default;

   private:
    const NackSeqMap* map_ = nullptr;
    unsigned offset_ = 0;
  };

  explicit LostNumbers(std::span<const NackSeqMap> maps) noexcept : maps_(maps) {}
  iterator begin() const noexcept { return iterator(maps_.data()); }
  iterator end() const noexcept { return iterator(maps_.data() + maps_.size()); }
  bool empty() const noexcept { return maps_.empty(); }

 private:
  std::span<const NackSeqMap> maps_;
};

template <class S>
class BasicNack : public Feedback<S> {
 public:
  using Feedback<S>::Feedback;

  auto seq_maps() noexcept { return list_of(this->get()->seqMaps); }
  auto seq_maps() const noexcept { return list_of(this->get()->seqMaps); }

  // The numbers that are asked for, as they stand: neither sorted nor with duplicates left out.
  LostNumbers lost() const noexcept { return LostNumbers(seq_maps()); }
  std::size_t lost_count() const noexcept { return ZunRtcpRtpfbNackGetNumOfSeqNumbers(this->get()); }
  // Whether adding it would append a map, and so 4 bytes.
  bool will_require_new_seq_map(std::uint16_t seq) const noexcept {
    return ZunRtcpRtpfbNackWillSeqNumberRequireNewSeqMap(this->get(), seq) != 0;
  }
  // False when an allocation is refused.
  [[nodiscard]] bool add(std::uint16_t seq) noexcept { return ZunRtcpRtpfbNackAddSeqNumber(this->get(), seq) != 0; }
  void remove(std::uint16_t seq) noexcept { ZunRtcpRtpfbNackRemoveSeqNumber(this->get(), seq); }
};

template <>
struct Face<ZunRtcpRtpfbNack> {
  template <class S>
  using Of = BasicNack<S>;
};
using Nack = BasicNack<Owning<ZunRtcpRtpfbNack>>;

// ---- TMMBR and TMMBN

using TmmbrEntry = ZunRtcpRtpfbTmmbrEntry;

template <class S>
class BasicTmmbr : public Feedback<S> {
 public:
  using Feedback<S>::Feedback;

  auto fci() noexcept { return list_of(this->get()->fci); }
  auto fci() const noexcept { return list_of(this->get()->fci); }
  [[nodiscard]] bool add(Ssrc ssrc, std::uint32_t max_bitrate) noexcept {
    return fci().push_back(TmmbrEntry{ssrc, 0, max_bitrate});
  }
};

template <>
struct Face<ZunRtcpRtpfbTmmbr> {
  template <class S>
  using Of = BasicTmmbr<S>;
};
using Tmmbr = BasicTmmbr<Owning<ZunRtcpRtpfbTmmbr>>;

template <class S>
class BasicTmmbn : public Feedback<S> {
 public:
  using Feedback<S>::Feedback;

  std::uint32_t max_bitrate() const noexcept { return this->get()->max_bitrate; }
  void max_bitrate(std::uint32_t bitrate) noexcept { this->get()->max_bitrate = bitrate; }
};

template <>
struct Face<ZunRtcpRtpfbTmmbn> {
  template <class S>
  using Of = BasicTmmbn<S>;
};
using Tmmbn = BasicTmmbn<Owning<ZunRtcpRtpfbTmmbn>>;

// ---- transport-wide congestion control

using TransportCcPacketInfo = ZunRtcpRtpfbTransportCcPacketInfo;

// What feedback tells of one packet. The time is one of the receiver's clock, of which only differences mean something.
struct Arrival {
  std::uint16_t seq;
  bool received;
  std::optional<std::chrono::nanoseconds> time;  // where it is known
};

template <class S>
class BasicTransportCc : public Feedback<S> {
 public:
  using Feedback<S>::Feedback;

  std::uint16_t base_seq() const noexcept { return this->get()->baseSeq; }
  void base_seq(std::uint16_t seq) noexcept { this->get()->baseSeq = seq; }
  std::int32_t ref_time() const noexcept { return this->get()->refTime; }
  void ref_time(std::int32_t time) noexcept { this->get()->refTime = time; }
  std::uint8_t packet_count() const noexcept { return this->get()->packetCount; }
  void packet_count(std::uint8_t count) noexcept { this->get()->packetCount = count; }
  auto packet_info() noexcept { return list_of(this->get()->packetInfo); }
  auto packet_info() const noexcept { return list_of(this->get()->packetInfo); }
  // What the next delta counts from; ZUN_RTCPRTPFB_TRANSPORTCC_NO_TIME before the first.
  ZunTime latest_time() const noexcept { return this->get()->latestTime; }
  void latest_time(ZunTime time) noexcept { this->get()->latestTime = time; }

  // How many more packets fit into so many bytes, an estimate.
  std::size_t estimated_packets_remaining(std::size_t mtu) const noexcept {
    return ZunRtcpRtpfbTransportCcGetEstimatedPacketsRemaining(this->get(), mtu);
  }
  // Adds the next packet, received or not. False, the statuses unchanged, when the time is too far from the last one,
  // or when an allocation is refused.
  [[nodiscard]] bool add_packet(bool received, std::uint16_t seq, ZunTime time) noexcept {
    return ZunRtcpRtpfbTransportCcAddPacket(this->get(), received ? 1 : 0, seq, time) != 0;
  }
  // Adds a packet that arrived, and as lost the numbers since the one before it. False, the statuses unchanged, when it
  // is no later than the last one, and as add_packet.
  [[nodiscard]] bool record(std::uint16_t seq, std::chrono::nanoseconds time) noexcept {
    auto infos = packet_info();
    const std::size_t before = infos.size();
    if (before != 0) {
      const auto next = static_cast<std::uint16_t>(base_seq() + before);
      const auto lost = static_cast<std::uint16_t>(seq - next);
      if (lost >= 0x8000 || !RecordLost(lost)) return false;
    }
    if (add_packet(true, seq, time.count())) return true;
    while (infos.size() > before) infos.pop_back();
    return false;
  }
  template <class Clock, class Duration>
  [[nodiscard]] bool record(std::uint16_t seq, std::chrono::time_point<Clock, Duration> time) noexcept {
    return record(seq, std::chrono::duration_cast<std::chrono::nanoseconds>(time.time_since_epoch()));
  }

  // Calls `take(Arrival)` for each packet that is told, in order.
  template <class Take>
  void for_each_arrival(Take&& take) const {
    std::chrono::nanoseconds time = std::chrono::milliseconds(64) * std::int64_t{ref_time()};
    std::uint16_t seq = base_seq();
    for (const TransportCcPacketInfo& info : packet_info()) {
      Arrival arrival{seq, info.received != 0, std::nullopt};
      seq = static_cast<std::uint16_t>(seq + 1);
      if (info.received && info.haveDelta) arrival.time = time += std::chrono::microseconds(250) * info.delta;
      take(arrival);
    }
  }

 private:
  // Room is made for the one that arrived as well. All or none.
  bool RecordLost(std::size_t count) noexcept {
    auto infos = packet_info();
    const std::size_t needed = infos.size() + count + 1;
    if (needed > infos.capacity() && !infos.reserve(needed < 2 * infos.size() ? 2 * infos.size() : needed))
      return false;
    for (std::size_t i = 0; i < count; ++i) {
      if (!infos.push_back({})) return false;
    }
    return true;
  }
};

template <>
struct Face<ZunRtcpRtpfbTransportCc> {
  template <class S>
  using Of = BasicTransportCc<S>;
};
using TransportCc = BasicTransportCc<Owning<ZunRtcpRtpfbTransportCc>>;

// ---- CCFB

using CcfbPacketMetric = ZunRtcpRtpfbCcfbPacketMetric;

template <>
struct Functions<ZunRtcpRtpfbCcfbStream> {
  using Stream = ZunRtcpRtpfbCcfbStream;
  static void ConstructDefault(Stream* p, ZunAllocator* a) noexcept { ZunRtcpRtpfbCcfbStreamConstructDefault(p, 0, a); }
  static bool ConstructCopy(Stream* p, const Stream* o) noexcept {
    return ZunRtcpRtpfbCcfbStreamConstructCopy(p, o) != nullptr;
  }
  static bool Assign(Stream* p, const Stream* o) noexcept { return ZunRtcpRtpfbCcfbStreamAssign(p, o) != nullptr; }
  static void Destruct(Stream* p) noexcept { ZunRtcpRtpfbCcfbStreamDestruct(p); }
  static ZunAllocator* GetAllocator(const Stream* p) noexcept { return p->packetMetrics.allocator; }
};

template <class S>
class BasicCcfbStream : public S {
 public:
  using S::S;
  BasicCcfbStream() = default;
  explicit BasicCcfbStream(Ssrc ssrc, ZunAllocator* a = system_allocator()) noexcept : S(a) { this->ssrc(ssrc); }

  Ssrc ssrc() const noexcept { return this->get()->ssrc; }
  void ssrc(Ssrc ssrc) noexcept { this->get()->ssrc = ssrc; }
  std::uint16_t begin_seq() const noexcept { return this->get()->beginSeq; }
  void begin_seq(std::uint16_t seq) noexcept { this->get()->beginSeq = seq; }
  auto packet_metrics() noexcept { return list_of(this->get()->packetMetrics); }
  auto packet_metrics() const noexcept { return list_of(this->get()->packetMetrics); }

  // Adds the metric of the next packet. False, the metrics unchanged, when another number is next, or when an
  // allocation is refused.
  [[nodiscard]] bool add(std::uint16_t seq, bool received, std::uint8_t ecn,
                         std::uint16_t arrival_time_offset) noexcept {
    return ZunRtcpRtpfbCcfbStreamAddPacket(this->get(), seq, received ? 1 : 0, ecn, arrival_time_offset) != 0;
  }
};

template <>
struct Face<ZunRtcpRtpfbCcfbStream> {
  template <class S>
  using Of = BasicCcfbStream<S>;
};
using CcfbStream = BasicCcfbStream<Owning<ZunRtcpRtpfbCcfbStream>>;

template <>
struct Rebase<ZunRtcpRtpfbCcfb> {
  static bool Assign(ZunRtcpRtpfbCcfb* to, const ZunRtcpRtpfbCcfb* from) noexcept {
    to->sender = from->sender;
    to->sendTimestamp = from->sendTimestamp;
    return RebaseElements(&to->streams, &from->streams);
  }
};

// Has no media source: each of its streams names one.
template <class S>
class BasicCcfb : public S {
 public:
  using S::S;
  BasicCcfb() = default;
  explicit BasicCcfb(Ssrc sender, ZunAllocator* a = system_allocator()) noexcept : S(a) { this->sender(sender); }

  Ssrc sender() const noexcept { return this->get()->sender; }
  void sender(Ssrc sender) noexcept { this->get()->sender = sender; }
  auto streams() noexcept { return list_of(this->get()->streams); }
  auto streams() const noexcept { return list_of(this->get()->streams); }
  // In seconds with 16 fraction bits (from_16_16, in Time.h).
  std::uint32_t send_timestamp() const noexcept { return this->get()->sendTimestamp; }
  void send_timestamp(std::uint32_t timestamp) noexcept { this->get()->sendTimestamp = timestamp; }
  void send_timestamp_from_monotonic(std::chrono::nanoseconds time) noexcept {
    ZunRtcpRtpfbCcfbSetSendTimestampFromMonotonic(this->get(), time.count());
  }
  // A copy with the stream's allocator, or the stream itself. False, the streams unchanged, when an allocation is
  // refused.
  [[nodiscard]] bool add(Looking<const ZunRtcpRtpfbCcfbStream> stream) noexcept { return streams().push_back(stream); }
  [[nodiscard]] bool add(Owning<ZunRtcpRtpfbCcfbStream>&& stream) noexcept {
    return streams().push_back(std::move(stream));
  }
};

template <>
struct Face<ZunRtcpRtpfbCcfb> {
  template <class S>
  using Of = BasicCcfb<S>;
};
using Ccfb = BasicCcfb<Owning<ZunRtcpRtpfbCcfb>>;

// ---- ABAFB

template <class S>
class BasicAbafb : public Feedback<S> {
 public:
  using Feedback<S>::Feedback;

  std::uint32_t timestamp() const noexcept { return this->get()->timestamp; }
  void timestamp(std::uint32_t timestamp) noexcept { this->get()->timestamp = timestamp; }
  // In microseconds.
  std::uint32_t delay() const noexcept { return ZunRtcpRtpfbAbafbGetDelay(this->get()); }
  void delay(std::uint32_t delay) noexcept { ZunRtcpRtpfbAbafbSetDelay(this->get(), delay); }
  bool calculate_delay() const noexcept { return this->get()->calculate_delay != 0; }
  // From now on the delay is measured from this time on, of MonotonicClock.
  void timestamp_time(std::chrono::nanoseconds time) noexcept {
    ZunRtcpRtpfbAbafbSetTimestampTime(this->get(), time.count());
  }
  std::uint32_t data_rate() const noexcept { return this->get()->data_rate; }
  void data_rate(std::uint32_t rate) noexcept { this->get()->data_rate = rate; }
  std::uint32_t loss_rate() const noexcept { return this->get()->loss_rate; }
  void loss_rate(std::uint32_t rate) noexcept { this->get()->loss_rate = rate; }
  std::uint32_t aba_data_rate() const noexcept { return this->get()->aba_data_rate; }
  void aba_data_rate(std::uint32_t rate) noexcept { this->get()->aba_data_rate = rate; }
};

template <>
struct Face<ZunRtcpRtpfbAbafb> {
  template <class S>
  using Of = BasicAbafb<S>;
};
using Abafb = BasicAbafb<Owning<ZunRtcpRtpfbAbafb>>;

// ---- what is unknown

template <class S>
class BasicUnknownRtpfb : public Feedback<S> {
 public:
  using Feedback<S>::Feedback;

  ZunRtcpRtpfbType fmt() const noexcept { return this->get()->fmt; }
  // False for a type that the library models, and for one outside 0 to 31.
  [[nodiscard]] bool fmt(ZunRtcpRtpfbType type) noexcept {
    return ZunRtcpRtpfbFeedbackMessageIsUnknown(type) && ZunRtcpRtpfbUnknownSetFeedbackMessageType(this->get(), type);
  }
  std::span<const std::byte> data() const noexcept { return octets_of(this->get()->data); }
  // False when its size is no multiple of 4, or an allocation is refused.
  [[nodiscard]] bool data(std::span<const std::byte> data) noexcept {
    const ZunString octets = borrowed(data);
    return ZunRtcpRtpfbUnknownSetData(this->get(), &octets) != 0;
  }
};

template <>
struct Face<ZunRtcpRtpfbUnknown> {
  template <class S>
  using Of = BasicUnknownRtpfb<S>;
};
using UnknownRtpfb = BasicUnknownRtpfb<Owning<ZunRtcpRtpfbUnknown>>;

}  // namespace zun::rtcp

#endif
