// What every benchmark is made of: datagrams, the operations on them, and the yardsticks they are held against.
// All of it runs in one program, so that ratios are of one run on one machine.
#ifndef BENCH_BENCH_H
#define BENCH_BENCH_H

#include <benchmark/benchmark.h>

#include <cstddef>
#include <functional>
#include <string>

#include "Zun/Rtp/Cpp/List.h"
#include "Zun/Rtp/ZunRtcpPacket.h"
#include "bench/Cycles.h"

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
  std::string yardstick = {};      // "subject/operation" of another line
  double goal = 0;                 // at most so many times the yardstick
  std::size_t bytes = 0;           // of the datagram, where there is one
  bool allocates = true;           // where not, that it does so is a goal missed
  double datagrams = 0;            // how many one run takes, where it is more than one: the table shows one of them
  double throughput_goal = 0;      // at least so many times the datagrams per second of the yardstick
  bool in_other_threads = false;   // so that the clock on the wall counts, and not what this thread used
  std::size_t entries = 0;         // of its list, for the plot
  bool counts_allocations = true;  // not those of others, who take their memory elsewhere
};
void Add(Line line);

// What is left out of the table, and why; said below it.
void AddNote(const std::string& note);

// Times `operation`, a callable, and counts its allocations, and its cycles where the machine tells.
template <class Operation>
void Measure(benchmark::State& state, Operation operation) {
  const ZunUint64 before = AllocationCount();
  const std::uint64_t cycles_before = Cycles();
  for (auto _ : state) operation();
  state.counters["cycles"] =
      benchmark::Counter(static_cast<double>(Cycles() - cycles_before), benchmark::Counter::kAvgIterations);
  state.counters["allocations"] =
      benchmark::Counter(static_cast<double>(AllocationCount() - before), benchmark::Counter::kAvgIterations);
}

// What a datagram's operations are held against.
struct Goals {
  std::string parse_yardstick = {};
  double parse = 0;
  std::string write_yardstick = {};
  double write = 0;
  double copy = 0;  // of what parsing it fresh takes
};

// Adds the operations that every datagram has, at every door: parsed from a string, decoded from octets, in C++;
// copied; written to a string, encoded into octets; memcpy of its bytes. With `partial`, also the partial write into
// datagrams of 1200 bytes. `datagram` must parse.
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
// Captures of real peers, replayed.
void AddCaptureLines();
// Two threads beside one.
void AddThreadsLines();
// Lists of 1 to 10,000 entries: not for the table, but for the plot.
void AddEntriesLines();

}  // namespace bench

#endif
