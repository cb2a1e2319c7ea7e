// oRTP: functions that look into the octets where they lie. It offers none for a packet that is written by itself.
#include <memory>

#include "bench/OtherCodecs/OtherCodec.h"

// Its headers are C of their own kind.
#pragma GCC diagnostic push
#pragma GCC diagnostic ignored "-Wpedantic"
#pragma GCC diagnostic ignored "-Wconversion"
#include <ortp/ortp.h>
#include <ortp/rtcp.h>
#pragma GCC diagnostic pop

namespace bench {
namespace {

std::uint64_t SumOf(const report_block_t* x) {
  return std::uint64_t{report_block_get_ssrc(x)} + report_block_get_fraction_lost(x) +
         static_cast<std::uint32_t>(report_block_get_cum_packet_lost(x)) + report_block_get_high_ext_seq(x) +
         report_block_get_interarrival_jitter(x) + report_block_get_last_SR_time(x) + report_block_get_last_SR_delay(x);
}

std::uint64_t SumOfSr(const mblk_t* octets, int blocks) {
  const sender_info_t* const info = rtcp_SR_get_sender_info(octets);
  std::uint64_t sum = rtcp_SR_get_ssrc(octets) + sender_info_get_ntp_timestamp(info) +
                      sender_info_get_rtp_timestamp(info) + sender_info_get_packet_count(info) +
                      sender_info_get_octet_count(info);
  for (int i = 0; i < blocks; ++i) sum += SumOf(rtcp_SR_get_report_block(octets, i));
  return sum;
}

std::uint64_t SumOfRr(const mblk_t* octets, int blocks) {
  std::uint64_t sum = rtcp_RR_get_ssrc(octets);
  for (int i = 0; i < blocks; ++i) sum += SumOf(rtcp_RR_get_report_block(octets, i));
  return sum;
}

void AddItem(void* sum, uint32_t ssrc, rtcp_sdes_type_t type, const char* text, uint8_t size) {
  if (type == RTCP_SDES_END) return;
  *static_cast<std::uint64_t*>(sum) += SumOfText(ssrc, static_cast<std::uint32_t>(type), text, size);
}
std::uint64_t SumOfSdes(const mblk_t* octets) {
  std::uint64_t sum = 0;
  rtcp_sdes_parse(octets, AddItem, &sum);
  return sum;
}

// It hands out the first entry of a NACK; the others follow it.
std::uint64_t SumOfNack(const mblk_t* octets) {
  std::uint64_t sum =
      std::uint64_t{rtcp_RTPFB_get_packet_sender_ssrc(octets)} + rtcp_RTPFB_get_media_source_ssrc(octets);
  const rtcp_fb_generic_nack_fci_t* const first = rtcp_RTPFB_generic_nack_get_fci(octets);
  const std::size_t count =
      (rtcp_get_size(octets) - sizeof(rtcp_common_header_t) - sizeof(rtcp_fb_header_t)) / sizeof(*first);
  for (const rtcp_fb_generic_nack_fci_t* x = first; x != first + count; ++x) {
    sum += std::uint64_t{rtcp_fb_generic_nack_fci_get_pid(x)} + rtcp_fb_generic_nack_fci_get_blp(x);
  }
  return sum;
}

std::uint64_t SumOfPacket(const mblk_t* octets) {
  const int count = rtcp_common_header_get_rc(rtcp_get_common_header(octets));
  if (rtcp_is_SR(octets)) return SumOfSr(octets, count);
  if (rtcp_is_RR(octets)) return SumOfRr(octets, count);
  if (rtcp_is_SDES(octets)) return SumOfSdes(octets);
  if (rtcp_is_RTPFB(octets)) return SumOfNack(octets);
  if (!rtcp_is_PSFB(octets)) std::abort();
  return std::uint64_t{rtcp_PSFB_get_packet_sender_ssrc(octets)} + rtcp_PSFB_get_media_source_ssrc(octets);
}

std::uint64_t Read(mblk_t* octets) {
  std::uint64_t sum = 0;
  do {
    sum += SumOfPacket(octets);
  } while (rtcp_next_packet(octets));
  rtcp_rewind(octets);
  return sum;
}

}  // namespace

void AddOrtp(const ComparedDatagram& compared) {
  const std::shared_ptr<mblk_t> received(allocb(compared.datagram.size(), 0), freemsg);
  std::memcpy(received->b_wptr, compared.datagram.data(), compared.datagram.size());
  received->b_wptr += compared.datagram.size();
  AddReading(compared, "oRTP", [=] { return Read(received.get()); });
}

}  // namespace bench
