// Reports and session control: SR, RR, SDES, BYE, APP. The fields have the names, units and ranges that the C structs
// tell of them, in Zun/Rtp/Reports/.
#ifndef ZUN_RTP_CPP_REPORTS_H
#define ZUN_RTP_CPP_REPORTS_H

#include <optional>
#include <string_view>

#include "Zun/Rtp/Cpp/List.h"
#include "Zun/Rtp/Reports/ZunRtcpApp.h"
#include "Zun/Rtp/Reports/ZunRtcpBye.h"
#include "Zun/Rtp/Reports/ZunRtcpRr.h"
#include "Zun/Rtp/Reports/ZunRtcpSdes.h"
#include "Zun/Rtp/Reports/ZunRtcpSr.h"

namespace zun::rtcp {

ZUN_RTCP_CPP_FUNCTIONS_(ZunRtcpSr)
ZUN_RTCP_CPP_FUNCTIONS_(ZunRtcpRr)
ZUN_RTCP_CPP_FUNCTIONS_(ZunRtcpSdes)
ZUN_RTCP_CPP_FUNCTIONS_(ZunRtcpSdesItem)
ZUN_RTCP_CPP_FUNCTIONS_(ZunRtcpBye)
ZUN_RTCP_CPP_FUNCTIONS_(ZunRtcpApp)
ZUN_RTCP_CPP_VECTOR_(ZunRtcpReportBlock)
ZUN_RTCP_CPP_VECTOR_(ZunRtcpSdesItem)
ZUN_RTCP_CPP_VECTOR_(ZunRtcpSdesChunk)

// ---- report blocks, SR and RR

// A plain value: ReportBlock{.ssrc = 1, .fraction_lost = 64}.
using ReportBlock = ZunRtcpReportBlock;

// The cumulative number of packets lost, negative when duplicates outnumber losses.
inline std::int32_t packets_lost(const ReportBlock& block) noexcept { return ZunRtcpReportBlockGetPacketsLost(&block); }
// Saturates at 24 bits.
inline void packets_lost(ReportBlock& block, std::int32_t lost) noexcept {
  ZunRtcpReportBlockSetPacketsLost(&block, lost);
}

// What SR and RR share.
template <class S>
class Report : public S {
 public:
  using S::S;
  Report() = default;
  explicit Report(Ssrc sender_source, ZunAllocator* a = system_allocator()) noexcept : S(a) {
    this->sender_source(sender_source);
  }

  Ssrc sender_source() const noexcept { return this->get()->sender_source; }
  void sender_source(Ssrc source) noexcept { this->get()->sender_source = source; }

  auto report_blocks() noexcept { return list_of(this->get()->report_blocks); }
  auto report_blocks() const noexcept { return list_of(this->get()->report_blocks); }
  [[nodiscard]] bool add(const ReportBlock& block) noexcept { return report_blocks().push_back(block); }

  std::span<const std::byte> profile_specific_ext() const noexcept {
    return octets_of(this->get()->profile_specific_ext);
  }
};

template <class S>
class BasicSr : public Report<S> {
 public:
  using Report<S>::Report;
  using Report<S>::profile_specific_ext;

  std::uint64_t ntp_timestamp() const noexcept { return this->get()->ntp_timestamp; }
  void ntp_timestamp(std::uint64_t ntp) noexcept { this->get()->ntp_timestamp = ntp; }
  std::uint32_t rtp_timestamp() const noexcept { return this->get()->rtp_timestamp; }
  void rtp_timestamp(std::uint32_t timestamp) noexcept { this->get()->rtp_timestamp = timestamp; }
  std::uint32_t sender_packet_cnt() const noexcept { return this->get()->sender_packet_cnt; }
  void sender_packet_cnt(std::uint32_t count) noexcept { this->get()->sender_packet_cnt = count; }
  std::uint32_t sender_octet_cnt() const noexcept { return this->get()->sender_octet_cnt; }
  void sender_octet_cnt(std::uint32_t count) noexcept { this->get()->sender_octet_cnt = count; }

  // False when its size is no multiple of 4, or an allocation is refused.
  [[nodiscard]] bool profile_specific_ext(std::span<const std::byte> ext) noexcept {
    const ZunString octets = borrowed(ext);
    return ZunRtcpSrSetProfileSpecificExt(this->get(), &octets) != 0;
  }
};

template <class S>
class BasicRr : public Report<S> {
 public:
  using Report<S>::Report;
  using Report<S>::profile_specific_ext;

  // False when its size is no multiple of 4, or an allocation is refused.
  [[nodiscard]] bool profile_specific_ext(std::span<const std::byte> ext) noexcept {
    const ZunString octets = borrowed(ext);
    return ZunRtcpRrSetProfileSpecificExt(this->get(), &octets) != 0;
  }
};

template <>
struct Face<ZunRtcpSr> {
  template <class S>
  using Of = BasicSr<S>;
};
template <>
struct Face<ZunRtcpRr> {
  template <class S>
  using Of = BasicRr<S>;
};
using Sr = BasicSr<Owning<ZunRtcpSr>>;
using Rr = BasicRr<Owning<ZunRtcpRr>>;

// ---- SDES

// The parts of the text of a private extension item: views of that text.
struct SdesPriv {
  std::string_view prefix;  // names the application that gives the value its meaning
  std::string_view value;
};

template <class S>
class BasicSdesItem : public S {
 public:
  using S::S;

  ZunRtcpSdesItemType type() const noexcept { return this->get()->type; }
  void type(ZunRtcpSdesItemType type) noexcept { this->get()->type = type; }
  std::string_view text() const noexcept { return text_of(this->get()->text); }
  // False when it is longer than 255 bytes, or an allocation is refused.
  [[nodiscard]] bool text(std::string_view text) noexcept {
    const ZunString bytes = borrowed(text);
    return text.size() <= 255 && ZunStringAssign(&this->get()->text, &bytes) != nullptr;
  }
  // The parts of a PRIV item; nothing for other items, and where the text is shorter than its prefix.
  std::optional<SdesPriv> priv() const noexcept {
    if (type() != ZUN_RTCPSDESITEM_TYPE_PRIV || text().size() < 2) return std::nullopt;
    const std::size_t prefix = static_cast<unsigned char>(text()[0]);
    if (prefix >= text().size()) return std::nullopt;
    return SdesPriv{text().substr(1, prefix), text().substr(1 + prefix)};
  }
};

template <>
struct Face<ZunRtcpSdesItem> {
  template <class S>
  using Of = BasicSdesItem<S>;
};
using SdesItem = BasicSdesItem<Owning<ZunRtcpSdesItem>>;

template <>
struct Functions<ZunRtcpSdesChunk> {
  using Chunk = ZunRtcpSdesChunk;
  static void ConstructDefault(Chunk* p, ZunAllocator* a) noexcept { ZunRtcpSdesChunkConstructDefault(p, a); }
  static bool ConstructCopy(Chunk* p, const Chunk* o) noexcept {
    return ZunRtcpSdesChunkConstructCopy(p, o) != nullptr;
  }
  static bool Assign(Chunk* p, const Chunk* o) noexcept { return ZunRtcpSdesChunkAssign(p, o) != nullptr; }
  static void Destruct(Chunk* p) noexcept { ZunRtcpSdesChunkDestruct(p); }
  static ZunAllocator* GetAllocator(const Chunk* p) noexcept { return p->items.allocator; }
};

template <>
struct Rebase<ZunRtcpSdesChunk> {
  static bool Assign(ZunRtcpSdesChunk* to, const ZunRtcpSdesChunk* from) noexcept {
    to->ssrc = from->ssrc;
    return RebaseElements(&to->items, &from->items);
  }
};

template <class S>
class BasicSdesChunk : public S {
 public:
  using S::S;
  BasicSdesChunk() = default;
  explicit BasicSdesChunk(Ssrc ssrc, ZunAllocator* a = system_allocator()) noexcept : S(a) { this->ssrc(ssrc); }

  Ssrc ssrc() const noexcept { return this->get()->ssrc; }
  void ssrc(Ssrc ssrc) noexcept { this->get()->ssrc = ssrc; }
  auto items() noexcept { return list_of(this->get()->items); }
  auto items() const noexcept { return list_of(this->get()->items); }

  // The text of the first item of this type; empty when there is none.
  std::string_view text(ZunRtcpSdesItemType type) const noexcept {
    for (const auto item : items()) {
      if (item.type() == type) return item.text();
    }
    return {};
  }
  // Appends an item. False, the chunk unchanged, when the text is longer than 255 bytes or an allocation is refused.
  [[nodiscard]] bool add(ZunRtcpSdesItemType type, std::string_view text) noexcept {
    SdesItem item(this->get()->items.allocator);
    item.type(type);
    return item.text(text) && items().push_back(std::move(item));
  }
};

template <>
struct Face<ZunRtcpSdesChunk> {
  template <class S>
  using Of = BasicSdesChunk<S>;
};
using SdesChunk = BasicSdesChunk<Owning<ZunRtcpSdesChunk>>;

template <>
struct Rebase<ZunRtcpSdes> {
  static bool Assign(ZunRtcpSdes* to, const ZunRtcpSdes* from) noexcept {
    return RebaseElements(&to->chunks, &from->chunks);
  }
};

template <class S>
class BasicSdes : public S {
 public:
  using S::S;

  auto chunks() noexcept { return list_of(this->get()->chunks); }
  auto chunks() const noexcept { return list_of(this->get()->chunks); }

  // The text that is told of a source, of the first item of this type; empty when there is none.
  std::string_view text(Ssrc ssrc, ZunRtcpSdesItemType type) const noexcept {
    for (const auto chunk : chunks()) {
      if (chunk.ssrc() == ssrc) return chunk.text(type);
    }
    return {};
  }
  // Appends an item to the last chunk where that is of this source, or a chunk with it. False, the object unchanged,
  // when the text is longer than 255 bytes or an allocation is refused.
  [[nodiscard]] bool add(Ssrc ssrc, ZunRtcpSdesItemType type, std::string_view text) noexcept {
    auto list = chunks();
    if (!list.empty() && list.back().ssrc() == ssrc) return list.back().add(type, text);
    SdesChunk chunk(ssrc, this->get()->chunks.allocator);
    return chunk.add(type, text) && list.push_back(std::move(chunk));
  }
};

template <>
struct Face<ZunRtcpSdes> {
  template <class S>
  using Of = BasicSdes<S>;
};
using Sdes = BasicSdes<Owning<ZunRtcpSdes>>;

// ---- BYE and APP

template <class S>
class BasicBye : public S {
 public:
  using S::S;

  auto sources() noexcept { return list_of(this->get()->sources); }
  auto sources() const noexcept { return list_of(this->get()->sources); }
  [[nodiscard]] bool add(Ssrc source) noexcept { return sources().push_back(source); }
  std::string_view reason() const noexcept { return text_of(this->get()->reason); }
  // False when it is longer than 255 bytes, or an allocation is refused.
  [[nodiscard]] bool reason(std::string_view reason) noexcept {
    const ZunString text = borrowed(reason);
    return ZunRtcpByeSetReason(this->get(), &text) != 0;
  }
};

template <>
struct Face<ZunRtcpBye> {
  template <class S>
  using Of = BasicBye<S>;
};
using Bye = BasicBye<Owning<ZunRtcpBye>>;

template <class S>
class BasicApp : public S {
 public:
  using S::S;

  Ssrc source() const noexcept { return this->get()->source; }
  void source(Ssrc source) noexcept { this->get()->source = source; }
  std::string_view name() const noexcept { return text_of(this->get()->name); }
  // False when it has not 4 bytes, or an allocation is refused.
  [[nodiscard]] bool name(std::string_view name) noexcept {
    const ZunString text = borrowed(name);
    return ZunRtcpAppSetName(this->get(), &text) != 0;
  }
  std::span<const std::byte> data() const noexcept { return octets_of(this->get()->data); }
  [[nodiscard]] bool data(std::span<const std::byte> data) noexcept {
    const ZunString octets = borrowed(data);
    return ZunRtcpAppSetData(this->get(), &octets) != 0;
  }
};

template <>
struct Face<ZunRtcpApp> {
  template <class S>
  using Of = BasicApp<S>;
};
using App = BasicApp<Owning<ZunRtcpApp>>;

}  // namespace zun::rtcp

#endif
