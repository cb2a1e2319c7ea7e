#include "bench/Cycles.h"

#include <linux/perf_event.h>
#include <sys/syscall.h>
#include <unistd.h>

namespace bench {
namespace {

int OpenCounter() {
  perf_event_attr wanted = {};
  wanted.size = sizeof(wanted);
  wanted.type = PERF_TYPE_HARDWARE;
  wanted.config = PERF_COUNT_HW_CPU_CYCLES;
  wanted.exclude_kernel = 1;
  wanted.exclude_hv = 1;
  return static_cast<int>(syscall(SYS_perf_event_open, &wanted, 0, -1, -1, 0));
}

}  // namespace

std::uint64_t Cycles() {
  static const int counter = OpenCounter();
  std::uint64_t cycles = 0;
  if (counter < 0 || read(counter, &cycles, sizeof(cycles)) != sizeof(cycles)) return 0;
  return cycles;
}

}  // namespace bench
