// Answers a sender report with a receiver report, and tells the sender its round trip.
#include <iostream>

#include "Zun/Rtp/Cpp/Rtcp.h"

using namespace zun::rtcp;
using namespace std::chrono_literals;

static constexpr Ssrc kSender = 0x12345678;
static constexpr Ssrc kReceiver = 0x11223344;

// The receiver: what it received of the source that reports, and when that report came.
static Packet Answer(View<Sr> sr, std::chrono::nanoseconds since_it_came) {
  Packet answer;
  ReportBlock block{};
  block.ssrc = sr.sender_source();
  block.fraction_lost = 64;  // a quarter of the last packets
  packets_lost(block, 25);
  block.highest_seq_num_rcvd = 1100;
  block.last_sr = middle_of_ntp(sr.ntp_timestamp());
  block.delay_last_sr = to_16_16(since_it_came);
  Rr rr(kReceiver);
  Sdes sdes;
  if (!rr.add(block) || !sdes.add(kReceiver, ZUN_RTCPSDESITEM_TYPE_CNAME, "receiver@host")) return {};
  if (!answer.append(std::move(rr)) || !answer.append(std::move(sdes))) return {};
  return answer;
}

int main() {
  const auto sent = std::chrono::system_clock::time_point(1700000000s);
  Sr sr(kSender);
  sr.ntp_timestamp(to_ntp(sent));
  sr.rtp_timestamp(90000);
  std::cout << sr << '\n';

  const Packet answer = Answer(sr, 250ms);
  std::cout << answer << '\n';
  if (answer.check_composition() != 0) return 1;

  // The sender, when the answer is back after 300 ms.
  const auto rr = answer.find<Rr>();
  if (!rr) return 1;
  for (const ReportBlock& block : rr->report_blocks()) {
    const auto trip = round_trip(middle_of_ntp(to_ntp(sent + 300ms)), block.last_sr, block.delay_last_sr);
    std::cout << "round trip " << std::chrono::round<std::chrono::milliseconds>(trip).count() << " ms\n";
  }
}
