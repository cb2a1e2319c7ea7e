// GStreamer's RTCP buffer. The octets stand in one GstBuffer, which is mapped for each reading; writing takes a new
// buffer, as GStreamer's own users do. What feedback says beyond its SSRCs is read from its octets: it offers no more.
#include <gst/rtp/rtp.h>

#include <memory>

#include "Zun/Rtp/Cpp/Packet.h"
#include "bench/OtherCodecs/OtherCodec.h"

namespace bench {
namespace {

std::uint64_t SumOfBlocks(GstRTCPPacket* packet) {
  std::uint64_t sum = 0;
  const guint count = gst_rtcp_packet_get_rb_count(packet);
  for (guint i = 0; i < count; ++i) {
    guint32 ssrc = 0;
    guint32 highest = 0;
    guint32 jitter = 0;
    guint32 lsr = 0;
    guint32 dlsr = 0;
    guint8 fraction = 0;
    gint32 lost = 0;
    gst_rtcp_packet_get_rb(packet, i, &ssrc, &fraction, &lost, &highest, &jitter, &lsr, &dlsr);
    sum += std::uint64_t{ssrc} + fraction + static_cast<std::uint32_t>(lost) + highest + jitter + lsr + dlsr;
  }
  return sum;
}

std::uint64_t SumOfSr(GstRTCPPacket* packet) {
  guint32 ssrc = 0;
  guint64 ntp = 0;
  guint32 rtp = 0;
  guint32 packets = 0;
  guint32 octets = 0;
  gst_rtcp_packet_sr_get_sender_info(packet, &ssrc, &ntp, &rtp, &packets, &octets);
  return std::uint64_t{ssrc} + ntp + rtp + packets + octets + SumOfBlocks(packet);
}

std::uint64_t SumOfSdes(GstRTCPPacket* packet) {
  std::uint64_t sum = 0;
  for (gboolean chunk = gst_rtcp_packet_sdes_first_item(packet); chunk;
       chunk = gst_rtcp_packet_sdes_next_item(packet)) {
    const guint32 ssrc = gst_rtcp_packet_sdes_get_ssrc(packet);
    for (gboolean item = gst_rtcp_packet_sdes_first_entry(packet); item;
         item = gst_rtcp_packet_sdes_next_entry(packet)) {
      GstRTCPSDESType type = GST_RTCP_SDES_INVALID;
      guint8 size = 0;
      guint8* text = nullptr;
      if (!gst_rtcp_packet_sdes_get_entry(packet, &type, &size, &text)) std::abort();
      sum += SumOfText(ssrc, static_cast<std::uint32_t>(type), text, size);
    }
  }
  return sum;
}

std::uint64_t SumOfFeedback(GstRTCPPacket* packet) {
  std::uint64_t sum =
      std::uint64_t{gst_rtcp_packet_fb_get_sender_ssrc(packet)} + gst_rtcp_packet_fb_get_media_ssrc(packet);
  if (gst_rtcp_packet_fb_get_type(packet) != GST_RTCP_RTPFB_TYPE_NACK ||
      gst_rtcp_packet_get_type(packet) != GST_RTCP_TYPE_RTPFB)
    return sum;
  const guint8* const fci = gst_rtcp_packet_fb_get_fci(packet);
  const std::size_t words = gst_rtcp_packet_fb_get_fci_length(packet);
  for (std::size_t i = 0; i < words; ++i) {
    sum += std::uint64_t{GST_READ_UINT16_BE(fci + 4 * i)} + GST_READ_UINT16_BE(fci + 4 * i + 2);
  }
  return sum;
}

std::uint64_t SumOf(GstRTCPPacket* packet) {
  switch (gst_rtcp_packet_get_type(packet)) {
    case GST_RTCP_TYPE_SR:
      return SumOfSr(packet);
    case GST_RTCP_TYPE_RR:
      return gst_rtcp_packet_rr_get_ssrc(packet) + SumOfBlocks(packet);
    case GST_RTCP_TYPE_SDES:
      return SumOfSdes(packet);
    default:
      return SumOfFeedback(packet);
  }
}

std::uint64_t Read(GstBuffer* buffer) {
  GstRTCPBuffer rtcp = GST_RTCP_BUFFER_INIT;
  if (!gst_rtcp_buffer_validate_reduced(buffer) || !gst_rtcp_buffer_map(buffer, GST_MAP_READ, &rtcp)) std::abort();
  std::uint64_t sum = 0;
  GstRTCPPacket packet;
  for (gboolean more = gst_rtcp_buffer_get_first_packet(&rtcp, &packet); more;
       more = gst_rtcp_packet_move_to_next(&packet)) {
    sum += SumOf(&packet);
  }
  gst_rtcp_buffer_unmap(&rtcp);
  return sum;
}

// ---- out

void WriteBlocks(GstRTCPPacket* packet, const ZunVector_ZunRtcpReportBlock& blocks) {
  for (const ZunRtcpReportBlock* x = blocks.begin; x != blocks.end; ++x) {
    gst_rtcp_packet_add_rb(packet, x->ssrc, x->fraction_lost, static_cast<gint32>(x->cum_num_packet_lost),
                           x->highest_seq_num_rcvd, x->inter_arrival_jitter, x->last_sr, x->delay_last_sr);
  }
}

void WriteSdes(GstRTCPPacket* packet, const ZunRtcpSdes& sdes) {
  for (const ZunRtcpSdesChunk* chunk = sdes.chunks.begin; chunk != sdes.chunks.end; ++chunk) {
    gst_rtcp_packet_sdes_add_item(packet, chunk->ssrc);
    for (const ZunRtcpSdesItem* item = chunk->items.begin; item != chunk->items.end; ++item) {
      gst_rtcp_packet_sdes_add_entry(packet, static_cast<GstRTCPSDESType>(item->type),
                                     static_cast<guint8>(item->text.size),
                                     reinterpret_cast<const guint8*>(item->text.buf));
    }
  }
}

void WriteFeedback(GstRTCPPacket* packet, GstRTCPFBType type, guint32 sender, guint32 source) {
  gst_rtcp_packet_fb_set_type(packet, type);
  gst_rtcp_packet_fb_set_sender_ssrc(packet, sender);
  gst_rtcp_packet_fb_set_media_ssrc(packet, source);
}

void WriteNack(GstRTCPPacket* packet, const ZunRtcpRtpfbNack& nack) {
  WriteFeedback(packet, GST_RTCP_RTPFB_TYPE_NACK, nack.sender, nack.source);
  gst_rtcp_packet_fb_set_fci_length(packet, static_cast<guint16>(nack.seqMaps.end - nack.seqMaps.begin));
  guint8* fci = gst_rtcp_packet_fb_get_fci(packet);
  for (const ZunRtcpRtpfbNackSeqMap* x = nack.seqMaps.begin; x != nack.seqMaps.end; ++x, fci += 4) {
    GST_WRITE_UINT16_BE(fci, x->seqNumber);
    GST_WRITE_UINT16_BE(fci + 2, x->map);
  }
}

void Write(GstRTCPBuffer* rtcp, const ZunRtcpSubpacket& sp) {
  GstRTCPPacket packet;
  const ZunRtcpSubpacketType type = ZunRtcpSubpacketGetType(&sp);
  if (!gst_rtcp_buffer_add_packet(rtcp, static_cast<GstRTCPType>(type), &packet)) std::abort();
  switch (type) {
    case ZUN_RTCPSUBPACKET_TYPE_SR:
      gst_rtcp_packet_sr_set_sender_info(&packet, sp.sr.sender_source, sp.sr.ntp_timestamp, sp.sr.rtp_timestamp,
                                         sp.sr.sender_packet_cnt, sp.sr.sender_octet_cnt);
      return WriteBlocks(&packet, sp.sr.report_blocks);
    case ZUN_RTCPSUBPACKET_TYPE_RR:
      gst_rtcp_packet_rr_set_ssrc(&packet, sp.rr.sender_source);
      return WriteBlocks(&packet, sp.rr.report_blocks);
    case ZUN_RTCPSUBPACKET_TYPE_SDES:
      return WriteSdes(&packet, sp.sdes);
    case ZUN_RTCPSUBPACKET_TYPE_RTPFB:
      return WriteNack(&packet, sp.rtpfb.nack);
    default:
      return WriteFeedback(&packet, GST_RTCP_PSFB_TYPE_PLI, sp.psfb.pli.sender, sp.psfb.pli.source);
  }
}

template <class Take>
void Write(const ZunRtcpPacket& packet, Take take) {
  constexpr guint kMtu = 1400;
  GstBuffer* const buffer = gst_rtcp_buffer_new(kMtu);
  GstRTCPBuffer rtcp = GST_RTCP_BUFFER_INIT;
  if (!gst_rtcp_buffer_map(buffer, GST_MAP_READWRITE, &rtcp)) std::abort();
  for (const ZunRtcpSubpacket* sp = packet.subpackets.begin; sp != packet.subpackets.end; ++sp) Write(&rtcp, *sp);
  take({reinterpret_cast<const char*>(rtcp.map.data), rtcp.map.size});
  gst_rtcp_buffer_unmap(&rtcp);
  gst_buffer_unref(buffer);
}

}  // namespace

void AddGStreamer(const ComparedDatagram& compared) {
  gst_init(nullptr, nullptr);
  const std::shared_ptr<GstBuffer> buffer(
      gst_rtcp_buffer_new_copy_data(compared.datagram.data(), static_cast<guint>(compared.datagram.size())),
      gst_buffer_unref);
  AddReading(compared, "GStreamer", [=] { return Read(buffer.get()); });
  const auto packet = std::make_shared<zun::rtcp::Packet>();
  if (!packet->decode(zun::rtcp::octets_of(compared.datagram))) std::abort();
  AddWriting(compared, "GStreamer", [=](auto take) { Write(*packet->get(), take); });
}

}  // namespace bench
