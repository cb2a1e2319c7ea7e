// What a subpacket is called, told from its bytes.
#ifndef TOOLS_ZUNRTCP_PACKET_KINDNAME_H
#define TOOLS_ZUNRTCP_PACKET_KINDNAME_H

#include <string>

#include "tools/zunrtcp/Packet/SubpacketWalk.h"

namespace zunrtcp {

// The packet types and feedback formats of this library, by their numbers on the wire.
enum PacketType : unsigned { kSr = 200, kRr = 201, kSdes = 202, kBye = 203, kApp = 204, kRtpfb = 205, kPsfb = 206 };
enum RtpfbFormat : unsigned { kNack = 1, kTmmbr = 2, kTmmbn = 3, kCcfb = 14, kTransportCc = 15, kRtpfbAbafb = 30 };
enum PsfbFormat : unsigned { kPli = 1, kSli = 2, kRpsi = 3, kFir = 4, kTstr = 5, kTsta = 6, kAfb = 15 };
enum HouseType : unsigned { kAbafb = 1, kAlbr = 2, kShow = 3, kShowAck = 4, kLir = 5 };

// Whether application-layer feedback begins with "REMB", or with "Nr" and the number of a house message.
bool IsRemb(const SubpacketView& subpacket);
bool IsHouseMessage(const SubpacketView& subpacket, unsigned number);

// "SR", "NACK", "REMB"; "RTPFB FMT 11", "XR (type 207)" for what is kept as bytes.
std::string KindName(const SubpacketView& subpacket);

// What the 5-bit field of the header says: "2 report blocks", "FMT 15", "subtype 3".
std::string CountWords(const SubpacketView& subpacket);

// A remark on a form whose registered number or layout is another than this library's; empty for all others.
std::string RegisteredFormRemark(const SubpacketView& subpacket);

}  // namespace zunrtcp

#endif
