// A datagram with all that there is to say about it.
#ifndef TOOLS_ZUNRTCP_DECODEDDATAGRAM_H
#define TOOLS_ZUNRTCP_DECODEDDATAGRAM_H

#include <optional>
#include <string>
#include <vector>

#include "tools/zunrtcp/Capture/RtcpFinder.h"
#include "tools/zunrtcp/Kinds/Kinds.h"
#include "tools/zunrtcp/Packet/Refusal.h"
#include "tools/zunrtcp/Packet/Srtcp.h"
#include "tools/zunrtcp/Packet/SubpacketWalk.h"
#include "tools/zunrtcp/WriteBack/Verdict.h"

namespace zunrtcp {

struct DecodedSubpacket {
  SubpacketView view;
  std::string kind;
  std::string count;               // what the header's 5-bit field says; empty where the kind says it
  std::string remark;              // on its registered form, if there is one
  Description description;         // empty when the library refuses it
  std::size_t padding = 0;         // octets at its end that its header calls padding, in the registered dialect
  std::optional<Refusal> refusal;  // why it is not read, in the registered dialect
  bool is_refused = false;
};

struct DecodedDatagram {
  const RtcpDatagram datagram;
  const Dialect dialect;
  std::vector<DecodedSubpacket> subpackets;  // views of `datagram.payload`
  std::optional<Refusal> fault;              // of what follows them, in the registered dialect
  std::optional<Srtcp> srtcp;                // it is that, and nothing of it is decoded
  std::vector<std::string> messages;         // what the library logged
  Verdict verdict;

  // Decodes the datagram with the library and describes all that it reads, within the library's budget. In the house's
  // dialect the datagram is written back.
  DecodedDatagram(RtcpDatagram received, Dialect spoken, bool verbose, const Kinds& kinds = AllKinds());
  DecodedDatagram(const DecodedDatagram&) = delete;
  DecodedDatagram& operator=(const DecodedDatagram&) = delete;

 private:
  // Collects what the library logs meanwhile.
  LibraryPacket Read(Reading reading);
  void DecodeHouse(const SubpacketWalk& walk, const Kinds& kinds);
  void DecodeRegistered(const Kinds& kinds);
  void Describe(const LibraryPacket& packet, const Kinds& kinds);
  void JudgeRegistered(const Kinds& kinds);
};

}  // namespace zunrtcp

#endif
