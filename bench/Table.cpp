#include "bench/Table.h"

#include <algorithm>
#include <cstdio>
#include <ctime>
#include <fstream>
#include <thread>

namespace bench {
namespace {

double Median(std::vector<double> values) {
  if (values.empty()) return 0;
  std::sort(values.begin(), values.end());
  return values[values.size() / 2];
}

double DatagramsOf(const Line& line) { return line.datagrams > 0 ? line.datagrams : 1; }
double Nanoseconds(const Line& line, const Result& result) { return Median(result.nanoseconds) / DatagramsOf(line); }

std::string Processor() {
  std::ifstream file("/proc/cpuinfo");
  for (std::string line; std::getline(file, line);) {
    const std::size_t colon = line.find(": ");
    if (line.rfind("model name", 0) == 0 && colon != std::string::npos) return line.substr(colon + 2);
  }
  return "unknown processor";
}

// Says whether a goal is met; returns how many are missed: 0 or 1.
int PrintGoal(double goal, bool met) {
  std::printf(" (goal %g: %s)", goal, met ? "met" : "MISSED");
  return met ? 0 : 1;
}

// How a line compares with its yardstick, which was run too.
int PrintRatio(const Line& line, double ns, double yardstick_ns) {
  if (line.throughput_goal > 0) {
    const double ratio = yardstick_ns / ns;
    std::printf("   %5.2f x the throughput of %s", ratio, line.yardstick.c_str());
    return PrintGoal(line.throughput_goal, ratio >= line.throughput_goal);
  }
  const double ratio = ns / yardstick_ns;
  std::printf("   %5.2f x %s", ratio, line.yardstick.c_str());
  return line.goal > 0 ? PrintGoal(line.goal, ratio <= line.goal) : 0;
}

void PrintColumn(double value, bool is_known) {
  if (is_known) {
    std::printf(" %8.2f", value);
  } else {
    std::printf(" %8s", "-");
  }
}

void PrintCyclesPerByte(const Line& line, const Result& result) {
  const double cycles = Median(result.cycles) / DatagramsOf(line);
  PrintColumn(cycles / static_cast<double>(line.bytes), cycles > 0 && line.bytes > 0);
}

}  // namespace

std::string NameOf(const Line& line) { return line.subject + "/" + line.operation; }

void PrintMachine() {
  const std::time_t now = std::time(nullptr);
  char date[32] = "";
  (void)std::strftime(date, sizeof(date), "%Y-%m-%d %H:%M UTC", std::gmtime(&now));
  std::printf("library, yardsticks and benchmarks: %s\n", BENCH_COMPILER);
  std::printf("%s, %u cores; %s\n", Processor().c_str(), std::thread::hardware_concurrency(), date);
}

int PrintTable(const std::vector<Line>& lines, const Results& results) {
  std::map<std::string, const Line*> by_name;
  for (const Line& line : lines) by_name[NameOf(line)] = &line;

  int missed = 0;
  std::printf("\n%-38s %-24s %10s %8s %8s   %s\n", "subject", "operation", "ns", "cycles/B", "allocs",
              "ratio to its yardstick in this run");
  const Line* last = nullptr;
  for (const Line& line : lines) {
    const auto found = results.find(NameOf(line));
    if (found == results.end()) continue;
    // One operation on many subjects stays together, as do the operations on one.
    if (last != nullptr && line.subject != last->subject && line.operation != last->operation) std::printf("\n");
    last = &line;
    const double ns = Nanoseconds(line, found->second);
    const double allocations = found->second.allocations / DatagramsOf(line);
    std::printf("%-38s %-24s %10.1f", line.subject.c_str(), line.operation.c_str(), ns);
    PrintCyclesPerByte(line, found->second);
    PrintColumn(allocations, line.counts_allocations);
    const auto yardstick = results.find(line.yardstick);
    if (yardstick != results.end()) {
      missed += PrintRatio(line, ns, Nanoseconds(*by_name[line.yardstick], yardstick->second));
    }
    if (!line.allocates && allocations > 0) {
      std::printf("   allocates (MISSED)");
      ++missed;
    }
    if (line.datagrams > 0) std::printf("   %.2f million datagrams/s", 1000 / ns);
    std::printf("\n");
  }
  return missed;
}

void PrintCsv(const std::vector<Line>& lines, const Results& results) {
  std::printf("subject,operation,entries,nanoseconds,allocations,yardstick,goal,throughput goal\n");
  for (const Line& line : lines) {
    const auto found = results.find(NameOf(line));
    if (found == results.end()) continue;
    std::printf("\"%s\",\"%s\",%zu,%.2f,%.2f,\"%s\",%g,%g\n", line.subject.c_str(), line.operation.c_str(),
                line.entries, Nanoseconds(line, found->second), found->second.allocations / DatagramsOf(line),
                line.yardstick.c_str(), line.goal, line.throughput_goal);
  }
}

}  // namespace bench
