#include "tools/zunrtcp/Capture/RtcpFinder.h"

#include <pcap/pcap.h>

#include <utility>

#include "tools/zunrtcp/InputError.h"
#include "tools/zunrtcp/Packet/SubpacketWalk.h"
#include "tools/zunrtcp/Text.h"

namespace zunrtcp {

namespace {

constexpr std::size_t kRtpHeaderSize = 12;

std::int64_t TimeOf(const Record& record) { return record.seconds * 1000000 + record.microseconds; }

}  // namespace

bool LooksLikeRtcp(std::string_view payload) {
  if (payload.size() < kHeaderSize) return false;
  const unsigned first = U8At(payload, 0);
  const unsigned type = U8At(payload, 1);
  return first >> 6 == 2 && type >= 192 && type <= 223;
}

bool LooksLikeRtp(std::string_view payload) {
  return payload.size() >= kRtpHeaderSize && U8At(payload, 0) >> 6 == 2 && !LooksLikeRtcp(payload);
}

RtcpFinder::RtcpFinder(const std::string& path, std::set<std::uint16_t> ports)
    : RtcpFinder(CaptureReader(path), std::move(ports)) {}

RtcpFinder::RtcpFinder(CaptureReader capture, std::set<std::uint16_t> ports)
    : capture_(std::move(capture)), ports_(std::move(ports)) {
  const int link_type = capture_.LinkType();
  if (LinkTypeIsKnown(link_type)) return;
  const char* name = pcap_datalink_val_to_name(link_type);
  throw InputError(capture_.path() + ": frames of link layer " +
                   (name != nullptr ? std::string(name) : std::to_string(link_type)) +
                   " cannot be read (Ethernet, Linux cooked, loopback and raw IP can)");
}

std::optional<RtcpDatagram> RtcpFinder::Next() {
  while (const std::optional<Record> record = capture_.Next()) {
    ++counts_.records;
    if (std::optional<RtcpDatagram> datagram = RtcpIn(*record)) return datagram;
  }
  return std::nullopt;
}

FrameCounts RtcpFinder::counts() const {
  FrameCounts counts = counts_;
  counts.fragments = fragments_.left();
  return counts;
}

std::string RtcpFinder::NothingFound() const {
  if (live()) return {};
  const FrameCounts frames = counts();
  std::string words = path() + ": no RTCP in it" + (ports_.empty() ? "" : " on these ports") + " (" +
                      Counted(frames.records, "record") + ", of which " + std::to_string(frames.udp) + " UDP";
  if (frames.fragments > 0) words += ", " + Counted(frames.fragments, "fragment") + " of IP packets skipped";
  if (frames.cut_off > 0) words += ", " + std::to_string(frames.cut_off) + " cut off before their payload";
  return words + ")";
}

bool RtcpFinder::HasPort(const UdpDatagram& udp) const {
  return ports_.empty() || ports_.contains(udp.source.port) || ports_.contains(udp.destination.port);
}

std::optional<RtcpDatagram> RtcpFinder::RtcpIn(const Record& record) {
  if (!start_) start_ = TimeOf(record);
  Frame frame = ReadFrame(capture_.LinkType(), record.bytes);
  UdpDatagram& udp = frame.datagram;
  if (frame.content == FrameContent::Fragment) {
    const std::optional<std::string> whole = fragments_.Add(std::move(frame.fragment));
    if (!whole) return std::nullopt;
    frame = ReadWhole(std::move(frame), *whole);
  }
  if (frame.content == FrameContent::CutOff && record.bytes.size() < record.original_size) ++counts_.cut_off;
  if (frame.content != FrameContent::Udp) return std::nullopt;

  ++counts_.udp;
  if (!HasPort(udp)) return std::nullopt;
  if (!LooksLikeRtcp(udp.payload)) {
    if (LooksLikeRtp(udp.payload)) ++counts_.rtp;
    if (udp.missing > 0 && udp.payload.size() < kHeaderSize) ++counts_.cut_off;
    return std::nullopt;
  }
  return RtcpDatagram{.number = ++found_,
                      .line = 0,
                      .record_number = record.number,
                      .record_offset = record.offset,
                      .seconds = record.seconds,
                      .microseconds = record.microseconds,
                      .since_start = TimeOf(record) - *start_,
                      .source = std::move(udp.source),
                      .destination = std::move(udp.destination),
                      .payload = std::move(udp.payload),
                      .missing = udp.missing};
}

}  // namespace zunrtcp
