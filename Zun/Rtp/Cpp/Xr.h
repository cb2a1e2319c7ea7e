// Extended reports (RFC 3611), packet type 207: read block by block, and built. A packet keeps a report as Unknown, so
// it comes and goes unchanged. The fields have the names, units and ranges of Zun/Rtp/Dialect/ZunRtcpXr.h.
#ifndef ZUN_RTP_CPP_XR_H
#define ZUN_RTP_CPP_XR_H

#include <iterator>
#include <memory>
#include <optional>
#include <span>
#include <type_traits>

#include "Zun/Rtp/Cpp/Subpacket.h"
#include "Zun/Rtp/Dialect/ZunRtcpXr.h"

namespace zun::rtcp {

using XrRange = ZunRtcpXrRange;
using XrRrtr = ZunRtcpXrRrtr;
using XrDlrr = ZunRtcpXrDlrr;
using XrStatistics = ZunRtcpXrStatistics;
using XrVoip = ZunRtcpXrVoip;

// How many packets of the range are told, with its thinning.
inline std::size_t packet_count(const XrRange& range) noexcept { return ZunRtcpXrRangeGetCount(&range); }

// ---- reading

// One block of a report, valid as long as that. What is not of the block's type is not there.
class XrBlock {
 public:
  explicit XrBlock(const ZunRtcpXrBlock& block) noexcept : block_(block) {}

  ZunRtcpXrBlockType type() const noexcept { return block_.type; }
  std::uint8_t type_specific() const noexcept { return block_.typeSpecific; }
  // Whether it is of one of the seven types and has the length of its type. Any other has octets only.
  bool is_known() const noexcept { return block_.isKnown != 0; }
  std::span<const std::byte> octets() const noexcept {
    return {reinterpret_cast<const std::byte*>(block_.octets), block_.size};
  }

  std::optional<XrRrtr> rrtr() const noexcept { return Read<XrRrtr, ZunRtcpXrBlockGetRrtr>(); }
  std::optional<XrStatistics> statistics() const noexcept { return Read<XrStatistics, ZunRtcpXrBlockGetStatistics>(); }
  std::optional<XrVoip> voip() const noexcept { return Read<XrVoip, ZunRtcpXrBlockGetVoip>(); }
  // The packets that a loss RLE, duplicate RLE, receipt times or statistics block is about.
  std::optional<XrRange> range() const noexcept { return Read<XrRange, ZunRtcpXrBlockGetRange>(); }

  // Calls `take(const XrDlrr&)` for each receiver of a DLRR.
  template <class Take>
  void for_each_dlrr(Take&& take) const {
    XrDlrr dlrr;
    for (std::size_t n = 0; ZunRtcpXrBlockGetDlrr(&block_, n, &dlrr); ++n) take(std::as_const(dlrr));
  }
  // Calls `take(std::uint16_t seq, std::uint32_t value)` for each packet that a loss RLE, duplicate RLE or receipt
  // times block tells of, in order: whether it was received, whether it came no more than once, when it came. It must
  // not throw.
  template <class Take>
  void for_each_packet(Take&& take) const noexcept {
    using Callable = std::remove_reference_t<Take>;
    constexpr ZunRtcpXrPacketCallback kCall = [](ZunVoidPtr callable, ZunUint16 seq, ZunUint32 value) {
      (*static_cast<Callable*>(callable))(seq, value);
    };
    ZunRtcpXrBlockGeneratePackets(&block_, kCall, const_cast<void*>(static_cast<const void*>(std::addressof(take))));
  }

  const ZunRtcpXrBlock* get() const noexcept { return &block_; }

 private:
  template <class Value, ZunBool (*kGet)(const ZunRtcpXrBlock*, Value*)>
  std::optional<Value> Read() const noexcept {
    Value value{};
    if (!kGet(&block_, &value)) return std::nullopt;
    return value;
  }

  ZunRtcpXrBlock block_;
};

// What a subpacket tells that is an extended report: a range of XrBlock, which can be walked through again and again.
// The subpacket must outlive it.
//   if (XrReport report(subpacket); report) for (XrBlock block : report) if (auto voip = block.voip()) ...
class XrReport {
 public:
  explicit XrReport(Looking<const ZunRtcpSubpacket> subpacket) noexcept
      : is_report_(ZunRtcpXrReaderConstruct(&first_, subpacket.get()) != nullptr), next_(first_) {}

  // False for a subpacket that is something else, or too short for a sender.
  explicit operator bool() const noexcept { return is_report_; }
  Ssrc sender() const noexcept { return first_.sender; }

  class iterator {
   public:
    using value_type = XrBlock;
    using difference_type = std::ptrdiff_t;

    explicit iterator(XrReport* report) noexcept : report_(report) {}
    XrBlock operator*() const noexcept { return XrBlock(report_->block_); }
    iterator& operator++() noexcept {
      report_->Next();
      return *this;
    }
    void operator++(int) noexcept { ++*this; }
    bool operator==(std::default_sentinel_t) const noexcept { return report_->is_at_end_; }

   private:
    XrReport* report_;
  };

  iterator begin() noexcept {
    next_ = first_;
    Next();
    return iterator(this);
  }
  std::default_sentinel_t end() const noexcept { return {}; }

  // After a walk: why it ended before the end of the report, and at which octet of the blocks. Where there is no
  // report: why not.
  ZunRtcpDecodeReason reason() const noexcept { return next_.reason; }
  std::size_t position() const noexcept { return next_.position; }

 private:
  void Next() noexcept { is_at_end_ = !is_report_ || !ZunRtcpXrReaderNext(&next_, &block_); }

  ZunRtcpXrReader first_{};
  bool is_report_;
  ZunRtcpXrReader next_;
  ZunRtcpXrBlock block_{};
  bool is_at_end_ = false;
};

// ---- building

// Builds a report, block by block. Everything that is added is there, or not at all: each addition is false, the report
// as it was, when an allocation or one of its arguments is refused, or when the report would pass 262,140 bytes.
class XrBuilder {
 public:
  explicit XrBuilder(Ssrc sender, ZunAllocator* a = system_allocator()) noexcept
      : is_begun_(ZunRtcpXrBuilderConstruct(&builder_, sender, a) != nullptr) {}
  ~XrBuilder() { ZunRtcpXrBuilderDestruct(&builder_); }
  XrBuilder(const XrBuilder&) = delete;
  XrBuilder& operator=(const XrBuilder&) = delete;

  [[nodiscard]] bool add(const XrRrtr& rrtr) noexcept {
    return is_begun_ && ZunRtcpXrBuilderAddRrtr(&builder_, &rrtr) != 0;
  }
  // One block about all of these receivers, up to 21,844.
  [[nodiscard]] bool add(std::span<const XrDlrr> dlrrs) noexcept {
    return is_begun_ && ZunRtcpXrBuilderAddDlrr(&builder_, dlrrs.data(), dlrrs.size()) != 0;
  }
  // The flags of absent fields are clear; `range.thinning` must be 0 and `hopKind` at most 3.
  [[nodiscard]] bool add(const XrStatistics& statistics) noexcept {
    return is_begun_ && ZunRtcpXrBuilderAddStatistics(&builder_, &statistics) != 0;
  }
  [[nodiscard]] bool add(const XrVoip& voip) noexcept {
    return is_begun_ && ZunRtcpXrBuilderAddVoip(&builder_, &voip) != 0;
  }
  // A loss or duplicate RLE, as `type` says, with one entry for each packet that the range tells of: whether it was
  // received, whether it came no more than once. Runs are used where they save room.
  [[nodiscard]] bool add_rle(ZunRtcpXrBlockType type, const XrRange& range, std::span<const ZunBool> told) noexcept {
    return is_begun_ && ZunRtcpXrBuilderAddRle(&builder_, type, &range, told.data(), told.size()) != 0;
  }
  // One time for each packet that the range tells of, in RTP timestamp units.
  [[nodiscard]] bool add_receipt_times(const XrRange& range, std::span<const std::uint32_t> times) noexcept {
    return is_begun_ && ZunRtcpXrBuilderAddReceiptTimes(&builder_, &range, times.data(), times.size()) != 0;
  }
  // A block of any type, by its contents, whose size is a multiple of 4.
  [[nodiscard]] bool add_block(std::uint8_t type, std::uint8_t type_specific,
                               std::span<const std::byte> octets) noexcept {
    return is_begun_ && ZunRtcpXrBuilderAddBlock(&builder_, type, type_specific, octets.data(), octets.size()) != 0;
  }

  // The report, to be appended to a packet, with storage from `a`. Nothing when an allocation is refused.
  std::optional<Subpacket> subpacket(ZunAllocator* a = system_allocator()) const noexcept {
    if (!is_begun_) return std::nullopt;
    std::optional<Subpacket> made(std::in_place, a);  // which owns no memory yet, so it is built anew
    if (ZunRtcpXrBuilderMakeSubpacket(&builder_, made->get(), a) != nullptr) return made;
    Functions<ZunRtcpSubpacket>::ConstructDefault(made->get(), a);
    return std::nullopt;
  }

  ZunRtcpXrBuilder* get() noexcept { return &builder_; }
  const ZunRtcpXrBuilder* get() const noexcept { return &builder_; }

 private:
  ZunRtcpXrBuilder builder_;
  bool is_begun_;
};

}  // namespace zun::rtcp

#endif
