#include "tools/zunrtcp/DecodedDatagram.h"

#include <utility>

#include "Zun/Rtp/Cpp/Log.h"
#include "tools/zunrtcp/Packet/LibraryPacket.h"
#include "tools/zunrtcp/Text.h"

namespace zunrtcp {

using zun::rtcp::DecodeRefusal;

namespace {

// How many packets a datagram may tell of one by one in forms that no object holds: as many as the library allows in
// those that have one.
std::size_t MostPacketsTold() { return zun::rtcp::DecodeOptions().max_statuses; }

std::size_t PaddingOf(const SubpacketView& view) { return view.padded() ? U8At(view.bytes, view.bytes.size() - 1) : 0; }

// Describes subpackets that were read in the registered dialect, and tells what is wrong with the others.
class RegisteredDescriber {
 public:
  RegisteredDescriber(std::string_view datagram, const LibraryPacket& packet, const Kinds& kinds)
      : datagram_(datagram), packet_(packet), kinds_(kinds), packets_left_(MostPacketsTold()) {}

  void Describe(DecodedSubpacket* subpacket) {
    const SubpacketView& view = subpacket->view;
    const DecodeRefusal* refusal = packet_.RefusalOf(view.index);
    const bool has_no_object = refusal != nullptr && refusal->reason == ZUN_RTCP_DECODE_REASON_NO_OBJECT;
    if (refusal != nullptr && !has_no_object)
      return Refuse(ZunRtcpDecodeReasonGetText(refusal->reason), refusal->stoppedAt, subpacket);

    subpacket->padding = PaddingOf(view);
    const std::optional<ObjectView> object = packet_.Find(view.index);
    const std::optional<FormFault> fault =
        kinds_.DescribeRegisteredForm(object, view, &packets_left_, &subpacket->description);
    if (fault && fault->reason == nullptr) return;
    if (fault) return Refuse(fault->reason, view.offset + fault->position, subpacket);
    if (has_no_object) return Refuse(ZunRtcpDecodeReasonGetText(refusal->reason), refusal->stoppedAt, subpacket);
    if (object) kinds_.Describe(*object, view, &subpacket->description);
  }

 private:
  void Refuse(const char* reason, std::size_t stopped_at, DecodedSubpacket* subpacket) const {
    subpacket->is_refused = true;
    subpacket->refusal = RefusalAt(datagram_, reason, subpacket->view.offset, stopped_at);
  }

  std::string_view datagram_;
  const LibraryPacket& packet_;
  const Kinds& kinds_;
  std::size_t packets_left_;
};

}  // namespace

DecodedDatagram::DecodedDatagram(RtcpDatagram received, Dialect spoken, bool verbose, const Kinds& kinds)
    : datagram(std::move(received)), dialect(spoken) {
  const SubpacketWalk walk = WalkSubpackets(datagram.payload, dialect);
  if (!walk.fault.empty() && datagram.missing == 0) srtcp = RecogniseSrtcp(datagram.payload);
  if (srtcp) {
    verdict.outcome = Outcome::Protected;
    return;
  }
  for (const SubpacketView& view : walk.subpackets) {
    subpackets.push_back({view, kinds.NameOf(view), kinds.CountWords(view), kinds.RemarkOn(view),
                          Description(verbose, dialect), 0, std::nullopt, false});
  }
  if (datagram.missing > 0) {
    const std::size_t held = datagram.payload.size();
    verdict = {Outcome::CutOff, {}, {Printed("the capture holds %zu of its %zu bytes", held, held + datagram.missing)}};
  } else if (dialect == Dialect::registered) {
    DecodeRegistered(kinds);
  } else {
    DecodeHouse(walk, kinds);
  }
}

LibraryPacket DecodedDatagram::Read(Reading reading) {
  const zun::rtcp::LogHandler log(
      [this](const zun::rtcp::LogMessage& message) { messages.emplace_back(message.text); });
  return LibraryPacket(datagram.payload, dialect, reading);
}

void DecodedDatagram::DecodeHouse(const SubpacketWalk& walk, const Kinds& kinds) {
  const LibraryPacket packet = Read(Reading::Strict);
  if (packet.ok()) {
    Describe(packet, kinds);
    verdict = JudgeWriteBack(datagram.payload, walk, packet, kinds);
  } else {
    const LibraryPacket readable(datagram.payload, dialect, Reading::Tolerant);
    Describe(readable, kinds);
    verdict = JudgeRefusal(walk, readable, kinds);
  }
}

void DecodedDatagram::Describe(const LibraryPacket& packet, const Kinds& kinds) {
  for (DecodedSubpacket& subpacket : subpackets) {
    const std::optional<ObjectView> object = packet.Find(subpacket.view.index);
    subpacket.is_refused = !object;
    if (object) kinds.Describe(*object, subpacket.view, &subpacket.description);
  }
}

void DecodedDatagram::DecodeRegistered(const Kinds& kinds) {
  const LibraryPacket packet = Read(Reading::Tolerant);
  RegisteredDescriber describer(datagram.payload, packet, kinds);
  for (DecodedSubpacket& subpacket : subpackets) describer.Describe(&subpacket);
  if (!packet.ok() && packet.refusals().back().index >= subpackets.size()) {
    const DecodeRefusal& last = packet.refusals().back();
    fault = RefusalAt(datagram.payload, ZunRtcpDecodeReasonGetText(last.reason), last.offset, last.stoppedAt);
  }
  JudgeRegistered(kinds);
}

void DecodedDatagram::JudgeRegistered(const Kinds& kinds) {
  for (const DecodedSubpacket& subpacket : subpackets) {
    if (!subpacket.refusal) continue;
    verdict.remarks.push_back(PlaceWords(subpacket.view, kinds) + subpacket.refusal->reason);
  }
  if (fault) verdict.remarks.push_back(Printed("at byte %zu: ", fault->offset) + fault->reason);
  verdict.outcome = verdict.remarks.empty() ? Outcome::Read : Outcome::RefusedUnexplained;
}

}  // namespace zunrtcp
