// Runs every line and prints one table: time, cycles per byte, allocations per operation, and the ratio to the line's
// yardstick in the same run. Exits with 1 when a goal is missed and --check is given. With --entries it runs
// lists of many lengths instead; with --csv it prints bare numbers, for scripts.
#include <benchmark/benchmark.h>

#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <string>
#include <vector>

#include "bench/Bench.h"
#include "bench/Table.h"

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
std::vector<std::string>& Notes() {
  static std::vector<std::string> notes;
  return notes;
}

// Collects the repetitions of every line; the table is printed when all have run.
class Collector : public benchmark::BenchmarkReporter {
 public:
  bool ReportContext(const Context&) override { return true; }
  void ReportRuns(const std::vector<Run>& runs) override {
    for (const Run& run : runs) {
      if (run.run_type != Run::RT_Iteration) continue;
      bench::Result& result = results[run.run_name.function_name];
      const bool on_the_wall = run.run_name.time_type == "real_time";
      result.nanoseconds.push_back(on_the_wall ? run.GetAdjustedRealTime() : run.GetAdjustedCPUTime());
      const auto counter = [&](const char* name) {
        const auto found = run.counters.find(name);
        return found == run.counters.end() ? 0.0 : found->second.value;
      };
      result.cycles.push_back(counter("cycles"));
      result.allocations = counter("allocations");
    }
  }

  bench::Results results;
};

void Register(const bench::Line& line) {
  benchmark::internal::Benchmark* const registered =
      benchmark::RegisterBenchmark(bench::NameOf(line).c_str(), line.run);
  if (line.in_other_threads) registered->UseRealTime();
}

}  // namespace

ZunAllocator* bench::CountingAllocator() { return &counting_allocator; }
ZunUint64 bench::AllocationCount() { return allocation_count; }
void bench::Add(Line line) { Lines().push_back(std::move(line)); }
void bench::AddNote(const std::string& note) { Notes().push_back(note); }

namespace {

void AddTable() {
  bench::AddByHandLines();
  bench::AddCoreLines();
  bench::AddReportsLines();
  bench::AddTransportFeedbackLines();
  bench::AddPayloadFeedbackLines();
  bench::AddFaceLines();
  bench::AddCaptureLines();
  bench::AddThreadsLines();
}

// Returns how many goals were missed.
int PrintTable(const bench::Results& results) {
  const int missed = bench::PrintTable(Lines(), results);
  for (const std::string& note : Notes()) std::printf("\n%s\n", note.c_str());
  return missed;
}

// Takes a flag of ours from the arguments; whether it was there.
bool Take(const char* flag, std::vector<char*>* arguments) {
  const auto is_it = [=](const char* argument) { return std::strcmp(argument, flag) == 0; };
  return std::erase_if(*arguments, is_it) > 0;
}

}  // namespace

int main(int argc, char** argv) {
  std::vector<char*> arguments(argv, argv + argc);
  const bool check = Take("--check", &arguments);
  const bool entries = Take("--entries", &arguments);
  const bool csv = Take("--csv", &arguments);
  int count = static_cast<int>(arguments.size());
  benchmark::Initialize(&count, arguments.data());
  if (benchmark::ReportUnrecognizedArguments(count, arguments.data())) return 2;

  entries ? bench::AddEntriesLines() : AddTable();
  for (const bench::Line& line : Lines()) Register(line);
  Collector collector;
  benchmark::RunSpecifiedBenchmarks(&collector);
  bench::PrintMachine();
  if (csv) {
    bench::PrintCsv(Lines(), collector.results);
    return 0;
  }
  const int missed = PrintTable(collector.results);
  return check && missed > 0 ? 1 : 0;
}
