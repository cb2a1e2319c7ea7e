#include "tools/zunrtcp/Capture/RtcpFinder.h"

#include <pcap/pcap.h>

#include <utility>

#include "tools/zunrtcp/InputError.h"

namespace zunrtcp {

bool LooksLikeRtcp(std::string_view payload) {
  if (payload.size() < 4) return false;
  const unsigned first = static_cast<unsigned char>(payload[0]);
  const unsigned type = static_cast<unsigned char>(payload[1]);
  return first >> 6 == 2 && type >= 192 && type <= 223;
}

RtcpFinder::RtcpFinder(CaptureReader* capture, std::set<std::uint16_t> ports)
    : capture_(capture), ports_(std::move(ports)) {
  const int linkType = capture->LinkType();
  if (LinkTypeIsKnown(linkType)) return;
  const char* name = pcap_datalink_val_to_name(linkType);
  throw InputError(capture->path() + ": frames of link layer " +
                   (name != nullptr ? std::string(name) : std::to_string(linkType)) +
                   " cannot be read (Ethernet, Linux cooked, loopback and raw IP can)");
}

bool RtcpFinder::Next(RtcpDatagram* datagram) {
  Record record;
  while (capture_->Next(&record)) {
    ++counts_.records;
    if (Take(record, datagram)) return true;
  }
  return false;
}

bool RtcpFinder::Take(const Record& record, RtcpDatagram* datagram) {
  UdpDatagram udp;
  switch (ReadUdpDatagram(capture_->LinkType(), record.bytes, &udp)) {
    case FrameContent::Udp:
      break;
    case FrameContent::Fragment:
      ++counts_.fragments;
      return false;
    case FrameContent::CutOff:
      if (record.bytes.size() < record.originalSize) ++counts_.cutOff;
      return false;
    case FrameContent::Other:
      return false;
  }
  ++counts_.udp;
  if (!ports_.empty() && ports_.count(udp.source.port) == 0 && ports_.count(udp.destination.port) == 0) return false;
  if (!LooksLikeRtcp(udp.payload)) {
    if (udp.missing > 0 && udp.payload.size() < 4) ++counts_.cutOff;
    return false;
  }
  datagram->number = ++found_;
  datagram->recordNumber = record.number;
  datagram->recordOffset = record.offset;
  datagram->seconds = record.seconds;
  datagram->microseconds = record.microseconds;
  datagram->source = std::move(udp.source);
  datagram->destination = std::move(udp.destination);
  datagram->payload = std::move(udp.payload);
  datagram->missing = udp.missing;
  return true;
}

}  // namespace zunrtcp
