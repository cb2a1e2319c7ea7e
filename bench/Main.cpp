// Runs every line and prints one table: time, allocations per operation, and the ratio to the line's yardstick in
// the same run. Exits with 1 when a goal is missed and --check is given.
#include <benchmark/benchmark.h>

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <map>
#include <string>
#include <vector>

#include "bench/Bench.h"

namespace {

ZunUint64 allocation_count = 0;

ZunVoidPtr CountedAllocate(ZunAllocator*, ZunSizeT size) {
  ++allocation_count;
  return std::malloc(size);
}
void CountedDeallocate(ZunAllocator*, ZunVoidPtr block, ZunSizeT) { std::free(block); }
ZunAllocator counting_allocator = {CountedAllocate, CountedDeallocate, SIZE_MAX, nullptr};

std::vector<bench::Line>& Lines() {
  static std::vector<bench::Line> lines;
  return lines;
}

std::string NameOf(const bench::Line& line) { return line.subject + "/" + line.operation; }

struct Result {
  std::vector<double> nanoseconds;
  double allocations = 0;
};

double Median(std::vector<double> values) {
  std::sort(values.begin(), values.end());
  return values.empty() ? 0 : values[values.size() / 2];
}

// Collects the repetitions of every line; the table is printed when all have run.
class Collector : public benchmark::BenchmarkReporter {
 public:
  bool ReportContext(const Context&) override { return true; }
  void ReportRuns(const std::vector<Run>& runs) override {
    for (const Run& run : runs) {
      if (run.run_type != Run::RT_Iteration) continue;
      Result& result = results[run.run_name.function_name];
      result.nanoseconds.push_back(run.GetAdjustedCPUTime());
      const auto counter = run.counters.find("allocations");
      if (counter != run.counters.end()) result.allocations = counter->second;
    }
  }

  std::map<std::string, Result> results;
};

// Prints the table; returns how many goals were missed.
int PrintTable(const std::map<std::string, Result>& results) {
  int missed = 0;
  std::printf("%-38s %-16s %11s %8s   %s\n", "subject", "operation", "ns", "allocs",
              "ratio to its yardstick in this run");
  std::string last_subject;
  for (const bench::Line& line : Lines()) {
    const auto found = results.find(NameOf(line));
    if (found == results.end()) continue;
    if (line.subject != last_subject && !last_subject.empty()) std::printf("\n");
    last_subject = line.subject;
    const double ns = Median(found->second.nanoseconds);
    std::printf("%-38s %-16s %11.1f %8.2f", line.subject.c_str(), line.operation.c_str(), ns,
                found->second.allocations);
    const auto yardstick = results.find(line.yardstick);
    if (yardstick != results.end()) {
      const double ratio = ns / Median(yardstick->second.nanoseconds);
      std::printf("   %5.2f x %s", ratio, line.yardstick.c_str());
      if (line.goal > 0) std::printf(" (goal %.1f: %s)", line.goal, ratio <= line.goal ? "met" : "MISSED");
      if (line.goal > 0 && ratio > line.goal) ++missed;
    }
    std::printf("\n");
  }
  return missed;
}

}  // namespace

ZunAllocator* bench::CountingAllocator() { return &counting_allocator; }
ZunUint64 bench::AllocationCount() { return allocation_count; }
void bench::Add(Line line) { Lines().push_back(std::move(line)); }

int main(int argc, char** argv) {
  bool check = false;
  std::vector<char*> arguments;
  for (int i = 0; i < argc; ++i) {
    if (std::strcmp(argv[i], "--check") == 0) {
      check = true;
    } else {
      arguments.push_back(argv[i]);
    }
  }
  int count = static_cast<int>(arguments.size());
  benchmark::Initialize(&count, arguments.data());
  if (benchmark::ReportUnrecognizedArguments(count, arguments.data())) return 2;

  bench::AddByHandLines();
  bench::AddCoreLines();
  bench::AddReportsLines();
  bench::AddTransportFeedbackLines();
  bench::AddPayloadFeedbackLines();
  bench::AddFaceLines();
  for (const bench::Line& line : Lines()) benchmark::RegisterBenchmark(NameOf(line).c_str(), line.run);
  Collector collector;
  benchmark::RunSpecifiedBenchmarks(&collector);
  const int missed = PrintTable(collector.results);
  return check && missed > 0 ? 1 : 0;
}
