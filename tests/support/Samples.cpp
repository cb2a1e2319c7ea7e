#include "tests/support/Samples.h"

#include <ostream>
#include <set>
#include <stdexcept>

namespace test {
namespace {

void Append(std::vector<Sample>* samples, std::vector<Sample> more) {
  samples->insert(samples->end(), more.begin(), more.end());
}

// An unknown kind's samples take two values that no kind has.
struct Unassigned {
  Unassigned(Level level, ZunInt32 from)
      : first(UnassignedValue(level, from)), second(UnassignedValue(level, first + 1)) {}
  ZunInt32 first;
  ZunInt32 second;
};

std::vector<Sample> SenderReports() {
  return {
      {.row = &kRowOf<ZunRtcpSr>, .name = "SrWithoutBlocks", .wire = Hex(R"(
         80 C8 0006        | no blocks, type 200, 7 words
         01020304          | sender
         E1E2E3E4          | NTP timestamp, seconds
         F1F2F3F4          | NTP timestamp, fraction
         11121314          | RTP timestamp
         21222324          | packets sent
         31323334          | octets sent
       )")},
      {.row = &kRowOf<ZunRtcpSr>,
       .name = "SrOneBlock",
       .wire = Hex(R"(
         81 C8 000D        | one block, type 200, 14 words
         01020304          | sender
         E1E2E3E4          | NTP timestamp, seconds
         F1F2F3F4          | NTP timestamp, fraction
         11121314          | RTP timestamp
         21222324          | packets sent
         31323334          | octets sent
         A1A2A3A4          | block: source
         40 FFFFFF         | fraction lost, packets lost
         00011234          | highest sequence number
         0000002A          | jitter
         8899AABB          | last SR
         00010000          | delay since it
         6578742E          | extension "ext."
       )"),
       .pieces = {{52, 56}}},
      {.row = &kRowOf<ZunRtcpSr>,
       .name = "SrTwoBlocks",
       .wire = Hex(R"(
         82 C8 0014        | two blocks, type 200, 21 words
         01020304          | sender
         E1E2E3E4          | NTP timestamp, seconds
         F1F2F3F4          | NTP timestamp, fraction
         11121314          | RTP timestamp
         21222324          | packets sent
         31323334          | octets sent
         A1A2A3A4          | first block: source
         40 FFFFFF         | fraction lost, packets lost
         00011234          | highest sequence number
         0000002A          | jitter
         8899AABB          | last SR
         00010000          | delay since it
         B1B2B3B4          | second block: source
         00 000007         | fraction lost, packets lost
         00000001          | highest sequence number
         00000002          | jitter
         00000003          | last SR
         00000004          | delay since it
         6578742E6578742E  | extension "ext.ext."
       )"),
       .pieces = {{76, 84}}},
  };
}

std::vector<Sample> ReceiverReports() {
  return {
      {.row = &kRowOf<ZunRtcpRr>, .name = "RrWithoutBlocks", .wire = Hex(R"(
         80 C9 0001        | no blocks, type 201, 2 words
         01020304          | sender
       )")},
      {.row = &kRowOf<ZunRtcpRr>,
       .name = "RrOneBlock",
       .wire = Hex(R"(
         81 C9 0008        | one block, type 201, 9 words
         01020304          | sender
         A1A2A3A4          | block: source
         40 FFFFFF         | fraction lost, packets lost
         00011234          | highest sequence number
         0000002A          | jitter
         8899AABB          | last SR
         00010000          | delay since it
         6578742E          | extension "ext."
       )"),
       .pieces = {{32, 36}}},
      {.row = &kRowOf<ZunRtcpRr>,
       .name = "RrTwoBlocks",
       .wire = Hex(R"(
         82 C9 000F        | two blocks, type 201, 16 words
         01020304          | sender
         A1A2A3A4          | first block: source
         40 FFFFFF         | fraction lost, packets lost
         00011234          | highest sequence number
         0000002A          | jitter
         8899AABB          | last SR
         00010000          | delay since it
         B1B2B3B4          | second block: source
         00 000007         | fraction lost, packets lost
         00000001          | highest sequence number
         00000002          | jitter
         00000003          | last SR
         00000004          | delay since it
         6578742E6578742E  | extension "ext.ext."
       )"),
       .pieces = {{56, 64}}},
  };
}

std::vector<Sample> SourceDescriptions() {
  return {
      {.row = &kRowOf<ZunRtcpSdes>,
       .name = "SdesOneChunk",
       .wire = Hex(R"(
         81 CA 0003        | one chunk, type 202, 4 words
         01020304          | source
         01 05 616C696365  | CNAME "alice"
         00                | end of the list, no zeros to the word
       )"),
       .elements_own_memory = true,
       .writes_despite_refusals = true},
      {.row = &kRowOf<ZunRtcpSdes>,
       .name = "SdesTwoChunks",
       .wire = Hex(R"(
         82 CA 000A        | two chunks, type 202, 11 words
         01020304          | source
         01 04 616C6963    | CNAME "alic"
         00 00             | end of the list, one zero to the word
         11121314          | source
         01 03 626F62      | CNAME "bob"
         08 09 03 6162632D2D2D2D2D  | PRIV, kept as it is
         0F 00             | MID, empty
         06 01 00          | TOOL, a zero
         00 00 00          | end of the list, two zeros to the word
       )"),
       .elements_own_memory = true,
       .writes_despite_refusals = true},
  };
}

std::vector<Sample> Goodbyes() {
  std::string sources;
  for (int i = 1; i <= 31; ++i) sources += Hex("000000") + static_cast<char>(i);
  return {
      {.row = &kRowOf<ZunRtcpBye>, .name = "ByeWithoutReason", .wire = Hex(R"(
         81 CB 0001        | one source, type 203, 2 words
         01020304          | source
       )")},
      {.row = &kRowOf<ZunRtcpBye>,
       .name = "ByeWithReason",
       .wire = Hex(R"(
         82 CB 0005        | two sources, type 203, 6 words
         01020304          | source
         11121314          | source
         08 63616D657261206F  | reason "camera o"
         000000            | zeros to the word
       )"),
       .pieces = {{13, 21}}},
      {.row = &kRowOf<ZunRtcpBye>,
       .name = "ByeAtItsLimits",
       .wire = Subpacket(203, 31, sources + Hex("FF") + std::string(255, 'r')),
       .pieces = {{129, 384}}},
  };
}

std::vector<Sample> Applications() {
  return {
      {.row = &kRowOf<ZunRtcpApp>,
       .name = "AppWithoutData",
       .wire = Hex(R"(
         80 CC 0002        | subtype 0, type 204, 3 words
         01020304          | source
         6E616D65          | "name"
       )"),
       .reads_despite_refusals = true,
       .writes_despite_refusals = true},
      {.row = &kRowOf<ZunRtcpApp>,
       .name = "AppWithData",
       .wire = Hex(R"(
         80 CC 0004        | subtype 0, type 204, 5 words
         01020304          | source
         6E616D65          | "name"
         6461746120313233  | "data 123"
       )"),
       .reads_despite_refusals = true,
       .writes_despite_refusals = true},
  };
}

std::vector<Sample> UnknownSubpackets() {
  const Unassigned type(Level::kSubpacket, 207);
  return {
      {.row = &kRowOf<ZunRtcpUnknown>,
       .name = "UnknownWithData",
       .wire = Subpacket(type.first, 3, Hex("01020304 05060708")),
       .pieces = {{4, 12}}},
      {.row = &kRowOf<ZunRtcpUnknown>, .name = "UnknownWithoutData", .wire = Subpacket(type.second, 31, "")},
  };
}

std::vector<Sample> Nacks() {
  return {
      {.row = &kRowOf<ZunRtcpRtpfbNack>, .name = "NackOneMap", .wire = Hex(R"(
         81 CD 0003        | FMT 1, type 205, 4 words
         01020304          | sender
         05060708          | media source
         1234 8001         | 0x1234 lost, and with it 0x1235 and 0x1244
       )")},
      {.row = &kRowOf<ZunRtcpRtpfbNack>, .name = "NackThreeMaps", .wire = Hex(R"(
         81 CD 0005        | FMT 1, type 205, 6 words
         01020304          | sender
         05060708          | media source
         0064 8001         | 100, 101 and 116 lost
         FFFF 0000         | 65535 lost
         0000 0002         | 0 and 2 lost
       )")},
  };
}

std::vector<Sample> BitRateLimits() {
  return {
      {.row = &kRowOf<ZunRtcpRtpfbTmmbr>, .name = "TmmbrOneEntry", .wire = Hex(R"(
         82 CD 0004        | FMT 2, type 205, 5 words
         00000001          | sender
         00000000          | no media source
         00000002          | SSRC
         00000003          | 3 bit/s
       )")},
      {.row = &kRowOf<ZunRtcpRtpfbTmmbr>, .name = "TmmbrTwoEntries", .wire = Hex(R"(
         82 CD 0006        | FMT 2, type 205, 7 words
         01020304          | sender
         00000000          | no media source
         05060708          | SSRC
         000186A0          | 100000 bit/s
         090A0B0C          | SSRC
         FFFFFFFF          | 2^32 - 1 bit/s
       )")},
      {.row = &kRowOf<ZunRtcpRtpfbTmmbn>, .name = "Tmmbn", .wire = Hex(R"(
         83 CD 0003        | FMT 3, type 205, 4 words
         01020304          | sender
         05060708          | media source
         FFFFFFFE          | 2^32 - 2 bit/s
       )")},
      {.row = &kRowOf<ZunRtcpRtpfbTmmbn>, .name = "TmmbnSmall", .wire = Hex(R"(
         83 CD 0003        | FMT 3, type 205, 4 words
         00000001          | sender
         00000002          | media source
         00000003          | 3 bit/s
       )")},
  };
}

// Of ECN codepoint 0 alone, as others do not come back.
std::vector<Sample> CongestionControlFeedback() {
  return {
      {.row = &kRowOf<ZunRtcpRtpfbCcfb>,
       .name = "CcfbTwoStreams",
       .wire = Hex(R"(
         8E CD 0009        | FMT 14, type 205, 10 words
         01020304          | sender
         11121314          | stream
         FFFF 0003         | from 65535, 3 metrics
         8005 0000         | received, offset 5; lost
         9FFF              | received, offset 0x1FFF
         0000              | zeros to the word
         21222324          | stream
         000A 0002         | from 10, 2 metrics
         8000 8100         | received, offsets 0 and 256
         DEADBEEF          | report timestamp
       )"),
       .elements_own_memory = true},
      {.row = &kRowOf<ZunRtcpRtpfbCcfb>,
       .name = "CcfbOneStream",
       .wire = Hex(R"(
         8E CD 0007        | FMT 14, type 205, 8 words
         00000001          | sender
         00000002          | stream
         0003 0006         | from 3, 6 metrics
         8001 8002         | received, offsets 1 to 6
         8003 8004
         8005 8006
         00000004          | report timestamp
       )"),
       .elements_own_memory = true},
      {.row = &kRowOf<ZunRtcpRtpfbCcfb>,
       .name = "CcfbWithoutStreams",
       .wire = Hex(R"(
         8E CD 0002        | FMT 14, type 205, 3 words
         01020304          | sender
         05060708          | report timestamp
       )"),
       .elements_own_memory = true},
  };
}

std::vector<Sample> TransportWideFeedback() {
  return {
      {.row = &kRowOf<ZunRtcpRtpfbTransportCc>,
       .name = "TransportCcMixed",
       .wire = Hex(R"(
         8F CD 000B        | FMT 15, type 205, 12 words
         01020304          | sender
         05060708          | media source
         FFFE 001D         | base 65534, 29 statuses
         FFFFFE 2A         | reference time -2, feedback packet 42
         200E              | a run of 14 small deltas
         E640              | large, small, large, small and three lost
         0008              | a run of 8 lost
         0102030405060708090A0B0C0DFF  | small deltas
         012C              | 300
         11                | 17
         FFFF              | -1
         12                | 18
         0000              | zeros to the word
       )"),
       .writes_despite_refusals = true},
      {.row = &kRowOf<ZunRtcpRtpfbTransportCc>,
       .name = "TransportCcOnePacket",
       .wire = Hex(R"(
         8F CD 0005        | FMT 15, type 205, 6 words
         00000061          | sender
         00000062          | media source
         0001 0001         | base 1, one status
         000001 07         | reference time 1, feedback packet 7
         2001              | a run of one small delta
         04                | 4
         00                | zeros to the word
       )"),
       .writes_despite_refusals = true},
  };
}

std::vector<Sample> RateReports() {
  return {
      {.row = &kRowOf<ZunRtcpRtpfbAbafb>, .name = "RtpfbAbafb", .wire = Hex(R"(
         9E CD 0007        | FMT 30, type 205, 8 words
         01020304          | sender
         05060708          | media source
         11121314          | timestamp
         00000BB8          | delay: 3000 us
         21222324          | data rate
         31323334          | loss rate
         41424344          | ABA data rate
       )")},
      {.row = &kRowOf<ZunRtcpRtpfbAbafb>, .name = "RtpfbAbafbSmall", .wire = Hex(R"(
         9E CD 0007        | FMT 30, type 205, 8 words
         00000001          | sender
         00000002          | media source
         00000003          | timestamp
         00000004          | delay: 4 us
         00000005          | data rate
         00000006          | loss rate
         00000007          | ABA data rate
       )")},
  };
}

std::vector<Sample> UnknownTransportFeedback() {
  const Unassigned fmt(Level::kRtpfb, 1);
  return {
      {.row = &kRowOf<ZunRtcpRtpfbUnknown>,
       .name = "RtpfbUnknown",
       .wire = Subpacket(205, fmt.first, Hex(R"(
         01020304          | sender
         05060708          | media source
         A0A1A2A3 A4A5A6A7 | FCI
       )")),
       .pieces = {{12, 20}}},
      {.row = &kRowOf<ZunRtcpRtpfbUnknown>,
       .name = "RtpfbUnknownSmall",
       .wire = Subpacket(205, fmt.second, Hex(R"(
         00000011          | sender
         00000012          | media source
         B0B1B2B3          | FCI
       )")),
       .pieces = {{12, 16}}},
      {.row = &kRowOf<ZunRtcpRtpfbUnknown>, .name = "RtpfbUnknownWithoutData", .wire = Subpacket(205, fmt.first, Hex(R"(
         00000011          | sender
         00000012          | media source
       )"))},
  };
}

std::vector<Sample> LossIndications() {
  return {
      {.row = &kRowOf<ZunRtcpPsfbPli>, .name = "Pli", .wire = Hex(R"(
         81 CE 0002        | FMT 1, type 206, 3 words
         01020304          | sender
         11121314          | media source
       )")},
      {.row = &kRowOf<ZunRtcpPsfbPli>,
       .name = "PliWithExtension",
       .wire = Hex(R"(
         81 CE 0004        | FMT 1, type 206, 5 words
         01020304          | sender
         11121314          | media source
         A1A2A3A4 A5A6A7A8 | extension
       )"),
       .pieces = {{12, 20}}},
      {.row = &kRowOf<ZunRtcpPsfbPli>,
       .name = "PliWithOneWord",
       .wire = Hex(R"(
         81 CE 0003        | FMT 1, type 206, 4 words
         00000007          | sender
         00000008          | media source
         B1B2B3B4          | extension
       )"),
       .pieces = {{12, 16}}},
      {.row = &kRowOf<ZunRtcpPsfbSli>, .name = "SliWithoutItems", .wire = Hex(R"(
         82 CE 0002        | FMT 2, type 206, 3 words
         01020304          | sender
         11121314          | media source
       )")},
      {.row = &kRowOf<ZunRtcpPsfbSli>, .name = "SliOneItem", .wire = Hex(R"(
         82 CE 0003        | FMT 2, type 206, 4 words
         01020304          | sender
         11121314          | media source
         FFFFFFFF          | first 8191, number 8191, picture 63
       )")},
      {.row = &kRowOf<ZunRtcpPsfbSli>, .name = "SliThreeItems", .wire = Hex(R"(
         82 CE 0005        | FMT 2, type 206, 6 words
         01020304          | sender
         11121314          | media source
         00080081          | first 1, number 2, picture 1
         FFF80000          | first 8191, number 0, picture 0
         0007FFC0          | first 0, number 8191, picture 0
       )")},
  };
}

std::vector<Sample> ReferencePictureSelections() {
  return {
      {.row = &kRowOf<ZunRtcpPsfbRpsi>,
       .name = "RpsiThreeOctets",
       .wire = Hex(R"(
         83 CE 0004        | FMT 3, type 206, 5 words
         01020304          | sender
         11121314          | media source
         1D                | padding bits: 3 zero octets and 5 unused bits
         60                | payload type 96
         A1A2A3            | bit string
         000000            | zeros to the word
       )"),
       .pieces = {{14, 17}}},
      {.row = &kRowOf<ZunRtcpPsfbRpsi>,
       .name = "RpsiAllBitsUsed",
       .wire = Hex(R"(
         83 CE 0004        | FMT 3, type 206, 5 words
         00000007          | sender
         00000008          | media source
         18                | padding bits: 3 zero octets
         61                | payload type 97
         B1B2B3            | bit string
         000000            | zeros to the word
       )"),
       .pieces = {{14, 17}}},
      {.row = &kRowOf<ZunRtcpPsfbRpsi>,
       .name = "RpsiTwoOctets",
       .wire = Hex(R"(
         83 CE 0003        | FMT 3, type 206, 4 words
         00000007          | sender
         00000008          | media source
         03                | padding bits: 3 unused bits
         61                | payload type 97
         B1B2              | bit string
       )"),
       .pieces = {{14, 16}}},
  };
}

std::vector<Sample> CodecControl() {
  return {
      {.row = &kRowOf<ZunRtcpPsfbFir>, .name = "FirTwoEntries", .wire = Hex(R"(
         84 CE 0006        | FMT 4, type 206, 7 words
         01020304          | sender
         11121314          | media source
         21222324          | first entry: SSRC
         07 000000         | sequence number, reserved
         31323334          | second entry: SSRC
         FF 000000         | sequence number, reserved
       )")},
      {.row = &kRowOf<ZunRtcpPsfbFir>, .name = "FirOneEntry", .wire = Hex(R"(
         84 CE 0004        | FMT 4, type 206, 5 words
         01020304          | sender
         00000000          | media source
         00000001          | entry: SSRC
         09 000000         | sequence number, reserved
       )")},
      {.row = &kRowOf<ZunRtcpPsfbTstr>, .name = "TstrTwoEntries", .wire = Hex(R"(
         85 CE 0006        | FMT 5, type 206, 7 words
         01020304          | sender
         00000000          | no media source
         21222324          | first entry: SSRC
         07 0000 1F        | sequence number, reserved, index
         31323334          | second entry: SSRC
         FF 0000 00        | sequence number, reserved, index
       )")},
      {.row = &kRowOf<ZunRtcpPsfbTstr>, .name = "TstrOneEntry", .wire = Hex(R"(
         85 CE 0004        | FMT 5, type 206, 5 words
         01020304          | sender
         00000000          | no media source
         00000001          | entry: SSRC
         09 0000 03        | sequence number, reserved, index
       )")},
      {.row = &kRowOf<ZunRtcpPsfbTsta>, .name = "TstaTwoEntries", .wire = Hex(R"(
         86 CE 0006        | FMT 6, type 206, 7 words
         01020304          | sender
         11121314          | media source
         21222324          | first entry: SSRC
         07 0000 1F        | sequence number, reserved, index
         31323334          | second entry: SSRC
         FF 0000 00        | sequence number, reserved, index
       )")},
      {.row = &kRowOf<ZunRtcpPsfbTsta>, .name = "TstaOneEntry", .wire = Hex(R"(
         86 CE 0004        | FMT 6, type 206, 5 words
         01020304          | sender
         00000000          | media source
         00000001          | entry: SSRC
         09 0000 03        | sequence number, reserved, index
       )")},
  };
}

std::vector<Sample> UnknownPayloadFeedback() {
  const Unassigned fmt(Level::kPsfb, 1);
  return {
      {.row = &kRowOf<ZunRtcpPsfbUnknown>,
       .name = "PsfbUnknown",
       .wire = Psfb(fmt.first, Hex("A1A2A3A4 A5A6A7A8")),
       .pieces = {{12, 20}}},
      {.row = &kRowOf<ZunRtcpPsfbUnknown>,
       .name = "PsfbUnknownSmall",
       .wire = Psfb(fmt.second, Hex("B1B2B3B4")),
       .pieces = {{12, 16}}},
      {.row = &kRowOf<ZunRtcpPsfbUnknown>, .name = "PsfbUnknownWithoutData", .wire = Psfb(fmt.first, "")},
  };
}

std::vector<Sample> Estimates() {
  return {
      {.row = &kRowOf<ZunRtcpPsfbAfbRemb>, .name = "RembTwoSources", .wire = Hex(R"(
         8F CE 0006        | FMT 15, type 206, 7 words
         01020304          | sender
         11121314          | media source
         52454D42          | "REMB"
         02                | two SSRCs
         0BD090            | exponent 2, mantissa 250000: 1000000 bit/s
         AABBCCDD          | SSRC
         00000001          | SSRC
       )")},
      {.row = &kRowOf<ZunRtcpPsfbAfbRemb>, .name = "RembOneSource", .wire = Hex(R"(
         8F CE 0005        | FMT 15, type 206, 6 words
         01020304          | sender
         11121314          | media source
         52454D42          | "REMB"
         01                | one SSRC
         03D090            | exponent 0, mantissa 250000
         AABBCCDD          | SSRC
       )")},
      {.row = &kRowOf<ZunRtcpPsfbAfbRemb>, .name = "RembWithoutSources", .wire = Hex(R"(
         8F CE 0004        | FMT 15, type 206, 5 words
         01020304          | sender
         11121314          | media source
         52454D42          | "REMB"
         00                | no SSRC
         000000            | 0 bit/s
       )")},
  };
}

std::vector<Sample> HouseReports() {
  return {
      {.row = &kRowOf<ZunRtcpPsfbAfbAbafb>, .name = "AfbAbafb", .wire = Hex(R"(
         8F CE 000A        | FMT 15, type 206, 11 words
         01020304          | sender
         11121314          | media source
         4E72 0001         | "Nr", ABAFB
         21222324          | timestamp
         000F4240          | delay 1000000
         31323334          | data rate
         41424344          | loss rate
         51525354          | ABA data rate
         FFFFFFFE          | average delay difference -2
         61626364          | average arrival difference
       )")},
      {.row = &kRowOf<ZunRtcpPsfbAfbAbafb>, .name = "AfbAbafbZeros", .wire = Hex(R"(
         8F CE 000A        | FMT 15, type 206, 11 words
         01020304          | sender
         11121314          | media source
         4E72 0001         | "Nr", ABAFB
         00000000          | timestamp
         00000000          | delay
         00000000          | data rate
         00000000          | loss rate
         00000000          | ABA data rate
         00000000          | average delay difference
         00000001          | average arrival difference
       )")},
      {.row = &kRowOf<ZunRtcpPsfbAfbAlbr>, .name = "Albr", .wire = Hex(R"(
         8F CE 0004        | FMT 15, type 206, 5 words
         01020304          | sender
         11121314          | media source
         4E72 0002         | "Nr", ALBR
         21222324          | available bit rate
       )")},
      {.row = &kRowOf<ZunRtcpPsfbAfbAlbr>, .name = "AlbrZero", .wire = Hex(R"(
         8F CE 0004        | FMT 15, type 206, 5 words
         01020304          | sender
         11121314          | media source
         4E72 0002         | "Nr", ALBR
         00000000          | available bit rate
       )")},
  };
}

std::vector<Sample> ShowRequests() {
  return {
      {.row = &kRowOf<ZunRtcpPsfbAfbShow>, .name = "ShowFourParameters", .wire = Hex(R"(
         8F CE 0007        | FMT 15, type 206, 8 words
         01020304          | sender
         11121314          | media source
         4E72 0003         | "Nr", SHOW
         2A                | sequence number 42
         08 00             | enable 0
         19 0780           | width 1920
         21 0438           | height 1080
         3A 16E360         | bandwidth 1500000
         000000            | zeros to the word
       )")},
      {.row = &kRowOf<ZunRtcpPsfbAfbShow>, .name = "ShowTwoParameters", .wire = Hex(R"(
         8F CE 0005        | FMT 15, type 206, 6 words
         01020304          | sender
         11121314          | media source
         4E72 0003         | "Nr", SHOW
         2A                | sequence number 42
         08 01             | enable 1
         3A 16E360         | bandwidth 1500000
         00                | a zero to the word
       )")},
      {.row = &kRowOf<ZunRtcpPsfbAfbShow>, .name = "ShowWithoutParameters", .wire = Hex(R"(
         8F CE 0004        | FMT 15, type 206, 5 words
         01020304          | sender
         11121314          | media source
         4E72 0003         | "Nr", SHOW
         2A                | sequence number 42
         000000            | zeros to the word
       )")},
      {.row = &kRowOf<ZunRtcpPsfbAfbShowAck>, .name = "ShowAck", .wire = Hex(R"(
         8F CE 0005        | FMT 15, type 206, 6 words
         01020304          | sender
         00000000          | media source
         4E72 0004         | "Nr", SHOWACK
         21222324          | sender of the SHOW
         9A                | its sequence number
         000000            | zeros to the word
       )")},
      {.row = &kRowOf<ZunRtcpPsfbAfbShowAck>, .name = "ShowAckZeros", .wire = Hex(R"(
         8F CE 0005        | FMT 15, type 206, 6 words
         01020304          | sender
         11121314          | media source
         4E72 0004         | "Nr", SHOWACK
         00000000          | sender of the SHOW
         00                | its sequence number
         000000            | zeros to the word
       )")},
  };
}

// They are written without the lengths that their reader needs.
std::vector<Sample> LayerInformation() {
  return {
      {.row = &kRowOf<ZunRtcpPsfbAfbLir>,
       .name = "LirThreeEntries",
       .wire = Hex(R"(
         8F CE 000C        | FMT 15, type 206, 13 words
         01020304          | sender
         11121314          | media source
         4E72 0005         | "Nr", LIR
         AABBCCDD          | media source of the first entry
         2A 60 0005        | sequence number 42, payload type 96, 5 octets
         6C61796572        | "layer"
         FFFFFF            | padding, which is not looked at
         00000001          | media source of the second
         FF 7F 0004        | sequence number 255, payload type 127, 4 octets
         01020304
         00000002          | media source of the third
         00 00 0000        | sequence number 0, payload type 0, nothing
       )"),
       .comes_back = false,
       .pieces = {{22, 27}, {36, 40}},
       .elements_own_memory = true},
      {.row = &kRowOf<ZunRtcpPsfbAfbLir>,
       .name = "LirOneEntry",
       .wire = Hex(R"(
         8F CE 0006        | FMT 15, type 206, 7 words
         01020304          | sender
         11121314          | media source
         4E72 0005         | "Nr", LIR
         AABBCCDD          | media source of the entry
         01 60 0001        | sequence number 1, payload type 96, 1 octet
         61                | "a"
         000000            | padding
       )"),
       .comes_back = false,
       .elements_own_memory = true},
  };
}

std::vector<Sample> UnknownApplicationFeedback() {
  // A house message of a number that none has.
  const Unassigned number(Level::kAfb, 1);
  const std::string unassigned = {static_cast<char>(number.first >> 8), static_cast<char>(number.first)};
  return {
      {.row = &kRowOf<ZunRtcpPsfbAfbUnknown>,
       .name = "AfbUnknown",
       .wire = Afb("Nr" + unassigned + Hex("DEADBEEF")),
       .pieces = {{12, 20}}},
      {.row = &kRowOf<ZunRtcpPsfbAfbUnknown>,
       .name = "AfbUnknownZeros",
       .wire = Afb(Hex("00000000")),
       .pieces = {{12, 16}}},
      {.row = &kRowOf<ZunRtcpPsfbAfbUnknown>, .name = "AfbUnknownWithoutData", .wire = Afb("")},
  };
}

// Whether it is one of that kind, or of a kind that the envelope holds.
bool IsSampleOf(const Row& row, const Sample& sample) {
  for (const Row* r = sample.row; r != nullptr; r = EnvelopeOf(*r)) {
    if (r == &row) return true;
  }
  return false;
}

}  // namespace

const std::vector<Sample>& Samples() {
  static const std::vector<Sample> samples = [] {
    std::vector<Sample> all;
    for (const auto list : {SenderReports,
                            ReceiverReports,
                            SourceDescriptions,
                            Goodbyes,
                            Applications,
                            UnknownSubpackets,
                            Nacks,
                            BitRateLimits,
                            CongestionControlFeedback,
                            TransportWideFeedback,
                            RateReports,
                            UnknownTransportFeedback,
                            LossIndications,
                            ReferencePictureSelections,
                            CodecControl,
                            UnknownPayloadFeedback,
                            Estimates,
                            HouseReports,
                            ShowRequests,
                            LayerInformation,
                            UnknownApplicationFeedback}) {
      Append(&all, list());
    }
    return all;
  }();
  return samples;
}

std::vector<Sample> SamplesOf(const Row& row) {
  std::vector<Sample> some;
  for (const Sample& sample : Samples()) {
    if (IsSampleOf(row, sample)) some.push_back(sample);
  }
  return some;
}

std::vector<Sample> SamplesAt(Level level) {
  std::vector<Sample> some;
  for (const Sample& sample : Samples()) {
    if (sample.row->level == level) some.push_back(sample);
  }
  return some;
}

const std::string& Golden(const std::string& name) {
  for (const Sample& sample : Samples()) {
    if (sample.name == name) return sample.wire;
  }
  throw std::out_of_range("there is no sample " + name);
}

std::string Seen(const Sample& sample) { return ReceivedSample(sample).seen(); }

std::string WhatIsWrongWith(const Sample& sample) {
  const std::string who = std::string(sample.row->kind) + ", sample " + sample.name + ": ";
  const Parsed parsed(sample.wire);
  if (!parsed.ok || parsed.count() != 1) return who + "it is not read as one packet";
  if (!Received(*sample.row, sample.wire).ok) return who + "its row does not read it";
  // Of the rows of one level one always reads it.
  for (const Row* const row : AllRows()) {
    if (IsOfKind(*row, parsed[0]) && !IsSampleOf(*row, sample)) return who + row->kind + " reads it";
  }
  return "";
}

std::string WhatIsWrongWith(const Row& row, const std::vector<Sample>& samples) {
  std::set<std::string> wires;
  for (const Sample& sample : samples) {
    if (IsSampleOf(row, sample)) wires.insert(sample.wire);
  }
  if (wires.size() >= 2) return "";
  return std::string(row.kind) + " has " + std::to_string(wires.size()) + " different samples, and needs two";
}

void PrintTo(const Sample& sample, std::ostream* out) { *out << sample.name; }

}  // namespace test
