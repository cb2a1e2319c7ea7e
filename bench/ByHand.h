// The yardsticks: what a programmer would write by hand for exactly one datagram, and for no other. Its layout is a
// constant, the lengths of its texts too; each packet's header is one comparison, each field a plain load or store of
// a struct, a list an array that is there. All of it is inlined into the loop that times it.
#ifndef BENCH_BYHAND_H
#define BENCH_BYHAND_H

#include <cstddef>
#include <cstdint>
#include <cstring>
#include <tuple>

namespace bench::by_hand {

using Sum = std::uint64_t;

template <class Value>
Value Load(const std::uint8_t* p) {
  Value value;
  std::memcpy(&value, p, sizeof(value));
  if constexpr (sizeof(value) == 2) return __builtin_bswap16(value);
  if constexpr (sizeof(value) == 4) return __builtin_bswap32(value);
  if constexpr (sizeof(value) == 8) return __builtin_bswap64(value);
  return value;
}
template <class Value>
void Store(std::uint8_t* p, Value value) {
  if constexpr (sizeof(value) == 2) value = __builtin_bswap16(value);
  if constexpr (sizeof(value) == 4) value = __builtin_bswap32(value);
  if constexpr (sizeof(value) == 8) value = __builtin_bswap64(value);
  std::memcpy(p, &value, sizeof(value));
}

constexpr std::uint32_t Header(std::uint32_t count, std::uint32_t type, std::size_t size) {
  return (0x80 | count) << 24 | type << 16 | static_cast<std::uint32_t>(size / 4 - 1);
}

// Each packet has a constant size and header, loads and stores what follows the header, and sums its fields up.

struct Block {
  static constexpr std::size_t kSize = 24;
  std::uint32_t ssrc;
  std::uint8_t fraction_lost;
  std::uint32_t packets_lost;
  std::uint32_t highest_sequence;
  std::uint32_t jitter;
  std::uint32_t last_sr;
  std::uint32_t delay;

  void Parse(const std::uint8_t* p) {
    const std::uint32_t lost = Load<std::uint32_t>(p + 4);
    ssrc = Load<std::uint32_t>(p);
    fraction_lost = static_cast<std::uint8_t>(lost >> 24);
    packets_lost = lost & 0xFFFFFF;
    highest_sequence = Load<std::uint32_t>(p + 8);
    jitter = Load<std::uint32_t>(p + 12);
    last_sr = Load<std::uint32_t>(p + 16);
    delay = Load<std::uint32_t>(p + 20);
  }
  void Write(std::uint8_t* p) const {
    Store(p, ssrc);
    Store(p + 4, static_cast<std::uint32_t>(fraction_lost) << 24 | packets_lost);
    Store(p + 8, highest_sequence);
    Store(p + 12, jitter);
    Store(p + 16, last_sr);
    Store(p + 20, delay);
  }
  Sum Total() const { return Sum{ssrc} + fraction_lost + packets_lost + highest_sequence + jitter + last_sr + delay; }
};

template <std::uint32_t kBlocks>
struct Sr {
  static constexpr std::size_t kSize = 28 + kBlocks * Block::kSize;
  static constexpr std::uint32_t kHeader = Header(kBlocks, 200, kSize);
  std::uint32_t sender;
  std::uint64_t ntp;
  std::uint32_t rtp;
  std::uint32_t packets;
  std::uint32_t octets;
  Block blocks[kBlocks];

  void Parse(const std::uint8_t* p) {
    sender = Load<std::uint32_t>(p + 4);
    ntp = Load<std::uint64_t>(p + 8);
    rtp = Load<std::uint32_t>(p + 16);
    packets = Load<std::uint32_t>(p + 20);
    octets = Load<std::uint32_t>(p + 24);
    for (std::size_t i = 0; i < kBlocks; ++i) blocks[i].Parse(p + 28 + i * Block::kSize);
  }
  void Write(std::uint8_t* p) const {
    Store(p + 4, sender);
    Store(p + 8, ntp);
    Store(p + 16, rtp);
    Store(p + 20, packets);
    Store(p + 24, octets);
    for (std::size_t i = 0; i < kBlocks; ++i) blocks[i].Write(p + 28 + i * Block::kSize);
  }
  Sum Total() const {
    Sum sum = Sum{sender} + ntp + rtp + packets + octets;
    for (const Block& block : blocks) sum += block.Total();
    return sum;
  }
};

template <std::uint32_t kBlocks>
struct Rr {
  static constexpr std::size_t kSize = 8 + kBlocks * Block::kSize;
  static constexpr std::uint32_t kHeader = Header(kBlocks, 201, kSize);
  std::uint32_t sender;
  Block blocks[kBlocks];

  void Parse(const std::uint8_t* p) {
    sender = Load<std::uint32_t>(p + 4);
    for (std::size_t i = 0; i < kBlocks; ++i) blocks[i].Parse(p + 8 + i * Block::kSize);
  }
  void Write(std::uint8_t* p) const {
    Store(p + 4, sender);
    for (std::size_t i = 0; i < kBlocks; ++i) blocks[i].Write(p + 8 + i * Block::kSize);
  }
  Sum Total() const {
    Sum sum = sender;
    for (const Block& block : blocks) sum += block.Total();
    return sum;
  }
};

// Chunks of one CNAME of 20 bytes.
template <std::uint32_t kChunks>
struct Sdes {
  static constexpr std::size_t kTextSize = 20;
  static constexpr std::size_t kChunkSize = 28;
  static constexpr std::size_t kSize = 4 + kChunks * kChunkSize;
  static constexpr std::uint32_t kHeader = Header(kChunks, 202, kSize);
  struct Chunk {
    std::uint32_t ssrc;
    std::uint8_t type;
    char text[kTextSize];
  };
  Chunk chunks[kChunks];

  void Parse(const std::uint8_t* p) {
    p += 4;
    for (Chunk& chunk : chunks) {
      chunk.ssrc = Load<std::uint32_t>(p);
      chunk.type = p[4];
      std::memcpy(chunk.text, p + 6, kTextSize);
      p += kChunkSize;
    }
  }
  void Write(std::uint8_t* p) const {
    p += 4;
    for (const Chunk& chunk : chunks) {
      Store(p, chunk.ssrc);
      p[4] = chunk.type;
      p[5] = kTextSize;
      std::memcpy(p + 6, chunk.text, kTextSize);
      p[26] = 0;
      p[27] = 0;
      p += kChunkSize;
    }
  }
  Sum Total() const {
    Sum sum = 0;
    for (const Chunk& chunk : chunks) {
      sum += Sum{chunk.ssrc} + chunk.type + Load<std::uint64_t>(reinterpret_cast<const std::uint8_t*>(chunk.text)) +
             kTextSize;
    }
    return sum;
  }
};

template <std::uint32_t kEntries>
struct Nack {
  static constexpr std::size_t kSize = 12 + kEntries * 4;
  static constexpr std::uint32_t kHeader = Header(1, 205, kSize);
  std::uint32_t sender;
  std::uint32_t source;
  struct {
    std::uint16_t base;
    std::uint16_t map;
  } entries[kEntries];

  void Parse(const std::uint8_t* p) {
    sender = Load<std::uint32_t>(p + 4);
    source = Load<std::uint32_t>(p + 8);
    p += 12;
    for (auto& entry : entries) {
      entry.base = Load<std::uint16_t>(p);
      entry.map = Load<std::uint16_t>(p + 2);
      p += 4;
    }
  }
  void Write(std::uint8_t* p) const {
    Store(p + 4, sender);
    Store(p + 8, source);
    p += 12;
    for (const auto& entry : entries) {
      Store(p, entry.base);
      Store(p + 2, entry.map);
      p += 4;
    }
  }
  Sum Total() const {
    Sum sum = Sum{sender} + source;
    for (const auto& entry : entries) sum += Sum{entry.base} + entry.map;
    return sum;
  }
};

struct Pli {
  static constexpr std::size_t kSize = 12;
  static constexpr std::uint32_t kHeader = Header(1, 206, kSize);
  std::uint32_t sender;
  std::uint32_t source;

  void Parse(const std::uint8_t* p) {
    sender = Load<std::uint32_t>(p + 4);
    source = Load<std::uint32_t>(p + 8);
  }
  void Write(std::uint8_t* p) const {
    Store(p + 4, sender);
    Store(p + 8, source);
  }
  Sum Total() const { return Sum{sender} + source; }
};

// Its name is a part of the layout.
struct Remb {
  static constexpr std::size_t kSize = 28;
  static constexpr std::uint32_t kHeader = Header(15, 206, kSize);
  std::uint32_t sender;
  std::uint32_t source;
  float bitrate;
  std::uint32_t sources[2];

  void Parse(const std::uint8_t* p) {
    sender = Load<std::uint32_t>(p + 4);
    source = Load<std::uint32_t>(p + 8);
    const std::uint32_t rate = Load<std::uint32_t>(p + 16);
    bitrate = static_cast<float>(std::uint64_t{rate & 0x3FFFF} << (rate >> 18 & 0x3F));
    sources[0] = Load<std::uint32_t>(p + 20);
    sources[1] = Load<std::uint32_t>(p + 24);
  }
  void Write(std::uint8_t* p) const {
    const std::uint64_t rate = static_cast<std::uint64_t>(bitrate);
    const int width = rate == 0 ? 0 : 64 - __builtin_clzll(rate);
    const int exponent = width > 18 ? width - 18 : 0;
    Store(p + 4, sender);
    Store(p + 8, source);
    Store(p + 12, std::uint32_t{0x52454D42});
    Store(p + 16, std::uint32_t{2} << 24 | static_cast<std::uint32_t>(exponent) << 18 |
                      static_cast<std::uint32_t>(rate >> exponent));
    Store(p + 20, sources[0]);
    Store(p + 24, sources[1]);
  }
  Sum Total() const { return Sum{sender} + source + static_cast<Sum>(bitrate) + sources[0] + sources[1]; }
};

// One run of kPackets packets that all arrived, with small deltas.
template <std::uint32_t kPackets>
struct TransportCc {
  static constexpr std::size_t kUnpadded = 22 + kPackets;
  static constexpr std::size_t kSize = (kUnpadded + 3) / 4 * 4;
  static constexpr std::uint32_t kHeader = Header(15, 205, kSize);
  std::uint32_t sender;
  std::uint32_t source;
  std::uint16_t base;
  std::int32_t reference;
  std::uint8_t number;
  struct {
    bool received;
    bool have_delta;
    std::int16_t delta;
  } packets[kPackets];

  void Parse(const std::uint8_t* p) {
    sender = Load<std::uint32_t>(p + 4);
    source = Load<std::uint32_t>(p + 8);
    base = Load<std::uint16_t>(p + 12);
    reference = static_cast<std::int32_t>(Load<std::uint32_t>(p + 16)) >> 8;
    number = p[19];
    for (std::size_t i = 0; i < kPackets; ++i) packets[i] = {true, true, static_cast<std::int16_t>(p[22 + i])};
  }
  void Write(std::uint8_t* p) const {
    Store(p + 4, sender);
    Store(p + 8, source);
    Store(p + 12, base);
    Store(p + 14, static_cast<std::uint16_t>(kPackets));
    Store(p + 16, static_cast<std::uint32_t>(reference) << 8 | number);
    Store(p + 20, static_cast<std::uint16_t>(1 << 13 | kPackets));
    for (std::size_t i = 0; i < kPackets; ++i) p[22 + i] = static_cast<std::uint8_t>(packets[i].delta);
    for (std::size_t i = kUnpadded; i < kSize; ++i) p[i] = 0;
  }
  Sum Total() const {
    Sum sum = Sum{sender} + source + base + static_cast<Sum>(reference) + number;
    for (const auto& packet : packets)
      sum += static_cast<Sum>(packet.received) + static_cast<Sum>(packet.have_delta) + static_cast<Sum>(packet.delta);
    return sum;
  }
};

template <std::uint32_t kStreams, std::uint32_t kMetrics>
struct Ccfb {
  static_assert(kMetrics % 2 == 0);
  static constexpr std::size_t kStreamSize = 8 + 2 * kMetrics;
  static constexpr std::size_t kSize = 12 + kStreams * kStreamSize;
  static constexpr std::uint32_t kHeader = Header(14, 205, kSize);
  struct Metric {
    std::uint8_t received;
    std::uint8_t ecn;
    std::uint16_t offset;
  };
  struct Stream {
    std::uint32_t ssrc;
    std::uint16_t begin;
    Metric metrics[kMetrics];
  };
  std::uint32_t sender;
  Stream streams[kStreams];
  std::uint32_t timestamp;

  void Parse(const std::uint8_t* p) {
    sender = Load<std::uint32_t>(p + 4);
    timestamp = Load<std::uint32_t>(p + kSize - 4);
    p += 8;
    for (Stream& stream : streams) {
      stream.ssrc = Load<std::uint32_t>(p);
      stream.begin = Load<std::uint16_t>(p + 4);
      for (std::size_t i = 0; i < kMetrics; ++i) {
        const std::uint16_t word = Load<std::uint16_t>(p + 8 + 2 * i);
        stream.metrics[i] = {static_cast<std::uint8_t>(word >> 15), static_cast<std::uint8_t>((word >> 13 & 3) << 2),
                             static_cast<std::uint16_t>(word & 0x1FFF)};
      }
      p += kStreamSize;
    }
  }
  void Write(std::uint8_t* p) const {
    Store(p + 4, sender);
    Store(p + kSize - 4, timestamp);
    p += 8;
    for (const Stream& stream : streams) {
      Store(p, stream.ssrc);
      Store(p + 4, stream.begin);
      Store(p + 6, static_cast<std::uint16_t>(kMetrics));
      for (std::size_t i = 0; i < kMetrics; ++i) {
        const Metric& m = stream.metrics[i];
        const int word = m.received != 0 ? 0x8000 | m.ecn << 13 | m.offset : 0;
        Store(p + 8 + 2 * i, static_cast<std::uint16_t>(word));
      }
      p += kStreamSize;
    }
  }
  Sum Total() const {
    Sum sum = Sum{sender} + timestamp;
    for (const Stream& stream : streams) {
      sum += Sum{stream.ssrc} + stream.begin;
      for (const Metric& m : stream.metrics) sum += Sum{m.received} + m.ecn + m.offset;
    }
    return sum;
  }
};

// A datagram of these packets.
template <class... Packets>
struct Datagram {
  static constexpr std::size_t kSize = (Packets::kSize + ...);
  std::tuple<Packets...> packets;

  [[gnu::always_inline]] bool Parse(const std::uint8_t* bytes, std::size_t size) {
    if (size != kSize) return false;
    return std::apply([&](auto&... packet) { return (ParseNext(&bytes, &packet) && ...); }, packets);
  }
  [[gnu::always_inline]] void Write(std::uint8_t* bytes) const {
    std::apply([&](const auto&... packet) { (WriteNext(&bytes, packet), ...); }, packets);
  }
  [[gnu::always_inline]] Sum Total() const {
    return std::apply([](const auto&... packet) { return (packet.Total() + ...); }, packets);
  }

 private:
  template <class Packet>
  [[gnu::always_inline]] static bool ParseNext(const std::uint8_t** bytes, Packet* packet) {
    if (Load<std::uint32_t>(*bytes) != Packet::kHeader) return false;
    packet->Parse(*bytes);
    *bytes += Packet::kSize;
    return true;
  }
  template <class Packet>
  [[gnu::always_inline]] static void WriteNext(std::uint8_t** bytes, const Packet& packet) {
    Store(*bytes, Packet::kHeader);
    packet.Write(*bytes);
    *bytes += Packet::kSize;
  }
};

}  // namespace bench::by_hand

#endif
