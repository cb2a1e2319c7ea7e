// What every benchmark is made of: datagrams, the operations on them, and the yardsticks they are held against.
// All of it runs in one program, so that ratios are of one run on one machine.
#ifndef BENCH_BENCH_H
#define BENCH_BENCH_H

#include <benchmark/benchmark.h>

#include <functional>
#include <string>

#include "Zun/Rtp/Cpp/List.h"
#include "Zun/Rtp/ZunRtcpPacket.h"

namespace bench {

// An allocator on the C library's heap that counts the calls to allocate.
ZunAllocator* CountingAllocator();
ZunUint64 AllocationCount();

class Bytes : public zun::rtcp::String {
 public:
  Bytes() : Owning(CountingAllocator()) {}
  explicit Bytes(const std::string& bytes) : Bytes() { ZunStringAppendCStrLen(get(), bytes.data(), bytes.size()); }
  std::string str() const { return std::string(zun::rtcp::text_of(*get())); }
};

// One line of the table. `run` does the operation once. A yardstick is the name of another line; a goal of 0 is none.
struct Line {
  std::string subject;    // "SR + SDES"
  std::string operation;  // "parse in place"
  std::function<void(benchmark::State&)> run;
  std::string yardstick;  // "subject/operation" of another line
  double goal = 0;        // at most so many times the yardstick
};
void Add(Line line);

// Times `operation`, a callable, and counts its allocations.
template <class Operation>
void Measure(benchmark::State& state, Operation operation) {
  const ZunUint64 before = AllocationCount();
  for (auto _ : state) operation();
  state.counters["allocations"] =
      benchmark::Counter(static_cast<double>(AllocationCount() - before), benchmark::Counter::kAvgIterations);
}

// What a datagram's operations are held against.
struct Goals {
  std::string parse_yardstick;
  double parse = 0;
  std::string write_yardstick;
  double write = 0;
};

// Adds the operations that every datagram has: parse fresh, parse in place, write, length and memcpy of its bytes;
// with `partial`, also the partial write into datagrams of 1200 bytes. `datagram` must parse.
void AddDatagram(const std::string& subject, const std::string& datagram, const Goals& goals = {},
                 bool partial = false);

// The wire form of one compound of subpackets that were built by the caller, who keeps them.
std::string Compound(std::initializer_list<const ZunRtcpSubpacket*> subpackets);

// The lines of each room.
void AddCoreLines();
void AddReportsLines();
void AddTransportFeedbackLines();
void AddPayloadFeedbackLines();
void AddByHandLines();
// The C++ face beside the C calls.
void AddFaceLines();

}  // namespace bench

#endif
