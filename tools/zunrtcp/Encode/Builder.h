// Builds the library's objects from JSON, a row for each kind.
#ifndef TOOLS_ZUNRTCP_ENCODE_BUILDER_H
#define TOOLS_ZUNRTCP_ENCODE_BUILDER_H

#include <new>
#include <span>
#include <string>
#include <utility>

#include "Zun/Rtp/Cpp/Packet.h"
#include "tools/zunrtcp/Encode/JsonField.h"

namespace zunrtcp {

struct Builder {
  const char* kind;  // as decode calls it
  void (*append)(const JsonField& field, zun::rtcp::Packet* packet);
};

// What builders share.
inline void MustBeTrue(bool done) {
  if (!done) throw std::bad_alloc();
}
// Refuses the packet, as encoding it would, where the object has not accepted a value.
inline void MustAccept(bool is_accepted, const JsonField& packet, ZunRtcpEncodeReason reason) {
  if (!is_accepted) packet.Refuse(ZunRtcpEncodeReasonGetText(reason));
}
template <class Feedback>
void SetEnds(const JsonField& packet, Feedback* feedback) {
  feedback->sender(packet["sender"].As<std::uint32_t>());
  feedback->source(packet["source"].As<std::uint32_t>());
}

// `kFill` gives an object of the kind its fields.
template <class Kind, void (*kFill)(const JsonField& field, Kind* object)>
constexpr Builder BuilderOf(const char* kind) {
  return {kind, [](const JsonField& field, zun::rtcp::Packet* packet) {
            Kind object;
            kFill(field, &object);
            MustBeTrue(packet->append(std::move(object)));
          }};
}

std::span<const Builder> ReportBuilders();
std::span<const Builder> TransportFeedbackBuilders();
std::span<const Builder> PayloadFeedbackBuilders();
std::span<const Builder> ApplicationFeedbackBuilders();

// The builder of a packet that decode keeps as bytes, by its packet type and FMT.
const Builder& BuilderOfBytes(const JsonField& packet);

}  // namespace zunrtcp

#endif
