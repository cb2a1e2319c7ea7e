// Transport-layer feedback.
#include <cstdlib>
#include <cstring>
#include <memory>
#include <vector>

#include "bench/Bench.h"
#include "bench/Octets.h"

namespace bench {
namespace {

constexpr std::uint32_t kRtpfb = 205;
constexpr ZunTime kMillisecond = 1000000;

// ---- transport-wide congestion control -------------------------------------------------------------------------

struct Arrival {
  ZunBool received;
  ZunTime time;
};

// All arrive, 5 ms apart: run-length chunks and small deltas.
std::vector<Arrival> Runs(std::size_t count) {
  std::vector<Arrival> arrivals;
  for (std::size_t i = 0; i < count; ++i) arrivals.push_back({1, static_cast<ZunTime>(1000 + 5 * i) * kMillisecond});
  return arrivals;
}

// Every fifth is lost, small deltas: one-bit vectors.
std::vector<Arrival> Mixed(std::size_t count) {
  std::vector<Arrival> arrivals = Runs(count);
  for (std::size_t i = 4; i < count; i += 5) arrivals[i].received = 0;
  return arrivals;
}

// Every fifth is lost and every third comes 100 ms late, out of order: two-bit vectors, large and negative deltas.
std::vector<Arrival> LargeDeltas(std::size_t count) {
  std::vector<Arrival> arrivals = Mixed(count);
  for (std::size_t i = 2; i < count; i += 3) arrivals[i].time += 100 * kMillisecond;
  return arrivals;
}

void Record(ZunRtcpRtpfbTransportCc* feedback, const std::vector<Arrival>& arrivals) {
  ZunUint16 seq = 65500;
  for (const Arrival& arrival : arrivals) {
    if (!ZunRtcpRtpfbTransportCcAddPacket(feedback, arrival.received, seq++, arrival.time)) std::abort();
  }
}

std::string TransportCc(const std::vector<Arrival>& arrivals) {
  ZunRtcpSubpacket sp;
  ZunRtcpRtpfbTransportCcConstructFull(&sp.rtpfb.transportCc, 1, 2, 3, CountingAllocator());
  Record(&sp.rtpfb.transportCc, arrivals);
  std::string bytes = Compound({&sp});
  ZunRtcpSubpacketDestruct(&sp);
  return bytes;
}

// The yardstick: what a programmer would write by hand to decode one transport-wide feedback packet into an array
// that is there, bounds checked where a chunk or the deltas begin.
struct DecodedPacket {
  bool received;
  bool have_delta;
  std::int16_t delta;
};
struct DecodedFeedback {
  std::uint32_t sender;
  std::uint32_t source;
  std::uint16_t base;
  std::uint16_t count;
  std::int32_t reference;
  std::uint8_t number;
  DecodedPacket packets[65536];
};

std::uint32_t Load16(const std::uint8_t* p) { return static_cast<std::uint32_t>(p[0] << 8 | p[1]); }
std::uint32_t Load32(const std::uint8_t* p) { return Load16(p) << 16 | Load16(p + 2); }

[[gnu::noinline]] bool DecodeByHand(const std::uint8_t* bytes, std::size_t size, DecodedFeedback* out) {
  if (size < 20 || bytes[0] != 0x8F || bytes[1] != kRtpfb || Load16(bytes + 2) != size / 4 - 1) return false;
  out->sender = Load32(bytes + 4);
  out->source = Load32(bytes + 8);
  out->base = static_cast<std::uint16_t>(Load16(bytes + 12));
  out->count = static_cast<std::uint16_t>(Load16(bytes + 14));
  out->reference = static_cast<std::int32_t>(Load32(bytes + 16)) >> 8;
  out->number = bytes[19];
  const std::uint8_t* p = bytes + 20;
  const std::uint8_t* const end = bytes + size;
  std::size_t delta_bytes = 0;
  static constexpr std::uint8_t kDeltaSize[] = {0, 1, 2, 0};
  std::uint8_t symbols[65536 + 14];
  for (std::size_t i = 0; i < out->count; p += 2) {
    if (end - p < 2) return false;
    const std::uint32_t chunk = Load16(p);
    if ((chunk & 0x8000) == 0) {
      const std::uint8_t symbol = static_cast<std::uint8_t>(chunk >> 13);
      std::size_t run = chunk & 0x1FFF;
      if (run > out->count - i) run = out->count - i;
      std::memset(symbols + i, symbol, run);
      delta_bytes += run * kDeltaSize[symbol];
      i += run;
    } else if ((chunk & 0x4000) == 0) {
      for (int bit = 13; bit >= 0 && i < out->count; --bit) {
        const std::uint8_t symbol = chunk >> bit & 1;
        symbols[i++] = symbol;
        delta_bytes += symbol;
      }
    } else {
      for (int bit = 12; bit >= 0 && i < out->count; bit -= 2) {
        const std::uint8_t symbol = chunk >> bit & 3;
        symbols[i++] = symbol;
        delta_bytes += kDeltaSize[symbol];
      }
    }
  }
  if (static_cast<std::size_t>(end - p) < delta_bytes) return false;
  for (std::size_t i = 0; i < out->count; ++i) {
    DecodedPacket& packet = out->packets[i];
    packet.received = symbols[i] != 0;
    packet.have_delta = kDeltaSize[symbols[i]] != 0;
    if (symbols[i] == 1) {
      packet.delta = *p++;
    } else if (symbols[i] == 2) {
      packet.delta = static_cast<std::int16_t>(Load16(p));
      p += 2;
    } else {
      packet.delta = 0;
    }
  }
  return true;
}

void AddTransportCc(const std::string& pattern, const std::vector<Arrival>& arrivals, bool has_goals) {
  const std::string subject = "transport-cc " + std::to_string(arrivals.size()) + " " + pattern;
  const std::string datagram = TransportCc(arrivals);
  const std::string yardstick = subject + "/decode by hand";
  AddDatagram(subject, datagram, {yardstick, has_goals ? 1.5 : 0, yardstick, has_goals ? 3.0 : 0});
  Add({subject, "decode by hand",
       [=](benchmark::State& state) {
         const std::unique_ptr<DecodedFeedback> decoded(new DecodedFeedback);
         const auto* const bytes = reinterpret_cast<const std::uint8_t*>(datagram.data());
         Measure(state, [&] {
           if (!DecodeByHand(bytes, datagram.size(), decoded.get())) std::abort();
           benchmark::ClobberMemory();
         });
       },
       "", 0});
  Add({subject, "record and write",
       [=](benchmark::State& state) {
         ZunRtcpSubpacket sp;
         ZunRtcpRtpfbTransportCcConstructFull(&sp.rtpfb.transportCc, 1, 2, 3, CountingAllocator());
         ZunRtcpRtpfbTransportCc* const feedback = &sp.rtpfb.transportCc;
         const ZunTime no_time = feedback->latestTime;
         Bytes written;
         const auto record_and_write = [&] {
           ZunVector_ZunRtcpRtpfbTransportCcPacketInfoClear(&feedback->packetInfo);
           feedback->latestTime = no_time;
           ZunStringClear(written.get());
           Record(feedback, arrivals);
           if (!ZunRtcpRtpfbWritePacket(&sp, written.get(), 0)) std::abort();
           benchmark::ClobberMemory();
         };
         record_and_write();
         Measure(state, record_and_write);
         ZunRtcpSubpacketDestruct(&sp);
       },
       yardstick, has_goals ? 3.0 : 0, datagram.size(), false});
}

// ---- CCFB --------------------------------------------------------------------------------------------------------

constexpr std::uint32_t kCcfb = 14;

void AddPacketsOneByOne(benchmark::State& state) {
  ZunRtcpRtpfbCcfbStream stream;
  ZunRtcpRtpfbCcfbStreamConstructDefault(&stream, 0x55667788, CountingAllocator());
  const auto add = [&] {
    ZunVector_ZunRtcpRtpfbCcfbPacketMetricClear(&stream.packetMetrics);
    for (ZunUint16 i = 0; i < 30; ++i) {
      if (!ZunRtcpRtpfbCcfbStreamAddPacket(&stream, static_cast<ZunUint16>(1000 + i), 1, 0, i)) std::abort();
    }
    benchmark::ClobberMemory();
  };
  add();
  Measure(state, add);
  ZunRtcpRtpfbCcfbStreamDestruct(&stream);
}

// ---- NACK --------------------------------------------------------------------------------------------------------

// Every third number of a run of 150: maps fill up before a new one begins.
void AddLostNumbers(benchmark::State& state) {
  ZunRtcpRtpfbNack nack;
  ZunRtcpRtpfbNackConstruct(&nack, 1, 2, CountingAllocator());
  const auto add = [&] {
    ZunRtcpRtpfbNackResetSeqMaps(&nack);
    for (ZunUint16 i = 0; i < 50; ++i) {
      if (!ZunRtcpRtpfbNackAddSeqNumber(&nack, static_cast<ZunUint16>(100 + 3 * i))) std::abort();
    }
    benchmark::ClobberMemory();
  };
  add();
  Measure(state, add);
  ZunRtcpRtpfbNackDestruct(&nack);
}

}  // namespace

std::string Ccfb(std::uint32_t streams, std::uint32_t metrics) {
  Octets body;
  body.U32(0x11223344);
  for (std::uint32_t s = 0; s < streams; ++s) {
    body.U32(0x55667788 + s).U16(1000).U16(metrics);
    for (std::uint32_t i = 0; i < metrics; ++i) body.U16(i % 7 == 0 ? 0 : 0x8000 | (i & 0x1FFF));
    body.PadTo4();
  }
  body.U32(0x12345678);
  return RtcpPacket(kRtpfb, kCcfb, body);
}

std::string TransportCcRuns(std::size_t count) { return TransportCc(Runs(count)); }
std::string TransportCcMixed(std::size_t count) { return TransportCc(Mixed(count)); }

std::string Nack(std::uint32_t entries) {
  Octets body;
  body.U32(0x11223344).U32(0x55667788);
  for (std::uint32_t i = 0; i < entries; ++i) body.U16(1000 + 20 * i).U16(0x0105);
  return RtcpPacket(kRtpfb, 1, body);
}

void AddTransportFeedbackLines() {
  AddDatagram("NACK 3 entries", Nack(3));
  AddDatagram("NACK 50 entries", Nack(50));
  Add({"NACK 50 numbers", "add one by one", AddLostNumbers, "", 0});
  AddTransportCc("runs", Runs(60), true);
  AddTransportCc("mixed", Mixed(60), true);
  AddTransportCc("large deltas", LargeDeltas(60), true);
  AddTransportCc("runs", Runs(1000), false);
  AddTransportCc("mixed", Mixed(1000), false);
  AddTransportCc("large deltas", LargeDeltas(1000), false);
  AddDatagram("CCFB 2 x 30 metrics", Ccfb(2, 30));
  Add({"CCFB stream of 30", "add one by one", AddPacketsOneByOne, "", 0});
}

}  // namespace bench
