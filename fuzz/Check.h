// What a target does when the library breaks a promise: it ends the program, as a sanitizer does.
#ifndef FUZZ_CHECK_H
#define FUZZ_CHECK_H

#include <cstdio>
#include <cstdlib>

namespace fuzz {

inline void Check(bool holds, const char* promise, const char* file = __builtin_FILE(), int line = __builtin_LINE()) {
  if (holds) return;
  (void)std::fprintf(stderr, "BROKEN PROMISE: %s (%s:%d)\n", promise, file, line);
  std::abort();
}

}  // namespace fuzz

#endif
