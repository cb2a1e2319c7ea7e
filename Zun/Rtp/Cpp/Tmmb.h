// TMMBR and TMMBN as registered (RFC 5104, sections 4.2.1 and 4.2.2), FMT 3 and 4 of packet type 205. No object of a
// packet holds these: they are read from octets and written to octets. The fields have the names, units and ranges of
// Zun/Rtp/Dialect/ZunRtcpTmmb.h.
#ifndef ZUN_RTP_CPP_TMMB_H
#define ZUN_RTP_CPP_TMMB_H

#include <cstddef>
#include <iterator>
#include <span>
#include <vector>

#include "Zun/Rtp/Cpp/Subpacket.h"
#include "Zun/Rtp/Dialect/ZunRtcpTmmb.h"

namespace zun::rtcp {

using TmmbEntry = ZunRtcpTmmbEntry;

// In bit/s, up to 1.2e24.
inline double bitrate(const TmmbEntry& entry) noexcept { return ZunRtcpTmmbEntryGetBitrate(&entry); }
// Sets mantissa and exponent to the largest bit rate that is not above it. False for one that cannot be told.
[[nodiscard]] inline bool bitrate(TmmbEntry& entry, double bitrate) noexcept {
  return ZunRtcpTmmbEntrySetBitrate(&entry, bitrate) != 0;
}

// A message that was read: a range of its entries, over octets that must outlive it.
//   packet.decode(octets, {.dialect = Dialect::registered, .tolerant = true}, [&](const DecodeRefusal& refusal) {
//     for (TmmbEntry entry : TmmbMessage(octets.subspan(refusal.offset, refusal.length))) slow_down(entry);
//   });
class TmmbMessage {
 public:
  // Of the octets of a subpacket, its header included, as a refusal tells them.
  explicit TmmbMessage(std::span<const std::byte> octets) noexcept {
    if (!ZunRtcpTmmbRead(&message_, octets.data(), octets.size(), &reason_)) message_ = {};
  }
  // Of a TMMBN in a packet, where it is an unknown message of FMT 4.
  explicit TmmbMessage(Looking<const ZunRtcpSubpacket> subpacket) noexcept {
    if (!ZunRtcpTmmbReadSubpacket(&message_, subpacket.get(), &reason_)) message_ = {};
  }

  // False for what is something else, or malformed: reason() tells. It has no entries then.
  explicit operator bool() const noexcept { return message_.type != 0; }
  ZunRtcpDecodeReason reason() const noexcept { return reason_; }

  ZunRtcpTmmbType type() const noexcept { return message_.type; }
  Ssrc sender() const noexcept { return message_.sender; }
  std::size_t size() const noexcept { return message_.count; }
  bool empty() const noexcept { return size() == 0; }
  // Entry `n`, which must be there.
  TmmbEntry operator[](std::size_t n) const noexcept {
    TmmbEntry entry{};
    ZunRtcpTmmbGetEntry(&message_, n, &entry);
    return entry;
  }

  class iterator {
   public:
    using value_type = TmmbEntry;
    using reference = TmmbEntry;
    using pointer = void;
    using difference_type = std::ptrdiff_t;
    using iterator_category = std::input_iterator_tag;
    using iterator_concept = std::forward_iterator_tag;

    iterator() noexcept = default;
    iterator(const TmmbMessage* message, std::size_t n) noexcept : message_(message), n_(n) {}
    TmmbEntry operator*() const noexcept { return (*message_)[n_]; }
    iterator& operator++() noexcept {
      ++n_;
      return *this;
    }
    iterator operator++(int) noexcept { return iterator(message_, n_++); }
    friend bool operator==(const iterator&, const iterator&) noexcept = default;

   private:
    const TmmbMessage* message_ = nullptr;
    std::size_t n_ = 0;
  };
  iterator begin() const noexcept { return iterator(this, 0); }
  iterator end() const noexcept { return iterator(this, size()); }

 private:
  ZunRtcpTmmb message_{};
  ZunRtcpDecodeReason reason_ = ZUN_RTCP_DECODE_REASON_NONE;
};

// Appends the octets of a message, its header included, to a datagram. False, the datagram unchanged, when it cannot be
// written: a TMMBR without entries, an entry beyond its ranges, more than 32,766 of them.
[[nodiscard]] inline bool append_tmmb(std::vector<std::byte>& datagram, ZunRtcpTmmbType type, Ssrc sender,
                                      std::span<const TmmbEntry> entries) {
  std::size_t size = 0;
  ZunRtcpTmmbWrite(type, sender, entries.data(), entries.size(), nullptr, 0, &size);
  if (size == 0) return false;
  const std::size_t before = datagram.size();
  datagram.resize(before + size);
  return ZunRtcpTmmbWrite(type, sender, entries.data(), entries.size(), datagram.data() + before, size, &size) != 0;
}

}  // namespace zun::rtcp

#endif
