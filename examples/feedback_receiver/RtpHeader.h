// What a receiver looks at in an RTP packet (RFC 3550, section 5.1; RFC 8285, section 4.2).
#ifndef EXAMPLES_FEEDBACK_RECEIVER_RTPHEADER_H
#define EXAMPLES_FEEDBACK_RECEIVER_RTPHEADER_H

#include <cstddef>
#include <cstdint>
#include <optional>
#include <span>

#include "Zun/Utils/ZunMiscInline.h"

struct RtpHeader {
  std::uint8_t payload_type;
  std::uint16_t seq;
  std::uint32_t timestamp;
  std::uint32_t ssrc;
  std::optional<std::uint16_t> transport_seq;  // in the header extension that was asked for
  std::span<const std::byte> payload;
};

// The two bytes of element `id` of a one-byte header extension.
inline std::optional<std::uint16_t> ElementOf(std::span<const std::byte> elements, unsigned id) {
  while (!elements.empty()) {
    const unsigned head = std::to_integer<unsigned>(elements[0]);
    const std::size_t size = head == 0 ? 1 : 2 + (head & 0xFU);  // a byte of 0 is padding
    if (size > elements.size()) return std::nullopt;
    if (head >> 4 == id && size == 3) return ZunUint16FromOctets(&elements[1]);
    elements = elements.subspan(size);
  }
  return std::nullopt;
}

// Nothing for what is no RTP packet. `transport_id` is the number of the transport-wide extension.
inline std::optional<RtpHeader> ReadRtpHeader(std::span<const std::byte> packet, unsigned transport_id) {
  if (packet.size() < 12 || std::to_integer<unsigned>(packet[0]) >> 6 != 2) return std::nullopt;
  const unsigned first = std::to_integer<unsigned>(packet[0]);
  RtpHeader header{std::to_integer<std::uint8_t>(packet[1] & std::byte{0x7F}),
                   ZunUint16FromOctets(&packet[2]),
                   ZunUint32FromOctets(&packet[4]),
                   ZunUint32FromOctets(&packet[8]),
                   std::nullopt,
                   {}};
  std::size_t at = 12 + 4 * std::size_t{first & 0xFU};
  if ((first & 0x10U) != 0) {
    if (packet.size() < at + 4) return std::nullopt;
    const std::size_t size = 4 * std::size_t{ZunUint16FromOctets(&packet[at + 2])};
    if (packet.size() < at + 4 + size) return std::nullopt;
    const bool is_one_byte = ZunUint16FromOctets(&packet[at]) == 0xBEDE;
    if (is_one_byte) header.transport_seq = ElementOf(packet.subspan(at + 4, size), transport_id);
    at += 4 + size;
  }
  if (packet.size() < at) return std::nullopt;
  header.payload = packet.subspan(at);
  return header;
}

#endif
