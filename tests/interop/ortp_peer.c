/*
 * usage: ortp_peer RTP_PORT RTCP_PORT SECONDS   sends RTP to these ports of the loopback interface with oRTP, in its
 * AVPF profile, with retransmission, TMMBN and reference times, until its input ends; then a BYE, and waits for one.
 * Prints at which port it listens to answers, then a line for each thing that oRTP reads in them, and at the end what
 * oRTP counted.
 */
#define _DEFAULT_SOURCE
#include <inttypes.h>
#include <ortp/nack.h>
#include <ortp/ortp.h>
#include <poll.h>
#include <stdbool.h>
#include <stdio.h>
#include <stdlib.h>
#include <unistd.h>

enum {
  MEDIA = 0x12345678, /* the SSRC */
  MEDIA_TYPE = 96,
  FIRST_NUMBER = 65500, /* so that a second cycle of sequence numbers begins */
  TICK = 10,            /* in ms, between packets */
  TICKS_PER_FRAME = 3,
  PAYLOAD_SIZE = 200,
  REPORT_INTERVAL = 500 /* in ms */
};

static void print_block(const report_block_t* block) {
  if (block == NULL) return;
  printf("block of %08x: fraction %u, lost %d, highest %u, jitter %u, last SR %08x, delay %u\n",
         report_block_get_ssrc(block), report_block_get_fraction_lost(block), report_block_get_cum_packet_lost(block),
         report_block_get_high_ext_seq(block), report_block_get_interarrival_jitter(block),
         report_block_get_last_SR_time(block), report_block_get_last_SR_delay(block));
}

static void on_rr(const OrtpEventData* event, void* data) {
  (void)data;
  if (!rtcp_is_RR(event->packet)) return;
  printf("RR of %08x\n", rtcp_RR_get_ssrc(event->packet));
  print_block(rtcp_RR_get_report_block(event->packet, 0));
}

static void print_item(void* data, uint32_t source, rtcp_sdes_type_t type, const char* content, uint8_t size) {
  (void)data;
  printf("SDES of %08x: item %u, '%.*s'\n", source, (unsigned)type, size, content);
}

static void on_sdes(const OrtpEventData* event, void* data) {
  if (rtcp_is_SDES(event->packet)) rtcp_sdes_parse(event->packet, print_item, data);
}

static bool has_receiver_left = false;

static void on_bye(const OrtpEventData* event, void* data) {
  uint32_t source;
  const char* reason = "";
  int size = 0;
  (void)data;
  if (!rtcp_is_BYE(event->packet)) return;
  rtcp_BYE_get_reason(event->packet, &reason, &size);
  for (int i = 0; rtcp_BYE_get_ssrc(event->packet, i, &source); ++i) {
    has_receiver_left = true;
    printf("BYE of %08x: '%.*s'\n", source, size, reason);
  }
}

static void on_transport_feedback(const OrtpEventData* event, void* data) {
  const mblk_t* packet = event->packet;
  (void)data;
  if (!rtcp_is_RTPFB(packet)) return;
  printf("RTPFB %u of %08x for %08x\n", (unsigned)rtcp_RTPFB_get_type(packet),
         rtcp_RTPFB_get_packet_sender_ssrc(packet), rtcp_RTPFB_get_media_source_ssrc(packet));
  if (rtcp_RTPFB_get_type(packet) == RTCP_RTPFB_NACK) {
    const rtcp_fb_generic_nack_fci_t* fci = rtcp_RTPFB_generic_nack_get_fci(packet);
    printf("NACK of %u, %04x\n", rtcp_fb_generic_nack_fci_get_pid(fci), rtcp_fb_generic_nack_fci_get_blp(fci));
  }
  if (rtcp_RTPFB_get_type(packet) == RTCP_RTPFB_TMMBR) {
    printf("TMMBR of %" PRIu64 "\n", rtcp_RTPFB_tmmbr_get_max_bitrate(packet));
  }
}

static void on_payload_feedback(const OrtpEventData* event, void* data) {
  const mblk_t* packet = event->packet;
  (void)data;
  if (!rtcp_is_PSFB(packet)) return;
  printf("PSFB %u of %08x for %08x\n", (unsigned)rtcp_PSFB_get_type(packet), rtcp_PSFB_get_packet_sender_ssrc(packet),
         rtcp_PSFB_get_media_source_ssrc(packet));
  if (rtcp_PSFB_get_type(packet) == RTCP_PSFB_FIR) {
    const rtcp_fb_fir_fci_t* fci = rtcp_PSFB_fir_get_fci(packet, 0);
    printf("FIR %u for %08x\n", rtcp_fb_fir_fci_get_seq_nr(fci), rtcp_fb_fir_fci_get_ssrc(fci));
  }
}

static void on_extended_report(const OrtpEventData* event, void* data) {
  const mblk_t* packet = event->packet;
  (void)data;
  if (!rtcp_is_XR(packet)) return;
  printf("XR %u of %08x\n", (unsigned)rtcp_XR_get_block_type(packet), rtcp_XR_get_ssrc(packet));
  if (rtcp_XR_get_block_type(packet) != RTCP_XR_DLRR) return;
  printf("DLRR for %08x: %u, %u\n", rtcp_XR_dlrr_get_ssrc(packet), rtcp_XR_dlrr_get_lrr(packet),
         rtcp_XR_dlrr_get_dlrr(packet));
}

static PayloadType* make_payload_type(void) {
  PayloadType* type = payload_type_clone(&payload_type_vp8);
  PayloadTypeAvpfParams avpf = {.features = PAYLOAD_TYPE_AVPF_FIR | PAYLOAD_TYPE_AVPF_PLI,
                                .trr_interval = REPORT_INTERVAL};
  payload_type_set_avpf_params(type, avpf);
  payload_type_set_flag(type, PAYLOAD_TYPE_RTCP_FEEDBACK_ENABLED);
  return type;
}

static RtpSession* make_session(RtpProfile* profile, int rtp_port, int rtcp_port) {
  RtpSession* session = rtp_session_new(RTP_SESSION_SENDRECV);
  rtp_session_set_profile(session, profile);
  rtp_session_set_payload_type(session, MEDIA_TYPE);
  rtp_session_set_ssrc(session, MEDIA);
  rtp_session_set_seq_number(session, FIRST_NUMBER);
  rtp_session_set_source_description(session, "ortp_peer@localhost", NULL, NULL, NULL, NULL, "oRTP", NULL);
  rtp_session_set_local_addr(session, "127.0.0.1", -1, -1);
  rtp_session_set_remote_addr_full(session, "127.0.0.1", rtp_port, "127.0.0.1", rtcp_port);
  rtp_session_set_rtcp_report_interval(session, REPORT_INTERVAL);
  rtp_session_enable_avpf_feature(session, ORTP_AVPF_FEATURE_TMMBR | ORTP_AVPF_FEATURE_GENERIC_NACK, TRUE);
  const OrtpRtcpXrConfiguration extended = {
      .enabled = TRUE, .rcvr_rtt_mode = OrtpRtcpXrRcvrRttAll, .rcvr_rtt_max_size = 10000};
  rtp_session_configure_rtcp_xr(session, &extended);
  return session;
}

static OrtpEvDispatcher* dispatch_to_us(RtpSession* session) {
  OrtpEvDispatcher* dispatcher = ortp_ev_dispatcher_new(session);
  const OrtpEventType packet = ORTP_EVENT_RTCP_PACKET_RECEIVED;
  ortp_ev_dispatcher_connect(dispatcher, packet, RTCP_RR, on_rr, NULL);
  ortp_ev_dispatcher_connect(dispatcher, packet, RTCP_SDES, on_sdes, NULL);
  ortp_ev_dispatcher_connect(dispatcher, packet, RTCP_BYE, on_bye, NULL);
  ortp_ev_dispatcher_connect(dispatcher, packet, RTCP_RTPFB, on_transport_feedback, NULL);
  ortp_ev_dispatcher_connect(dispatcher, packet, RTCP_PSFB, on_payload_feedback, NULL);
  ortp_ev_dispatcher_connect(dispatcher, packet, RTCP_XR, on_extended_report, NULL);
  return dispatcher;
}

static void send_packet(RtpSession* session, uint32_t timestamp) {
  static const uint8_t payload[PAYLOAD_SIZE];
  rtp_session_sendm_with_ts(
      session, rtp_session_create_packet(session, RTP_FIXED_HEADER_SIZE, payload, sizeof(payload)), timestamp);
}

/* Reads what has come, and waits for the next tick. False when the input has ended. */
static bool tick(RtpSession* session, OrtpEvDispatcher* dispatcher, uint32_t timestamp) {
  struct pollfd input = {.fd = STDIN_FILENO, .events = POLLIN};
  mblk_t* received = rtp_session_recvm_with_ts(session, timestamp);
  if (received != NULL) freemsg(received);
  ortp_ev_dispatcher_iterate(dispatcher);
  return poll(&input, 1, TICK) == 0;
}

static void run(RtpSession* session, OrtpEvDispatcher* dispatcher, uint32_t ticks) {
  uint32_t now = 0;
  bool is_input_open = true;
  for (; is_input_open && now < ticks; ++now) {
    const uint32_t timestamp = now / TICKS_PER_FRAME * TICKS_PER_FRAME * TICK * 90;
    send_packet(session, timestamp);
    is_input_open = tick(session, dispatcher, timestamp);
  }
  rtp_session_bye(session, "done");
  for (; !has_receiver_left && now < ticks; ++now) {
    if (!tick(session, dispatcher, now * TICK * 90)) usleep(TICK * 1000);
  }
}

int main(int argc, char** argv) {
  if (argc != 4) {
    fputs("usage: ortp_peer RTP_PORT RTCP_PORT SECONDS\n", stderr);
    return 2;
  }
  setvbuf(stdout, NULL, _IOLBF, 0);
  ortp_init();
  RtpProfile* profile = rtp_profile_new("AVPF");
  rtp_profile_set_payload(profile, MEDIA_TYPE, make_payload_type());
  RtpSession* session = make_session(profile, atoi(argv[1]), atoi(argv[2]));
  OrtpEvDispatcher* dispatcher = dispatch_to_us(session);
  OrtpNackContext* retransmission = ortp_nack_context_new(dispatcher);
  printf("listening %d\n", rtp_session_get_local_rtcp_port(session));

  run(session, dispatcher, (uint32_t)atoi(argv[3]) * 1000 / TICK);
  const rtp_stats_t* stats = rtp_session_get_stats(session);
  printf("counted sent=%" PRIu64 " reports=%" PRIu64 " round_trip_us=%.0f\n", stats->packet_sent,
         stats->recv_rtcp_packets, (double)rtp_session_get_round_trip_propagation(session) * 1e6);
  ortp_nack_context_destroy(retransmission);
  ortp_ev_dispatcher_destroy(dispatcher);
  rtp_session_destroy(session);
  rtp_profile_destroy(profile);
  ortp_exit();
  return 0;
}
