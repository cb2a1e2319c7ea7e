// Payload-specific and application-layer feedback.
#include "bench/Bench.h"
#include "bench/Octets.h"
#include "bench/StraightLine.h"

namespace bench {
namespace {

constexpr std::uint32_t kPsfb = 206;
constexpr std::uint32_t kPli = 1;
constexpr std::uint32_t kFir = 4;
constexpr std::uint32_t kAfb = 15;

Octets Ssrcs() { return Octets().U32(0x11223344).U32(0x55667788); }

std::string Show() {
  Octets body = Ssrcs();
  body.Text("Nr").U16(3).U8(7);
  body.U8(1 << 3).U8(1);              // enable
  body.U8(2 << 3).U8(10);             // preference
  body.U8(3 << 3 | 1).U16(1920);      // width
  body.U8(4 << 3 | 1).U16(1080);      // height
  body.U8(5 << 3).U8(30);             // frame rate
  body.U8(6 << 3 | 3).U32(62208000);  // pixel rate
  body.U8(7 << 3 | 2).U24(2500000);   // bandwidth
  body.U8(13 << 3 | 1).U16(1200);     // packet size
  return RtcpPacket(kPsfb, kAfb, body.PadTo4());
}

std::string Lir() {
  Octets body = Ssrcs();
  body.Text("Nr").U16(5);
  for (std::uint32_t i = 0; i < 4; ++i) body.U32(0x55667788 + i).U8(i).U8(96).U16(6).Text("layers").PadTo4();
  return RtcpPacket(kPsfb, kAfb, body);
}

}  // namespace

std::string Pli() { return RtcpPacket(kPsfb, kPli, Ssrcs()); }

std::string Remb() {
  return RtcpPacket(kPsfb, kAfb, Ssrcs().Text("REMB").U8(2).U24(2U << 18 | 250000).U32(0x55667788).U32(0x55667789));
}

std::string Fir(std::uint32_t entries) {
  Octets body = Ssrcs();
  for (std::uint32_t i = 0; i < entries; ++i) body.U32(0x55667788 + i).U8(i).U24(0);
  return RtcpPacket(kPsfb, kFir, body);
}

void AddPayloadFeedbackLines() {
  AddDatagram("PLI", Pli());
  AddDatagram("FIR 1 entry", Fir(1));
  AddDatagram("FIR 10 entries", Fir(10));
  AddDatagram("REMB 2 SSRCs", Remb());
  AddDatagram("RR + SDES + REMB", Rr(1) + Sdes(1) + Remb(), {kStraightLineParse, 5, kStraightLineWrite, 3.5});
  AddDatagram("RR + SDES + NACK 3 + PLI", Rr(1) + Sdes(1) + Nack(3) + Pli(),
              {kStraightLineParse, 6, kStraightLineWrite, 4});
  AddDatagram("SR + SDES + NACK + REMB + PLI", Sr(1) + Sdes(1) + Nack(1) + Remb() + Pli());
  AddDatagram("SHOW 8 parameters", Show());
  AddDatagram("LIR 4 entries", Lir());
}

}  // namespace bench
