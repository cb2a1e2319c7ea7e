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
constexpr unsigned kEtherTypeIpv6 = 0x86dd;

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
  const unsigned etherType = Octet(bytes, 0) << 8 | Octet(bytes, 1);
  if (etherType != kEtherTypeIpv4 && etherType != kEtherTypeIpv6) return nullptr;
  return ReadIp(bytes.substr(kCooked2HeaderSize));
}

Pdu ReadFrame(int linkType, std::string_view frame) {
  switch (linkType) {
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

// The addresses of the IP packet; false when `frame` is a fragment of one or holds none.
template <typename Ip>
void TakeAddresses(const Ip& ip, UdpDatagram* datagram) {
  datagram->source.address = ip.src_addr().to_string();
  datagram->destination.address = ip.dst_addr().to_string();
}

FrameContent ReadLayers(const Tins::PDU& frame, UdpDatagram* datagram) {
  const auto* ip4 = frame.find_pdu<Tins::IP>();
  const auto* ip6 = ip4 == nullptr ? frame.find_pdu<Tins::IPv6>() : nullptr;
  if (ip4 != nullptr) {
    if (ip4->is_fragmented()) return FrameContent::Fragment;
    TakeAddresses(*ip4, datagram);
  } else if (ip6 != nullptr) {
    if (ip6->search_header(Tins::IPv6::FRAGMENT) != nullptr) return FrameContent::Fragment;
    TakeAddresses(*ip6, datagram);
  } else {
    return FrameContent::Other;
  }
  const auto* udp = frame.find_pdu<Tins::UDP>();
  if (udp == nullptr) return FrameContent::Other;

  datagram->source.port = udp->sport();
  datagram->destination.port = udp->dport();
  datagram->payload.clear();
  if (const auto* raw = udp->find_pdu<Tins::RawPDU>(); raw != nullptr) {
    datagram->payload.assign(raw->payload().begin(), raw->payload().end());
  }
  const std::size_t announced = udp->length() > kUdpHeaderSize ? udp->length() - kUdpHeaderSize : 0;
  datagram->missing = announced > datagram->payload.size() ? announced - datagram->payload.size() : 0;
  if (datagram->payload.size() > announced) datagram->payload.resize(announced);
  return FrameContent::Udp;
}

}  // namespace

std::string Endpoint::Name() const {
  const bool six = address.find(':') != std::string::npos;
  return (six ? "[" + address + "]" : address) + ":" + std::to_string(port);
}

bool LinkTypeIsKnown(int linkType) {
  switch (linkType) {
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

FrameContent ReadUdpDatagram(int linkType, std::string_view frame, UdpDatagram* datagram) {
  try {
    const Pdu layers = ReadFrame(linkType, frame);
    return layers == nullptr ? FrameContent::Other : ReadLayers(*layers, datagram);
  } catch (const Tins::exception_base&) {
    return FrameContent::CutOff;
  }
}

}  // namespace zunrtcp
