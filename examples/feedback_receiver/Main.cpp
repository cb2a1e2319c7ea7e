// usage: feedback_receiver ANSWER_PORT SECONDS [house|registered]
// Receives RTP on the loopback interface and answers as a receiver of video does, to ANSWER_PORT there: receiver
// reports, NACK for gaps, PLI at the start and after a blackout, FIR soon after that one, REMB, transport-wide
// feedback, the answer to a reference time, BYE at the end; in the registered dialect TMMBR as well, until a TMMBN
// confirms it. It first prints the ports at which it listens, then a line for all that it and the peer
// say and for every packet that was missing and came after all, and at the end what it counted.
//
// Payload type 96 is the media, 97 its retransmissions (RFC 4588), header extension 1 the transport-wide number.
#include <poll.h>

#include <array>
#include <cstdlib>
#include <cstring>
#include <iostream>
#include <map>
#include <string>

#include "Zun/Rtp/Dialect/ZunRtcpTmmb.h"
#include "examples/feedback_receiver/ExtendedReports.h"
#include "examples/feedback_receiver/Reception.h"
#include "examples/feedback_receiver/RtpHeader.h"
#include "examples/feedback_receiver/UdpSocket.h"

namespace {

using namespace zun::rtcp;
using namespace std::chrono_literals;

constexpr Ssrc kUs = 0x5A554E01;
constexpr std::uint8_t kMediaType = 96;
constexpr std::uint8_t kRetransmissionType = 97;
constexpr unsigned kTransportExtension = 1;
constexpr unsigned kClockRate = 90000;
constexpr auto kReportInterval = 500ms;
constexpr auto kTransportInterval = 100ms;
constexpr auto kBlackout = 500ms;
constexpr unsigned kBlackoutPackets = 5;  // a machine that was busy for so long has lost none
// From the PLI after a blackout to the FIR. What comes within two round trips of a request, senders take for the same.
constexpr auto kUntilCommand = 1s;
constexpr float kEstimate = 1.2e6F;
constexpr double kLimit = 3e6;
constexpr std::uint16_t kMostLost = 1000;  // more in a row are a new beginning

std::uint64_t BitsPerSecond(const ZunRtcpTmmbEntry& entry) {
  return static_cast<std::uint64_t>(ZunRtcpTmmbEntryGetBitrate(&entry));
}

class FeedbackReceiver {
 public:
  FeedbackReceiver(std::uint16_t answer_port, Dialect dialect) : answer_port_(answer_port), dialect_(dialect) {}

  bool Run(std::chrono::seconds limit) {
    if (!rtp_ || !rtcp_) return false;
    std::cout << "listening " << rtp_.port() << ' ' << rtcp_.port() << std::endl;
    const auto end = Clock::now() + limit;
    while (!has_peer_left_ && Clock::now() < end) {
      std::array<pollfd, 2> sockets{{{rtp_.fd(), POLLIN, 0}, {rtcp_.fd(), POLLIN, 0}}};
      if (poll(sockets.data(), sockets.size(), 10) < 0) return false;
      for (auto datagram = rtp_.Receive(buffer_); !datagram.empty(); datagram = rtp_.Receive(buffer_)) Media(datagram);
      for (auto datagram = rtcp_.Receive(buffer_); !datagram.empty(); datagram = rtcp_.Receive(buffer_)) {
        Control(datagram);
      }
      if (!SendWhatIsDue(Clock::now())) return false;
    }
    PrintCounts();
    return SendBye();
  }

 private:
  // ---- what comes

  void Media(std::span<const std::byte> datagram) {
    const auto header = ReadRtpHeader(datagram, kTransportExtension);
    if (!header) return;
    const auto now = Clock::now();
    if (header->transport_seq) RecordTransport(*header->transport_seq, now);
    if (header->payload_type == kRetransmissionType && header->payload.size() >= 2) {
      ++retransmitted_;
      const std::uint16_t seq = ZunUint16FromOctets(header->payload.data());
      if (reception_.Recovered(seq)) PrintRecovered(seq);
    }
    if (header->payload_type != kMediaType) return;
    const bool is_first = !reception_.has_begun();
    const bool is_after_blackout =
        !is_first && now - last_media_ > kBlackout && reception_.MissingBefore(*header) >= kBlackoutPackets;
    media_ = header->ssrc;
    last_media_ = now;
    if (reception_.Arrived(*header, now)) PrintRecovered(header->seq);
    wants_picture_ |= is_first || is_after_blackout;
    if (is_after_blackout) {
      reception_.GiveUp();
      next_full_picture_ = now + kUntilCommand;
    }
  }

  // Each feedback begins where the last one ended, so that what was lost between them is told as well. What comes late,
  // after others, is not taken back.
  void RecordTransport(std::uint16_t seq, Clock::time_point now) {
    if (transport_.packet_info().empty() && next_transport_seq_) {
      const auto lost = static_cast<std::uint16_t>(seq - *next_transport_seq_);
      for (std::uint16_t i = 0; lost < kMostLost && i < lost; ++i) {
        if (!transport_.add_packet(false, static_cast<std::uint16_t>(*next_transport_seq_ + i), 0)) return;
      }
    }
    if (transport_.record(seq, now)) {
      next_transport_seq_ = static_cast<std::uint16_t>(seq + 1);
    } else {
      ++out_of_order_;
    }
  }

  void Control(std::span<const std::byte> datagram) {
    const auto decoded =
        incoming_.decode(datagram, {.dialect = dialect_, .tolerant = true},
                         [](const DecodeRefusal& refusal) { std::cout << "refused " << text_of(refusal) << '\n'; });
    if (!decoded) return;
    for (const View<Subpacket> subpacket : incoming_) {
      std::cout << "received " << subpacket << std::endl;
      visit(subpacket,
            Overloaded{[&](View<Sr> sr) {
                         if (sr.sender_source() == media_) reception_.SenderReported(sr, Clock::now());
                       },
                       [&](View<Sdes> sdes) { Named(sdes); }, [&](View<Bye> bye) { Left(bye); },
                       [&](View<UnknownRtpfb>) { Limited(subpacket); },
                       [&](View<Unknown>) { reference_times_.Read(subpacket, Clock::now()); }, [](const auto&) {}});
    }
  }

  void Named(View<Sdes> sdes) {
    for (const View<SdesChunk> chunk : sdes.chunks()) {
      names_[chunk.ssrc()] = chunk.text(ZUN_RTCPSDESITEM_TYPE_CNAME);
    }
  }

  // The media and its retransmissions are sources of one peer, told by its name; it has left when one of them has.
  void Left(View<Bye> bye) {
    for (const Ssrc source : bye.sources()) has_peer_left_ |= source == media_ || names_[source] == names_[media_];
  }

  // The peer tells who set its limit. Ours is kept when it is us.
  void Limited(View<Subpacket> subpacket) {
    ZunRtcpTmmb tmmbn;
    if (dialect_ != Dialect::registered || ZunRtcpTmmbReadSubpacket(&tmmbn, subpacket.get(), nullptr) == 0) return;
    ZunRtcpTmmbEntry entry;
    for (std::size_t i = 0; ZunRtcpTmmbGetEntry(&tmmbn, i, &entry) != 0; ++i) {
      const bool is_ours = entry.ssrc == kUs;
      std::cout << "limited to " << BitsPerSecond(entry) << " bit/s by " << (is_ours ? "us" : "another") << std::endl;
      is_limit_kept_ |= is_ours;
    }
  }

  // ---- what goes

  bool SendWhatIsDue(Clock::time_point now) {
    if (!reception_.has_begun()) return true;
    Packet packet;
    const bool is_report_due = now >= next_report_;
    if (is_report_due) next_report_ = now + kReportInterval;
    if (!AddReport(packet, is_report_due) || !AddPictureRequests(packet, now) || !AddNack(packet, now)) return false;
    if (is_report_due && (!AddEstimate(packet) || !reference_times_.AddAnswer(packet, kUs, now, std::cout)))
      return false;
    if (now >= next_transport_ && !AddTransport(packet, now)) return false;
    const bool is_there_more_than_a_report = packet.size() > 2;
    return is_report_due || is_there_more_than_a_report ? Send(packet, is_report_due && !is_limit_kept_) : true;
  }

  // Every compound begins with a report and a name; blocks are in those that are due.
  bool AddReport(Packet& packet, bool with_block) {
    Rr rr(kUs);
    Sdes sdes;
    return (!with_block || rr.add(reception_.NextBlock(media_, Clock::now()))) && packet.append(std::move(rr)) &&
           sdes.add(kUs, ZUN_RTCPSDESITEM_TYPE_CNAME, "feedback_receiver@localhost") && packet.append(std::move(sdes));
  }

  bool AddPictureRequests(Packet& packet, Clock::time_point now) {
    if (wants_picture_) {
      ++plis_;
      if (!packet.emplace<Pli>(kUs, media_)) return false;
    }
    if (next_full_picture_ && now >= *next_full_picture_) {
      next_full_picture_.reset();
      Fir fir(kUs, 0);
      if (!fir.add(media_, firs_++) || !packet.append(std::move(fir))) return false;
    }
    wants_picture_ = false;
    return true;
  }

  bool AddNack(Packet& packet, Clock::time_point now) {
    const auto asked = reception_.ToAskFor(now);
    if (asked.empty()) return true;
    ++nacks_;
    Nack nack(kUs, media_);
    for (const std::uint16_t seq : asked) {
      if (!nack.add(seq)) return false;
    }
    asked_for_ += asked.size();
    return packet.append(std::move(nack));
  }

  bool AddEstimate(Packet& packet) const {
    Remb remb(kUs, 0);
    return remb.bitrate(kEstimate) && remb.add(media_) && packet.append(std::move(remb));
  }

  // What was recorded goes out, and the next feedback begins.
  bool AddTransport(Packet& packet, Clock::time_point now) {
    next_transport_ = now + kTransportInterval;
    if (transport_.packet_info().empty()) return true;
    transport_.sender(kUs);
    transport_.source(media_);
    transport_.packet_count(transports_++);
    const bool is_appended = packet.append(std::move(transport_));
    transport_ = TransportCc();
    return is_appended;
  }

  bool Send(const Packet& packet, bool with_limit) {
    const auto size = packet.encode(std::span(buffer_), dialect_);
    if (!size) {
      std::cerr << size.error() << '\n';
      return false;
    }
    for (const View<Subpacket> subpacket : packet) std::cout << "sent " << subpacket << '\n';
    const std::size_t limit_size = with_limit ? WriteLimit(std::span(buffer_).subspan(*size)) : 0;
    std::cout << std::flush;
    return rtcp_.SendTo(answer_port_, std::span(buffer_).first(*size + limit_size));
  }

  // The registered TMMBR is no object of a packet, so it is written after one. Returns its size.
  std::size_t WriteLimit(std::span<std::byte> octets) const {
    if (dialect_ != Dialect::registered) return 0;
    ZunRtcpTmmbEntry entry{media_, 0, 0, 40};
    std::size_t size = 0;
    if (ZunRtcpTmmbEntrySetBitrate(&entry, kLimit) == 0 ||
        ZunRtcpTmmbWrite(ZUN_RTCP_TMMB_TYPE_TMMBR, kUs, &entry, 1, octets.data(), octets.size(), &size) == 0) {
      return 0;
    }
    std::cout << "sent TMMBR: at most " << BitsPerSecond(entry) << " bit/s\n";
    return size;
  }

  bool SendBye() {
    Packet packet;
    Bye bye;
    return AddReport(packet, false) && bye.add(kUs) && bye.reason("the end") && packet.append(std::move(bye)) &&
           Send(packet, false);
  }

  void PrintRecovered(std::uint16_t seq) {
    ++recovered_;
    std::cout << "recovered " << seq << std::endl;
  }

  void PrintCounts() const {
    std::cout << "counted received=" << reception_.received() << " nacks=" << nacks_ << " asked=" << asked_for_
              << " retransmitted=" << retransmitted_ << " recovered=" << recovered_ << " plis=" << plis_
              << " firs=" << static_cast<unsigned>(firs_) << " transports=" << static_cast<unsigned>(transports_)
              << " late=" << out_of_order_ << std::endl;
  }

  std::uint16_t answer_port_;
  Dialect dialect_;
  UdpSocket rtp_;
  UdpSocket rtcp_;
  std::array<std::byte, 65536> buffer_;
  Packet incoming_;  // used again for every datagram
  Reception reception_{kClockRate};
  ReferenceTimes reference_times_;
  TransportCc transport_;
  std::optional<std::uint16_t> next_transport_seq_;
  Ssrc media_ = 0;
  std::map<Ssrc, std::string> names_;
  bool has_peer_left_ = false;
  bool wants_picture_ = false;
  bool is_limit_kept_ = false;
  std::optional<Clock::time_point> next_full_picture_;
  Clock::time_point last_media_{};
  Clock::time_point next_report_{};
  Clock::time_point next_transport_{};
  std::size_t nacks_ = 0;
  std::size_t asked_for_ = 0;
  std::size_t retransmitted_ = 0;
  std::size_t recovered_ = 0;
  std::size_t plis_ = 0;
  std::size_t out_of_order_ = 0;
  std::uint8_t firs_ = 0;
  std::uint8_t transports_ = 0;
};

}  // namespace

int main(int argc, char** argv) {
  if (argc < 3 || argc > 4) {
    std::cerr << "usage: feedback_receiver ANSWER_PORT SECONDS [house|registered]\n";
    return 2;
  }
  const bool is_house = argc == 4 && std::strcmp(argv[3], "house") == 0;
  FeedbackReceiver receiver(static_cast<std::uint16_t>(std::strtoul(argv[1], nullptr, 10)),
                            is_house ? Dialect::house : Dialect::registered);
  return receiver.Run(std::chrono::seconds(std::strtol(argv[2], nullptr, 10))) ? 0 : 1;
}
