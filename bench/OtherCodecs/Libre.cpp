// libre. Each packet of the datagram is decoded into a message on its heap, and given back. Written are all into one
// buffer that is used again.
#include <arpa/inet.h>

#include <memory>

#include "Zun/Rtp/Cpp/Packet.h"
#include "bench/OtherCodecs/OtherCodec.h"

// Its headers are C of their own kind.
#pragma GCC diagnostic push
#pragma GCC diagnostic ignored "-Wpedantic"
#pragma GCC diagnostic ignored "-Wconversion"
extern "C" {
#include <re_types.h>
//
#include <re_fmt.h>
#include <re_mbuf.h>
#include <re_mem.h>
#include <re_rtp.h>
}
#pragma GCC diagnostic pop

namespace bench {
namespace {

std::uint64_t SumOfBlocks(const rtcp_rr* blocks, std::size_t count) {
  std::uint64_t sum = 0;
  for (const rtcp_rr* x = blocks; x != blocks + count; ++x) {
    sum += std::uint64_t{x->ssrc} + x->fraction + static_cast<std::uint32_t>(x->lost) + x->last_seq + x->jitter +
           x->lsr + x->dlsr;
  }
  return sum;
}

std::uint64_t SumOfSdes(const rtcp_msg& message) {
  std::uint64_t sum = 0;
  for (std::size_t i = 0; i < message.hdr.count; ++i) {
    const auto& chunk = message.r.sdesv[i];
    for (std::size_t j = 0; j < chunk.n; ++j) {
      const rtcp_sdes_item& item = chunk.itemv[j];
      sum += SumOfText(chunk.src, static_cast<std::uint32_t>(item.type), item.data, item.length);
    }
  }
  return sum;
}

std::uint64_t SumOfFeedback(const rtcp_msg& message) {
  const auto& fb = message.r.fb;
  std::uint64_t sum = std::uint64_t{fb.ssrc_packet} + fb.ssrc_media;
  if (message.hdr.pt != RTCP_RTPFB) return sum;
  for (std::size_t i = 0; i < fb.n; ++i) sum += std::uint64_t{fb.fci.gnackv[i].pid} + fb.fci.gnackv[i].blp;
  return sum;
}

std::uint64_t SumOf(const rtcp_msg& message) {
  switch (message.hdr.pt) {
    case RTCP_SR: {
      const auto& sr = message.r.sr;
      return sr.ssrc + (std::uint64_t{sr.ntp_sec} << 32 | sr.ntp_frac) + sr.rtp_ts + sr.psent + sr.osent +
             SumOfBlocks(sr.rrv, message.hdr.count);
    }
    case RTCP_RR:
      return message.r.rr.ssrc + SumOfBlocks(message.r.rr.rrv, message.hdr.count);
    case RTCP_SDES:
      return SumOfSdes(message);
    default:
      return SumOfFeedback(message);
  }
}

std::uint64_t Read(mbuf* octets) {
  std::uint64_t sum = 0;
  octets->pos = 0;
  while (octets->pos < octets->end) {
    rtcp_msg* message = nullptr;
    if (rtcp_decode(&message, octets) != 0) std::abort();
    sum += SumOf(*message);
    mem_deref(message);
  }
  return sum;
}

// ---- out: what follows the constant fields is written by a function that is handed over

using Writer = int (*)(mbuf*, void*);

int WriteBlocks(mbuf* octets, void* of) {
  const auto& blocks = *static_cast<const ZunVector_ZunRtcpReportBlock*>(of);
  int error = 0;
  for (const ZunRtcpReportBlock* x = blocks.begin; x != blocks.end; ++x) {
    error |= mbuf_write_u32(octets, htonl(x->ssrc));
    error |= mbuf_write_u32(octets, htonl(std::uint32_t{x->fraction_lost} << 24 | x->cum_num_packet_lost));
    error |= mbuf_write_u32(octets, htonl(x->highest_seq_num_rcvd));
    error |= mbuf_write_u32(octets, htonl(x->inter_arrival_jitter));
    error |= mbuf_write_u32(octets, htonl(x->last_sr));
    error |= mbuf_write_u32(octets, htonl(x->delay_last_sr));
  }
  return error;
}

int WriteChunks(mbuf* octets, void* of) {
  const auto& sdes = *static_cast<const ZunRtcpSdes*>(of);
  int error = 0;
  for (const ZunRtcpSdesChunk* chunk = sdes.chunks.begin; chunk != sdes.chunks.end; ++chunk) {
    error |= rtcp_sdes_encode(octets, chunk->ssrc, 1, RTCP_SDES_CNAME, chunk->items.begin->text.buf);
  }
  return error;
}

int WriteMaps(mbuf* octets, void* of) {
  const auto& nack = *static_cast<const ZunRtcpRtpfbNack*>(of);
  int error = 0;
  for (const ZunRtcpRtpfbNackSeqMap* x = nack.seqMaps.begin; x != nack.seqMaps.end; ++x) {
    error |= mbuf_write_u16(octets, htons(x->seqNumber));
    error |= mbuf_write_u16(octets, htons(x->map));
  }
  return error;
}

template <class List>
std::uint32_t CountOf(const List& list) {
  return static_cast<std::uint32_t>(list.end - list.begin);
}
template <class Object>
void* Pointer(const Object& object) {
  return const_cast<void*>(static_cast<const void*>(&object));
}

int Write(mbuf* octets, const ZunRtcpSubpacket& sp) {
  switch (ZunRtcpSubpacketGetType(&sp)) {
    case ZUN_RTCPSUBPACKET_TYPE_SR:
      return rtcp_encode(octets, RTCP_SR, CountOf(sp.sr.report_blocks), sp.sr.sender_source,
                         static_cast<std::uint32_t>(sp.sr.ntp_timestamp >> 32),
                         static_cast<std::uint32_t>(sp.sr.ntp_timestamp), sp.sr.rtp_timestamp, sp.sr.sender_packet_cnt,
                         sp.sr.sender_octet_cnt, Writer{WriteBlocks}, Pointer(sp.sr.report_blocks));
    case ZUN_RTCPSUBPACKET_TYPE_RR:
      return rtcp_encode(octets, RTCP_RR, CountOf(sp.rr.report_blocks), sp.rr.sender_source, Writer{WriteBlocks},
                         Pointer(sp.rr.report_blocks));
    case ZUN_RTCPSUBPACKET_TYPE_SDES:
      return rtcp_encode(octets, RTCP_SDES, CountOf(sp.sdes.chunks), Writer{WriteChunks}, Pointer(sp.sdes));
    case ZUN_RTCPSUBPACKET_TYPE_RTPFB:
      return rtcp_encode(octets, RTCP_RTPFB, std::uint32_t{RTCP_RTPFB_GNACK}, sp.rtpfb.nack.sender,
                         sp.rtpfb.nack.source, Writer{WriteMaps}, Pointer(sp.rtpfb.nack));
    default:
      return rtcp_encode(octets, RTCP_PSFB, std::uint32_t{RTCP_PSFB_PLI}, sp.psfb.pli.sender, sp.psfb.pli.source,
                         Writer{nullptr}, static_cast<void*>(nullptr));
  }
}

template <class Take>
void Write(mbuf* octets, const ZunRtcpPacket& packet, Take take) {
  mbuf_rewind(octets);
  for (const ZunRtcpSubpacket* sp = packet.subpackets.begin; sp != packet.subpackets.end; ++sp) {
    if (Write(octets, *sp) != 0) std::abort();
  }
  take({reinterpret_cast<const char*>(octets->buf), octets->end});
}

}  // namespace

void AddLibre(const ComparedDatagram& compared) {
  const std::shared_ptr<mbuf> received(mbuf_alloc(compared.datagram.size()), mem_deref);
  mbuf_write_mem(received.get(), reinterpret_cast<const std::uint8_t*>(compared.datagram.data()),
                 compared.datagram.size());
  AddReading(compared, "libre", [=] { return Read(received.get()); });
  const auto packet = std::make_shared<zun::rtcp::Packet>();
  if (!packet->decode(zun::rtcp::octets_of(compared.datagram))) std::abort();
  const std::shared_ptr<mbuf> out(mbuf_alloc(compared.datagram.size()), mem_deref);
  AddWriting(compared, "libre", [=](auto take) { Write(out.get(), *packet->get(), take); });
}

}  // namespace bench
