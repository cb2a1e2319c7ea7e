#include "tools/zunrtcp/DecodedDatagram.h"

#include <utility>

#include "tools/zunrtcp/Packet/LibraryMessages.h"
#include "tools/zunrtcp/Packet/LibraryPacket.h"
#include "tools/zunrtcp/Text.h"

namespace zunrtcp {

DecodedDatagram::DecodedDatagram(RtcpDatagram received, bool verbose, const Kinds& kinds)
    : datagram(std::move(received)) {
  const SubpacketWalk walk = WalkSubpackets(datagram.payload);
  for (const SubpacketView& view : walk.subpackets) {
    subpackets.push_back(
        {view, kinds.NameOf(view), kinds.CountWords(view), kinds.RemarkOn(view), Description(verbose)});
  }
  if (datagram.missing > 0) {
    const std::size_t held = datagram.payload.size();
    verdict = {Outcome::CutOff, {}, {Printed("the capture holds %zu of its %zu bytes", held, held + datagram.missing)}};
  } else {
    Decode(walk, kinds);
  }
}

void DecodedDatagram::Decode(const SubpacketWalk& walk, const Kinds& kinds) {
  const LibraryMessages log;
  const LibraryPacket packet(datagram.payload);
  messages = log.messages();
  if (!packet.ok()) {
    verdict = JudgeRefusal(walk, kinds);
    return DescribeAlone(kinds);
  }
  for (std::size_t i = 0; i < packet.size() && i < subpackets.size(); ++i) {
    kinds.Describe(packet[i], subpackets[i].view, &subpackets[i].description);
  }
  verdict = JudgeWriteBack(datagram.payload, walk, packet, kinds);
}

void DecodedDatagram::DescribeAlone(const Kinds& kinds) {
  for (DecodedSubpacket& subpacket : subpackets) {
    const LibraryPacket alone(subpacket.view.bytes);
    if (alone.ok()) kinds.Describe(alone[0], subpacket.view, &subpacket.description);
  }
}

}  // namespace zunrtcp
