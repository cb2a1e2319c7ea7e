// Reports and session control.
#include "bench/Bench.h"
#include "bench/Octets.h"
#include "bench/StraightLine.h"

namespace bench {
namespace {

void AppendBlocks(Octets* body, std::uint32_t blocks) {
  for (std::uint32_t i = 0; i < blocks; ++i) {
    body->U32(0x55667788 + i).U8(12).U24(345 + i).U32(0x12345 + i).U32(67).U32(0x89ABCDEF).U32(65536);
  }
}

}  // namespace

std::string Rr(std::uint32_t blocks) {
  Octets body;
  body.U32(0x11223344);
  AppendBlocks(&body, blocks);
  return RtcpPacket(201, blocks, body);
}

std::string Sr(std::uint32_t blocks) {
  Octets body;
  body.U32(0x11223344).U32(0xEE012345).U32(0x6789ABCD).U32(0x00112233).U32(1000).U32(1200000);
  AppendBlocks(&body, blocks);
  return RtcpPacket(200, blocks, body);
}

std::string Sdes(std::uint32_t chunks) {
  Octets body;
  for (std::uint32_t i = 0; i < chunks; ++i) {
    body.U32(0x11223344 + i).U8(1).U8(20).Text("alice@host.example.c").U8(0).PadTo4();
  }
  return RtcpPacket(202, chunks, body);
}

void AddReportsLines() {
  AddDatagram("SR 1 block + SDES", SrSdesDatagram(), {kStraightLineParse, 3, kStraightLineWrite, 2.5});
  AddDatagram("RR 1 block", Rr(1));
  AddDatagram("RR 31 blocks", Rr(31), {"RR 1 block/parse in place", 31, "RR 1 block/write", 31});
  AddDatagram("SDES 10 chunks", Sdes(10));
  // Ten times the chunks and 31 times the blocks: linear growth keeps it within 31 times.
  AddDatagram("SR 31 blocks + SDES 10 chunks", Sr(31) + Sdes(10),
              {"SR 1 block + SDES/parse in place", 31, "SR 1 block + SDES/write", 31});
}

}  // namespace bench
