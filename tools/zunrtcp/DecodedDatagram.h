// A datagram with all that there is to say about it.
#ifndef TOOLS_ZUNRTCP_DECODEDDATAGRAM_H
#define TOOLS_ZUNRTCP_DECODEDDATAGRAM_H

#include <string>
#include <vector>

#include "tools/zunrtcp/Capture/RtcpFinder.h"
#include "tools/zunrtcp/Kinds/Kinds.h"
#include "tools/zunrtcp/Packet/SubpacketWalk.h"
#include "tools/zunrtcp/WriteBack/Verdict.h"

namespace zunrtcp {

struct DecodedSubpacket {
  SubpacketView view;
  std::string kind;
  std::string count;        // what the header's 5-bit field says; empty where the kind says it
  std::string remark;       // on its registered form, if there is one
  Description description;  // empty when the library refuses it
};

struct DecodedDatagram {
  const RtcpDatagram datagram;
  std::vector<DecodedSubpacket> subpackets;  // views of `datagram.payload`
  std::vector<std::string> messages;         // what the library logged
  Verdict verdict;

  // Parses the datagram with the library, describes it, and writes it back. Of a datagram that the library refuses, the
  // subpackets that it reads by themselves are described.
  DecodedDatagram(RtcpDatagram received, bool verbose, const Kinds& kinds = AllKinds());
  DecodedDatagram(const DecodedDatagram&) = delete;
  DecodedDatagram& operator=(const DecodedDatagram&) = delete;

 private:
  void Decode(const SubpacketWalk& walk, const Kinds& kinds);
  void DescribeAlone(const Kinds& kinds);
};

}  // namespace zunrtcp

#endif
