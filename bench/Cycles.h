// Cycles of the processor, as far as it lets programs count them: many virtual machines do not.
#ifndef BENCH_CYCLES_H
#define BENCH_CYCLES_H

#include <cstdint>

namespace bench {

// Those that this process has used since it first asked; always 0 where nobody counts them.
std::uint64_t Cycles();

}  // namespace bench

#endif
