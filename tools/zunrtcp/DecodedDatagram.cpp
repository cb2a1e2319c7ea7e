#include "tools/zunrtcp/DecodedDatagram.h"

#include "tools/zunrtcp/Describe/Describe.h"
#include "tools/zunrtcp/Packet/KindName.h"
#include "tools/zunrtcp/Packet/LibraryMessages.h"
#include "tools/zunrtcp/Packet/LibraryPacket.h"
#include "tools/zunrtcp/Text.h"

namespace zunrtcp {

void Decode(bool verbose, DecodedDatagram* decoded) {
  const std::string_view payload = decoded->datagram.payload;
  const SubpacketWalk walk = WalkSubpackets(payload);
  for (const SubpacketView& view : walk.subpackets) {
    decoded->subpackets.push_back({view, KindName(view), RegisteredFormRemark(view), Description(verbose)});
  }
  if (decoded->datagram.missing > 0) {
    decoded->verdict = {Outcome::CutOff,
                        {},
                        {Printed("the capture holds %zu of its %zu bytes", payload.size(),
                                 payload.size() + decoded->datagram.missing)}};
    return;
  }

  const LibraryMessages log;
  const LibraryPacket packet(payload);
  decoded->messages = log.messages();
  if (!packet.ok()) {
    decoded->verdict = JudgeRefusal(walk);
    for (DecodedSubpacket& subpacket : decoded->subpackets) {
      const LibraryPacket alone(subpacket.view.bytes);
      if (alone.ok()) DescribeSubpacket(alone[0], &subpacket.description);
    }
    return;
  }
  for (std::size_t i = 0; i < packet.size() && i < decoded->subpackets.size(); ++i) {
    DescribeSubpacket(packet[i], &decoded->subpackets[i].description);
  }
  decoded->verdict = JudgeWriteBack(payload, walk, packet);
}

}  // namespace zunrtcp
