// Other RTCP codecs on the same octets, doing the same work: those that were found when this was built.
#ifndef BENCH_OTHERCODECS_OTHERCODEC_H
#define BENCH_OTHERCODECS_OTHERCODEC_H

#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <string>
#include <string_view>

#include "bench/Bench.h"

namespace bench {

// One of the datagrams that are held against code by hand.
struct ComparedDatagram {
  std::string subject;
  std::string datagram;
  std::uint64_t sum;  // of all its fields, as the library reads them
};

// Adds the lines of every codec, and a note of those that are not there.
void AddOtherCodecs(const ComparedDatagram& compared);
void NoteOtherCodecs();

void AddGStreamer(const ComparedDatagram& compared);
void AddLibre(const ComparedDatagram& compared);
void AddOrtp(const ComparedDatagram& compared);

// The first eight octets of a text stand for all.
inline std::uint64_t SumOfText(std::uint32_t ssrc, std::uint32_t type, const void* text, std::size_t size) {
  std::uint64_t first = 0;
  std::memcpy(&first, text, sizeof(first));
  return std::uint64_t{ssrc} + type + __builtin_bswap64(first) + size;
}

// `read` returns the sum of all fields of the datagram, so both sides read the same.
template <class Read>
void AddReading(const ComparedDatagram& compared, const std::string& codec, Read read) {
  Add({.subject = compared.subject,
       .operation = codec + ", read",
       .run =
           [=](benchmark::State& state) {
             Measure(state, [&] {
               if (read() != compared.sum) std::abort();
               benchmark::ClobberMemory();
             });
           },
       .yardstick = compared.subject + "/parse and read",
       .bytes = compared.datagram.size(),
       .counts_allocations = false});
}

// `write` writes the datagram, and hands what it wrote to the function that it is given. No line where that is not the
// datagram: it would be other work.
template <class Write>
void AddWriting(const ComparedDatagram& compared, const std::string& codec, Write write) {
  const std::string right = compared.datagram;
  bool is_right = false;
  write([&](std::string_view written) { is_right = written == right; });
  if (!is_right) return AddNote(codec + " writes " + compared.subject + " in other octets, so there is no line of it.");
  Add({.subject = compared.subject,
       .operation = codec + ", written",
       .run =
           [=](benchmark::State& state) {
             Measure(state, [&] {
               write([&](std::string_view written) {
                 if (written.size() != right.size()) std::abort();
                 benchmark::ClobberMemory();
               });
             });
           },
       .yardstick = compared.subject + "/written",
       .bytes = right.size(),
       .counts_allocations = false});
}

}  // namespace bench

#endif
