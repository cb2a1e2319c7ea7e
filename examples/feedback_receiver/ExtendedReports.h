// The extended reports (RFC 3611) that let a peer reckon its round trip though it receives no media: it sends a
// reference time, and is told how long ago that came.
#ifndef EXAMPLES_FEEDBACK_RECEIVER_EXTENDEDREPORTS_H
#define EXAMPLES_FEEDBACK_RECEIVER_EXTENDEDREPORTS_H

#include <ostream>

#include "Zun/Rtp/Cpp/Rtcp.h"
#include "Zun/Rtp/Dialect/ZunRtcpXr.h"
#include "examples/feedback_receiver/Reception.h"

class ReferenceTimes {
 public:
  // Takes the reference time out of an extended report, and leaves everything else.
  void Read(zun::rtcp::View<zun::rtcp::Subpacket> subpacket, Clock::time_point now) {
    ZunRtcpXrReader reader;
    if (ZunRtcpXrReaderConstruct(&reader, subpacket.get()) == nullptr) return;
    ZunRtcpXrBlock block;
    ZunRtcpXrRrtr rrtr;
    while (ZunRtcpXrReaderNext(&reader, &block) != 0) {
      if (ZunRtcpXrBlockGetRrtr(&block, &rrtr) == 0) continue;
      peer_ = reader.sender;
      last_ = zun::rtcp::middle_of_ntp(rrtr.ntpTimestamp);
      last_time_ = now;
      is_to_be_answered_ = true;
    }
  }

  // Appends the answer to the last one, once.
  bool AddAnswer(zun::rtcp::Packet& packet, zun::rtcp::Ssrc us, Clock::time_point now, std::ostream& log) {
    if (!is_to_be_answered_) return true;
    is_to_be_answered_ = false;
    const ZunRtcpXrDlrr dlrr{peer_, last_, zun::rtcp::to_16_16(now - last_time_)};
    log << "answered the reference time " << dlrr.lastRr << " of " << dlrr.ssrc << ", that came "
        << dlrr.delaySinceLastRr << "/65536 s ago\n";
    ZunRtcpXrBuilder builder;
    ZunAllocator* const allocator = zun::rtcp::system_allocator();
    if (ZunRtcpXrBuilderConstruct(&builder, us, allocator) == nullptr) return false;
    ZunRtcpSubpacket report;
    const bool is_made = ZunRtcpXrBuilderAddDlrr(&builder, &dlrr, 1) != 0 &&
                         ZunRtcpXrBuilderMakeSubpacket(&builder, &report, allocator) != nullptr;
    const bool is_added = is_made && packet.append(zun::rtcp::View<zun::rtcp::Subpacket>(report));
    if (is_made) ZunRtcpSubpacketDestruct(&report);
    ZunRtcpXrBuilderDestruct(&builder);
    return is_added;
  }

 private:
  zun::rtcp::Ssrc peer_ = 0;
  std::uint32_t last_ = 0;
  Clock::time_point last_time_{};
  bool is_to_be_answered_ = false;
};

#endif
