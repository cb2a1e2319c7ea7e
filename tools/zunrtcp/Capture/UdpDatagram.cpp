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

#include "tools/zunrtcp/Packet/Octets.h"

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

std::string RawBytes(const Tins::PDU& pdu) {
  const auto* raw = pdu.find_pdu<Tins::RawPDU>();
  return raw == nullptr ? std::string() : std::string(raw->payload().begin(), raw->payload().end());
}

std::string KeyOf(const UdpDatagram& datagram, unsigned protocol, std::uint32_t identification) {
  return datagram.source.address + ' ' + datagram.destination.address + ' ' + std::to_string(protocol) + ' ' +
         std::to_string(identification);
}

Fragment ReadFragment(const Tins::IP& ip, const UdpDatagram& datagram) {
  Fragment fragment;
  fragment.packet = KeyOf(datagram, ip.protocol(), ip.id());
  fragment.offset = std::size_t{8} * ip.fragment_offset();
  fragment.is_last = (ip.flags() & Tins::IP::MORE_FRAGMENTS) == 0;
  fragment.bytes = RawBytes(ip);
  fragment.is_whole = fragment.bytes.size() + std::size_t{4} * ip.head_len() == ip.tot_len();
  return fragment;
}

// RFC 8200, section 4.5: 13 bits of offset, 2 reserved, 1 of more fragments to come, 32 of identification. The protocol
// is not kept; the identification alone is as good, as every packet of a sender has its own.
Fragment ReadFragment(const Tins::IPv6& ip, const Tins::IPv6::ext_header& header, const UdpDatagram& datagram) {
  if (header.data_size() < 6) throw Tins::malformed_packet();
  const std::string_view fields(reinterpret_cast<const char*>(header.data_ptr()), header.data_size());
  Fragment fragment;
  fragment.packet = KeyOf(datagram, 0, U32At(fields, 2));
  fragment.offset = U16At(fields, 0) & ~7U;
  fragment.is_last = (U16At(fields, 0) & 1U) == 0;
  fragment.bytes = RawBytes(ip);
  fragment.is_whole = fragment.bytes.size() + 8 == ip.payload_length();
  return fragment;
}

// The addresses of the IP packet in a frame, and what of it is there.
Frame ReadIpLayer(const Tins::PDU& layers) {
  Frame frame;
  if (const auto* ip = layers.find_pdu<Tins::IP>(); ip != nullptr) {
    TakeAddresses(*ip, &frame.datagram);
    frame.content = ip->is_fragmented() ? FrameContent::Fragment : FrameContent::Udp;
    if (frame.content == FrameContent::Fragment) frame.fragment = ReadFragment(*ip, frame.datagram);
  } else if (const auto* six = layers.find_pdu<Tins::IPv6>(); six != nullptr) {
    TakeAddresses(*six, &frame.datagram);
    const auto* header = six->search_header(Tins::IPv6::FRAGMENT);
    frame.content = header != nullptr ? FrameContent::Fragment : FrameContent::Udp;
    if (header != nullptr) frame.fragment = ReadFragment(*six, *header, frame.datagram);
  }
  return frame;
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

void TakeUdp(const Tins::UDP& udp, UdpDatagram* datagram) {
  datagram->source.port = udp.sport();
  datagram->destination.port = udp.dport();
  TakePayload(udp, datagram);
}

Frame ReadLayers(const Tins::PDU& layers) {
  Frame frame = ReadIpLayer(layers);
  if (frame.content != FrameContent::Udp) return frame;
  const auto* udp = layers.find_pdu<Tins::UDP>();
  if (udp == nullptr) return {};
  TakeUdp(*udp, &frame.datagram);
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

Frame ReadWhole(Frame frame, std::string_view ip_payload) {
  frame.content = FrameContent::Other;
  // Of other protocols the length that UDP would have is something else.
  if (ip_payload.size() < kUdpHeaderSize || U16At(ip_payload, 4) != ip_payload.size()) return frame;
  const Pdu udp = Read<Tins::UDP>(ip_payload);
  TakeUdp(static_cast<const Tins::UDP&>(*udp), &frame.datagram);
  frame.content = FrameContent::Udp;
  return frame;
}

Frame ReadFrame(int link_type, std::string_view bytes) {
  try {
    const Pdu layers = ReadLinkLayer(link_type, bytes);
    return layers == nullptr ? Frame{} : ReadLayers(*layers);
  } catch (const Tins::exception_base&) {
    return {.content = FrameContent::CutOff, .datagram = {}, .fragment = {}};
  }
}

}  // namespace zunrtcp
