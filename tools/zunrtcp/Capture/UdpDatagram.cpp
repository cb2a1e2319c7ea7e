#include "tools/zunrtcp/Capture/UdpDatagram.h"

#include <pcap/dlt.h>
#include <tins/dot3.h>
#include <tins/ethernetII.h>
#include <tins/exceptions.h>
#include <tins/ip.h>
#include <tins/ipv6.h>
#include <tins/loopback.h>
#include <tins/rawpdu.h>
#include <tins/sll.h>
#include <tins/udp.h>

#include <memory>

namespace zunrtcp {

namespace {

// Linux cooked capture, version 2: 20 bytes, the first two of which are the EtherType.
constexpr std::size_t kCooked2HeaderSize = 20;
constexpr std::size_t kUdpHeaderSize = 8;
constexpr unsigned kEtherTypeIpv4 = 0x0800;
constexpr unsigned kEtherTypeIpv6 = 0x86DD;

using Pdu = std::unique_ptr<Tins::PDU>;

template <typename Layer>
Pdu Read(std::string_view bytes) {
  return std::make_unique<Layer>(reinterpret_cast<const std::uint8_t*>(bytes.data()),
                                 static_cast<std::uint32_t>(bytes.size()));
}

unsigned Octet(std::string_view bytes, std::size_t n) { return static_cast<unsigned char>(bytes[n]); }

Pdu ReadIp(std::string_view bytes) {
  if (bytes.empty()) throw Tins::malformed_packet();
  switch (Octet(bytes, 0) >> 4) {
    case 4:
      return Read<Tins::IP>(bytes);
    case 6:
      return Read<Tins::IPv6>(bytes);
    default:
      return nullptr;
  }
}

Pdu ReadCooked2(std::string_view bytes) {
  if (bytes.size() < kCooked2HeaderSize) throw Tins::malformed_packet();
  const unsigned ether_type = Octet(bytes, 0) << 8 | Octet(bytes, 1);
  if (ether_type != kEtherTypeIpv4 && ether_type != kEtherTypeIpv6) return nullptr;
  return ReadIp(bytes.substr(kCooked2HeaderSize));
}

Pdu ReadLinkLayer(int link_type, std::string_view frame) {
  switch (link_type) {
    case DLT_EN10MB:
      // Below 1536 the type field is the length of an IEEE 802.3 frame, which carries no IP.
      if (frame.size() >= 14 && (Octet(frame, 12) << 8 | Octet(frame, 13)) < 1536) return nullptr;
      return Read<Tins::EthernetII>(frame);
    case DLT_LINUX_SLL:
      return Read<Tins::SLL>(frame);
    case DLT_LINUX_SLL2:
      return ReadCooked2(frame);
    case DLT_NULL:
    case DLT_LOOP:
      // Four bytes that name the family, in whatever byte order; the IP version says the same.
      if (frame.size() < 4) throw Tins::malformed_packet();
      return ReadIp(frame.substr(4));
    case DLT_RAW:
    case DLT_IPV4:
    case DLT_IPV6:
      return ReadIp(frame);
    default:
      return nullptr;
  }
}

template <typename Ip>
void TakeAddresses(const Ip& ip, UdpDatagram* datagram) {
  datagram->source.address = ip.src_addr().to_string();
  datagram->destination.address = ip.dst_addr().to_string();
}

// The addresses of the IP packet in a frame, when that is a whole one.
FrameContent ReadIpLayer(const Tins::PDU& frame, UdpDatagram* datagram) {
  if (const auto* ip = frame.find_pdu<Tins::IP>(); ip != nullptr) {
    if (ip->is_fragmented()) return FrameContent::Fragment;
    TakeAddresses(*ip, datagram);
    return FrameContent::Udp;
  }
  if (const auto* ip = frame.find_pdu<Tins::IPv6>(); ip != nullptr) {
    if (ip->search_header(Tins::IPv6::FRAGMENT) != nullptr) return FrameContent::Fragment;
    TakeAddresses(*ip, datagram);
    return FrameContent::Udp;
  }
  return FrameContent::Other;
}

void TakePayload(const Tins::UDP& udp, UdpDatagram* datagram) {
  std::string& payload = datagram->payload;
  if (const auto* raw = udp.find_pdu<Tins::RawPDU>(); raw != nullptr) {
    payload.assign(raw->payload().begin(), raw->payload().end());
  }
  const std::size_t announced = udp.length() > kUdpHeaderSize ? udp.length() - kUdpHeaderSize : 0;
  datagram->missing = announced > payload.size() ? announced - payload.size() : 0;
  if (payload.size() > announced) payload.resize(announced);
}

Frame ReadLayers(const Tins::PDU& layers) {
  Frame frame;
  frame.content = ReadIpLayer(layers, &frame.datagram);
  if (frame.content != FrameContent::Udp) return frame;
  const auto* udp = layers.find_pdu<Tins::UDP>();
  if (udp == nullptr) return {};
  frame.datagram.source.port = udp->sport();
  frame.datagram.destination.port = udp->dport();
  TakePayload(*udp, &frame.datagram);
  return frame;
}

}  // namespace

std::string Endpoint::Name() const {
  const bool six = address.find(':') != std::string::npos;
  return (six ? "[" + address + "]" : address) + ":" + std::to_string(port);
}

bool LinkTypeIsKnown(int link_type) {
  switch (link_type) {
    case DLT_EN10MB:
    case DLT_LINUX_SLL:
    case DLT_LINUX_SLL2:
    case DLT_NULL:
    case DLT_LOOP:
    case DLT_RAW:
    case DLT_IPV4:
    case DLT_IPV6:
      return true;
    default:
      return false;
  }
}

Frame ReadFrame(int link_type, std::string_view bytes) {
  try {
    const Pdu layers = ReadLinkLayer(link_type, bytes);
    return layers == nullptr ? Frame{} : ReadLayers(*layers);
  } catch (const Tins::exception_base&) {
    return {.content = FrameContent::CutOff, .datagram = {}};
  }
}

}  // namespace zunrtcp
