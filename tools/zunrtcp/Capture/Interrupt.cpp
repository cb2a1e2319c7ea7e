#include "tools/zunrtcp/Capture/Interrupt.h"

#include <poll.h>

#include <csignal>

namespace zunrtcp {

namespace {

volatile std::sig_atomic_t interrupted = 0;

// A signal that comes just before the wait does not end it: so it is looked for again after that long.
constexpr int kWaitMilliseconds = 200;

}  // namespace

void CatchInterrupts() {
  struct sigaction action {};
  action.sa_handler = [](int) { interrupted = 1; };
  action.sa_flags = static_cast<int>(SA_RESETHAND);
  sigaction(SIGINT, &action, nullptr);
  sigaction(SIGTERM, &action, nullptr);
}

bool WaitToRead(int descriptor) {
  while (interrupted == 0) {
    pollfd waited{.fd = descriptor, .events = POLLIN, .revents = 0};
    if (poll(&waited, 1, kWaitMilliseconds) > 0) return true;
  }
  return false;
}

}  // namespace zunrtcp
