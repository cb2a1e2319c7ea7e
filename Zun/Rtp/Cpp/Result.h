// What comes of something that can be refused: a value, or the error that says why there is none.
#ifndef ZUN_RTP_CPP_RESULT_H
#define ZUN_RTP_CPP_RESULT_H

#include <cstddef>
#include <optional>
#include <string>
#include <utility>

#include "Zun/Rtp/Dialect/ZunRtcpDecode.h"

#if defined(__cpp_exceptions)
#include <stdexcept>
#endif

namespace zun::rtcp {

// Looks like std::optional where there is a value:
//   if (auto r = packet.decode(octets); !r) log(r.error().text());
// Nothing is thrown unless value_or_throw is asked for. Look at a value or an error only when there is one.
template <class Value, class Error>
class [[nodiscard]] Result {
 public:
  Result(Value value) : value_(std::move(value)) {}
  Result(Error error) : error_(std::move(error)) {}

  explicit operator bool() const noexcept { return value_.has_value(); }
  bool has_value() const noexcept { return value_.has_value(); }

  Value& operator*() & noexcept { return *value_; }
  const Value& operator*() const& noexcept { return *value_; }
  Value&& operator*() && noexcept { return *std::move(value_); }
  Value* operator->() noexcept { return &*value_; }
  const Value* operator->() const noexcept { return &*value_; }
  Value value_or(Value other) const& { return value_.value_or(std::move(other)); }

  const Error& error() const noexcept { return error_; }

#if defined(__cpp_exceptions)
  // The value; a std::runtime_error with the text of the error where there is none.
  Value value_or_throw() && {
    if (!value_) throw std::runtime_error(error_.text());
    return *std::move(value_);
  }
  const Value& value_or_throw() const& {
    if (!value_) throw std::runtime_error(error_.text());
    return *value_;
  }
#endif

 private:
  std::optional<Value> value_;
  Error error_{};
};

// How many subpackets of a datagram were read and refused, and the first refusal.
using DecodeReport = ZunRtcpDecodeReport;
using DecodeRefusal = ZunRtcpDecodeRefusal;

// "subpacket 1 (type 205, count 1) at octet 28: the body is too short (octet 40)"
inline std::string text_of(const DecodeRefusal& refusal) {
  std::string text = "subpacket " + std::to_string(refusal.index);
  if (refusal.type != 0) {
    text += " (type " + std::to_string(refusal.type) + ", count " + std::to_string(refusal.count) + ")";
  }
  return text + " at octet " + std::to_string(refusal.offset) + ": " + ZunRtcpDecodeReasonGetText(refusal.reason) +
         " (octet " + std::to_string(refusal.stoppedAt) + ")";
}

// Why a datagram was refused. What was read before stays in the packet.
class DecodeError {
 public:
  DecodeError() = default;
  explicit DecodeError(const DecodeReport& report) noexcept : report_(report) {}

  const DecodeReport& report() const noexcept { return report_; }
  const DecodeRefusal& refusal() const noexcept { return report_.first; }
  ZunRtcpDecodeReason reason() const noexcept { return report_.first.reason; }
  std::string text() const { return text_of(report_.first); }

 private:
  DecodeReport report_{};
};

// Why a packet was not written: it cannot be at all, or there is not room enough for it.
class EncodeError {
 public:
  EncodeError() = default;
  // Subpacket `index` cannot be encoded.
  static EncodeError unencodable(ZunRtcpEncodeReason reason, std::size_t index) noexcept {
    return EncodeError(reason, index, 0);
  }
  // `needed` octets are; the allocator did not grant them, or the caller has less. `index` is of the subpacket that
  // does not fit, where they are written one by one.
  static EncodeError no_room(std::size_t needed, std::size_t index = 0) noexcept {
    return EncodeError(ZUN_RTCP_ENCODE_REASON_NONE, index, needed);
  }

  ZunRtcpEncodeReason reason() const noexcept { return reason_; }  // none when only room is missing
  std::size_t index() const noexcept { return index_; }            // of the subpacket
  std::size_t needed() const noexcept { return needed_; }          // octets; 0 when it cannot be encoded
  std::string text() const {
    if (needed_ != 0) return std::to_string(needed_) + " octets are needed";
    return "subpacket " + std::to_string(index_) + ": " + ZunRtcpEncodeReasonGetText(reason_);
  }

 private:
  EncodeError(ZunRtcpEncodeReason reason, std::size_t index, std::size_t needed) noexcept
      : reason_(reason), index_(index), needed_(needed) {}

  ZunRtcpEncodeReason reason_ = ZUN_RTCP_ENCODE_REASON_NONE;
  std::size_t index_ = 0;
  std::size_t needed_ = 0;
};

}  // namespace zun::rtcp

#endif
