// Builds the library's objects from JSON, a row for each kind.
#ifndef TOOLS_ZUNRTCP_ENCODE_BUILDER_H
#define TOOLS_ZUNRTCP_ENCODE_BUILDER_H

#include <new>
#include <span>
#include <string>
#include <string_view>

#include "Zun/Rtp/ZunRtcpPacket.h"
#include "tools/zunrtcp/Encode/JsonField.h"

namespace zunrtcp {

struct Builder {
  const char* kind;  // as decode calls it
  void (*construct)(ZunRtcpSubpacket* object);
  void (*fill)(const JsonField& packet, ZunRtcpSubpacket* object);
};

// `kConstruct` makes an object of the kind, and `kFill` gives it the fields.
template <class Kind, auto kConstruct, void (*kFill)(const JsonField& packet, Kind* object)>
constexpr Builder BuilderOf(const char* kind) {
  // Every member of a subpacket begins where it does.
  return {kind,
          [](ZunRtcpSubpacket* object) {
            if (kConstruct(reinterpret_cast<Kind*>(object), ZunAllocatorGetSystem()) == nullptr) throw std::bad_alloc();
          },
          [](const JsonField& packet, ZunRtcpSubpacket* object) { kFill(packet, reinterpret_cast<Kind*>(object)); }};
}

std::span<const Builder> ReportBuilders();
std::span<const Builder> TransportFeedbackBuilders();
std::span<const Builder> PayloadFeedbackBuilders();
std::span<const Builder> ApplicationFeedbackBuilders();

// The builder of a packet that decode keeps as bytes, by its packet type and FMT.
const Builder& BuilderOfBytes(const JsonField& packet);

// What builders share.
inline void MustBeTrue(bool done) {
  if (!done) throw std::bad_alloc();
}
inline void SetBytes(ZunString* string, const std::string& bytes) {
  ZunStringClear(string);
  MustBeTrue(ZunStringAppendCStrLen(string, bytes.data(), bytes.size()) != nullptr);
}
template <class Feedback>
void SetEnds(const JsonField& packet, Feedback* feedback) {
  feedback->sender = packet["sender"].As<std::uint32_t>();
  feedback->source = packet["source"].As<std::uint32_t>();
}

}  // namespace zunrtcp

#endif
