// The compound packet: decoded from octets, looked through, put together, encoded into octets.
#ifndef ZUN_RTP_CPP_PACKET_H
#define ZUN_RTP_CPP_PACKET_H

#include <cstddef>
#include <memory>
#include <span>
#include <utility>
#include <vector>

#include "Zun/Rtp/Cpp/Dialect.h"
#include "Zun/Rtp/Cpp/Result.h"
#include "Zun/Rtp/Cpp/Subpacket.h"
#include "Zun/Rtp/Dialect/ZunRtcpDecode.h"
#include "Zun/Rtp/Dialect/ZunRtcpEncode.h"
#include "Zun/Rtp/ZunRtcpPacket.h"
#if ZUN_RTCP_HAS_REPORTS
#include "Zun/Rtp/Dialect/ZunRtcpComposition.h"
#endif

namespace zun::rtcp {

ZUN_RTCP_CPP_FUNCTIONS_(ZunRtcpPacket)
ZUN_RTCP_CPP_VECTOR_(ZunRtcpSubpacket)

template <>
struct Rebase<ZunRtcpPacket> {
  static bool Assign(ZunRtcpPacket* to, const ZunRtcpPacket* from) noexcept {
    return RebaseElements(&to->subpackets, &from->subpackets);
  }
};

// How to decode; the limits are those of ZunRtcpDecodeOptions.
struct DecodeOptions {
  Dialect dialect = Dialect::house;
  bool tolerant = false;  // skip what is refused, and read the rest
  std::size_t max_subpackets = Defaults().maxSubpackets;
  std::size_t max_statuses = Defaults().maxStatuses;
  std::size_t max_entries = Defaults().maxEntries;

 private:
  static ZunRtcpDecodeOptions Defaults() noexcept {
    ZunRtcpDecodeOptions options;
    ZunRtcpDecodeOptionsConstructDefault(&options);
    return options;
  }
};

class Datagrams;

template <class S>
class BasicPacket : public S {
 public:
  using S::S;

  // ---- octets in

  // Replaces the subpackets by those of a datagram. The same object decodes a datagram of the same shape again without
  // an allocation.
  Result<DecodeReport, DecodeError> decode(std::span<const std::byte> octets,
                                           const DecodeOptions& options = {}) noexcept {
    return Decode(octets, options, nullptr, nullptr);
  }
  // With `on_refusal(const DecodeRefusal&)` called for each that is refused. It must not throw.
  template <class OnRefusal>
  Result<DecodeReport, DecodeError> decode(std::span<const std::byte> octets, const DecodeOptions& options,
                                           OnRefusal&& on_refusal) noexcept {
    using Callable = std::remove_reference_t<OnRefusal>;
    constexpr ZunRtcpDecodeRefusalHandler kCall = [](ZunVoidPtr callable, const ZunRtcpDecodeRefusal* refusal) {
      (*static_cast<Callable*>(callable))(*refusal);
    };
    return Decode(octets, options, kCall, const_cast<void*>(static_cast<const void*>(std::addressof(on_refusal))));
  }

  // ---- the subpackets: a range of View<Subpacket>

  auto begin() const noexcept { return list().begin(); }
  auto end() const noexcept { return list().end(); }
  std::size_t size() const noexcept { return list().size(); }
  bool empty() const noexcept { return list().empty(); }
  View<Subpacket> operator[](std::size_t n) const noexcept { return list()[n]; }
  // The first of this kind.
  template <SubpacketKind Class>
  std::optional<View<Class>> find() const noexcept {
    for (const View<Subpacket> subpacket : *this) {
      if (auto found = get_if<Class>(subpacket)) return found;
    }
    return std::nullopt;
  }

  // The same as a list that may be changed: a range of Ref<Subpacket>.
  auto edit() noexcept { return list_of(this->get()->subpackets); }

  // Appends a copy with the packet's allocator. False, the packet unchanged, when an allocation is refused.
  [[nodiscard]] bool append(Looking<const ZunRtcpSubpacket> subpacket) noexcept { return edit().push_back(subpacket); }
  template <SubpacketKind Class>
  [[nodiscard]] bool append(const Class& object) noexcept {
    auto made = copy(Looking<const ObjectOf<Class>>(*object.get()), this->get()->subpackets.allocator);
    return made && Take(&*made);
  }
  // Appends the object itself, which is then empty. False, both unchanged, when an allocation is refused.
  [[nodiscard]] bool append(Subpacket&& subpacket) noexcept { return Take(&subpacket); }
  template <SubpacketKind Class>
  requires std::derived_from<Class, Owning<ObjectOf<Class>>>
  [[nodiscard]] bool append(Class&& object) noexcept { return Take(&object); }
  // Builds one of this kind in the packet, with the packet's allocator after these arguments.
  //   if (auto nack = packet.emplace<Nack>(us, them)) ok = nack->add(seq);
  template <SubpacketKind Class, class... Arguments>
  std::optional<Ref<Class>> emplace(Arguments&&... arguments) noexcept {
    if (!append(Class(std::forward<Arguments>(arguments)..., this->get()->subpackets.allocator))) return std::nullopt;
    return get_if<Class>(edit().back());
  }
  void erase(std::size_t n) noexcept { edit().erase(n); }
  // Drops all, and keeps the storage of the list.
  void clear() noexcept { edit().clear(); }

  // ---- octets out

  // Exactly how many octets encode writes; 0 when the packet cannot be encoded.
  std::size_t encoded_length(Dialect dialect = Dialect::house) const noexcept {
    return ZunRtcpPacketGetEncodedLength(this->get(), static_cast<ZunRtcpDialect>(dialect));
  }
  // Into octets of the caller's: how many were written.
  Result<std::size_t, EncodeError> encode(std::span<std::byte> octets,
                                          Dialect dialect = Dialect::house) const noexcept {
    std::size_t size = 0;
    const bool is_written = ZunRtcpPacketEncode(this->get(), octets.data(), octets.size(),
                                                static_cast<ZunRtcpDialect>(dialect), &size) != 0;
    if (is_written) return size;
    return size != 0 ? EncodeError::no_room(size) : WhyNot(dialect);
  }
  // Into a vector, which becomes exactly the datagram. Its storage is used again.
  Result<std::size_t, EncodeError> encode(std::vector<std::byte>& octets, Dialect dialect = Dialect::house) const {
    const std::size_t size = encoded_length(dialect);
    if (size == 0) return WhyNot(dialect);
    octets.resize(size);
    return encode(std::span(octets), dialect);
  }
  Result<std::vector<std::byte>, EncodeError> encode(Dialect dialect = Dialect::house) const {
    std::vector<std::byte> octets;
    if (auto written = encode(octets, dialect); !written) return written.error();
    return octets;
  }
  // Into a string of the library's, which becomes exactly the datagram.
  Result<std::size_t, EncodeError> encode(ZunString& octets, Dialect dialect = Dialect::house) const noexcept {
    const std::size_t size = encoded_length(dialect);
    if (size == 0) return WhyNot(dialect);
    ZunStringClear(&octets);
    if (ZunStringAppendN(&octets, size, '\0') == nullptr) return EncodeError::no_room(size);
    return encode(std::as_writable_bytes(std::span(octets.buf, size)), dialect);
  }

  // The packet as datagrams of at most `max_size` octets, each of them all of `prefix` and as many whole subpackets as
  // fit. Both packets must outlive the range. With `buffer` no memory is taken, and its size is the limit.
  Datagrams datagrams(std::size_t max_size, Dialect dialect = Dialect::house) const;
  Datagrams datagrams(std::size_t max_size, Looking<const ZunRtcpPacket> prefix,
                      Dialect dialect = Dialect::house) const;
  Datagrams datagrams(std::span<std::byte> buffer, Dialect dialect = Dialect::house) const noexcept;
  Datagrams datagrams(std::span<std::byte> buffer, Looking<const ZunRtcpPacket> prefix,
                      Dialect dialect = Dialect::house) const noexcept;

#if ZUN_RTCP_HAS_REPORTS
  // What a strict receiver would object to (ZunRtcpComposition.h); 0 when there is nothing.
  ZunRtcpComposition check_composition() const noexcept { return ZunRtcpPacketCheckComposition(this->get()); }
#endif

 private:
  auto list() const noexcept { return list_of(std::as_const(this->get()->subpackets)); }

  Result<DecodeReport, DecodeError> Decode(std::span<const std::byte> octets, const DecodeOptions& options,
                                           ZunRtcpDecodeRefusalHandler on_refusal, void* user_data) noexcept {
    const ZunRtcpDecodeOptions in_c{
        options.tolerant, options.max_subpackets, options.max_statuses, options.max_entries, on_refusal, user_data};
    DecodeReport report;
    const bool is_read = ZunRtcpPacketDecode(this->get(), octets.data(), octets.size(),
                                             static_cast<ZunRtcpDialect>(options.dialect), &in_c, &report) != 0;
    if (is_read) return report;
    return DecodeError(report);
  }
  template <class C>
  bool Take(Owning<C>* object) noexcept {
    if (!edit().reserve_one()) return false;
    object->release_to(this->get()->subpackets.end++);
    return true;
  }
  EncodeError WhyNot(Dialect dialect) const noexcept {
    std::size_t index = 0;
    const ZunRtcpEncodeReason reason =
        ZunRtcpPacketFindUnencodable(this->get(), static_cast<ZunRtcpDialect>(dialect), &index);
    return EncodeError::unencodable(reason, index);
  }
};

template <>
struct Face<ZunRtcpPacket> {
  template <class S>
  using Of = BasicPacket<S>;
};
using Packet = BasicPacket<Owning<ZunRtcpPacket>>;

// One datagram after another, each a std::span<const std::byte> that is valid until the next:
//   Datagrams datagrams = packet.datagrams(1200);
//   for (auto datagram : datagrams) send(datagram);
//   if (datagrams.error()) ...
// It can be walked through once. It ends after the last subpacket, or where one does not fit or cannot be encoded;
// error() tells which and why.
class Datagrams {
 public:
  Datagrams(const ZunRtcpPacket& packet, const ZunRtcpPacket* prefix, Dialect dialect, std::size_t max_size)
      : packet_(&packet), prefix_(prefix), dialect_(dialect), own_(max_size), buffer_(own_) {}
  Datagrams(const ZunRtcpPacket& packet, const ZunRtcpPacket* prefix, Dialect dialect,
            std::span<std::byte> buffer) noexcept
      : packet_(&packet), prefix_(prefix), dialect_(dialect), buffer_(buffer) {}
  Datagrams(Datagrams&&) noexcept = default;
  Datagrams& operator=(Datagrams&&) noexcept = default;
  ~Datagrams() = default;

  class iterator {
   public:
    using value_type = std::span<const std::byte>;
    using difference_type = std::ptrdiff_t;

    explicit iterator(Datagrams* datagrams) noexcept : datagrams_(datagrams) {}
    value_type operator*() const noexcept { return datagrams_->buffer_.first(datagrams_->size_); }
    iterator& operator++() noexcept {
      datagrams_->Next();
      return *this;
    }
    void operator++(int) noexcept { ++*this; }
    bool operator==(std::default_sentinel_t) const noexcept { return datagrams_->size_ == 0; }

   private:
    Datagrams* datagrams_;
  };

  iterator begin() noexcept {
    Next();
    return iterator(this);
  }
  std::default_sentinel_t end() const noexcept { return {}; }

  // Why it ended before the last subpacket; std::nullopt when all is sent.
  const std::optional<EncodeError>& error() const noexcept { return error_; }

 private:
  void Next() noexcept {
    size_ = 0;
    if (error_ || next_ == ZunRtcpPacketGetSubpacketCount(packet_)) return;
    std::size_t size = 0;
    const ZunVector_ZunRtcpSubpacket* const prefix = prefix_ == nullptr ? nullptr : &prefix_->subpackets;
    if (ZunRtcpPacketEncodePart(packet_, buffer_.data(), buffer_.size(), static_cast<ZunRtcpDialect>(dialect_), next_,
                                prefix, &next_, &size)) {
      size_ = size;
    } else {
      error_ = size != 0 ? EncodeError::no_room(size, next_) : WhyNot();
    }
  }
  // The fault is the prefix's when the subpacket alone can be written.
  EncodeError WhyNot() const noexcept {
    std::size_t index = 0;
    const auto dialect = static_cast<ZunRtcpDialect>(dialect_);
    if (prefix_ != nullptr) {
      const ZunRtcpEncodeReason reason = ZunRtcpPacketFindUnencodable(prefix_, dialect, &index);
      const bool is_of_prefix = reason != ZUN_RTCP_ENCODE_REASON_NONE && reason != ZUN_RTCP_ENCODE_REASON_EMPTY;
      if (is_of_prefix) return EncodeError::unencodable(reason, index);
    }
    const ZunRtcpEncodeReason reason = ZunRtcpPacketFindUnencodable(packet_, dialect, &index);
    return EncodeError::unencodable(reason, index);
  }

  const ZunRtcpPacket* packet_;
  const ZunRtcpPacket* prefix_;
  Dialect dialect_;
  std::vector<std::byte> own_;
  std::span<std::byte> buffer_;
  std::size_t next_ = 0;
  std::size_t size_ = 0;
  std::optional<EncodeError> error_;
};

template <class S>
Datagrams BasicPacket<S>::datagrams(std::size_t max_size, Dialect dialect) const {
  return Datagrams(*this->get(), nullptr, dialect, max_size);
}
template <class S>
Datagrams BasicPacket<S>::datagrams(std::size_t max_size, Looking<const ZunRtcpPacket> prefix, Dialect dialect) const {
  return Datagrams(*this->get(), prefix.get(), dialect, max_size);
}
template <class S>
Datagrams BasicPacket<S>::datagrams(std::span<std::byte> buffer, Dialect dialect) const noexcept {
  return Datagrams(*this->get(), nullptr, dialect, buffer);
}
template <class S>
Datagrams BasicPacket<S>::datagrams(std::span<std::byte> buffer, Looking<const ZunRtcpPacket> prefix,
                                    Dialect dialect) const noexcept {
  return Datagrams(*this->get(), prefix.get(), dialect, buffer);
}

}  // namespace zun::rtcp

#endif
