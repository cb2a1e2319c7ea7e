// Two threads on two cores, each with packets of its own: nothing is shared, so they should do twice the work of one.
#include <pthread.h>
#include <sched.h>

#include <cstdlib>
#include <functional>
#include <span>
#include <string>
#include <thread>
#include <vector>

#include "Zun/Rtp/Cpp/Packet.h"
#include "bench/Bench.h"
#include "bench/Octets.h"

namespace bench {
namespace {

using zun::rtcp::Packet;

// So many that starting a thread is nothing beside them.
constexpr int kDatagramsEach = 200000;

std::vector<int> Cores() {
  cpu_set_t allowed;
  CPU_ZERO(&allowed);
  std::vector<int> cores;
  if (sched_getaffinity(0, sizeof(allowed), &allowed) != 0) return cores;
  for (int core = 0; core < CPU_SETSIZE; ++core) {
    if (CPU_ISSET(static_cast<std::size_t>(core), &allowed)) cores.push_back(core);
  }
  return cores;
}

void StayOn(int core) {
  cpu_set_t wanted;
  CPU_ZERO(&wanted);
  CPU_SET(static_cast<std::size_t>(core), &wanted);
  if (pthread_setaffinity_np(pthread_self(), sizeof(wanted), &wanted) != 0) std::abort();
}

// Reads the datagram and writes it again, over and over.
void Work(int core, const std::string& datagram) {
  StayOn(core);
  Packet packet;
  std::vector<std::byte> written(datagram.size());
  for (int i = 0; i < kDatagramsEach; ++i) {
    if (!packet.decode(zun::rtcp::octets_of(datagram)) || !packet.encode(std::span(written))) std::abort();
  }
}

void AddThreads(const std::string& operation, const std::vector<int>& cores, const std::string& yardstick,
                double throughput_goal) {
  const std::string datagram = Rr(1) + Sdes(1) + Nack(3) + Pli();
  Add({.subject = "RR + SDES + NACK 3 + PLI, both ways",
       .operation = operation,
       .run =
           [=](benchmark::State& state) {
             Measure(state, [&] {
               std::vector<std::thread> threads;
               threads.reserve(cores.size());
               for (const int core : cores) threads.emplace_back(Work, core, std::cref(datagram));
               for (std::thread& thread : threads) thread.join();
             });
           },
       .yardstick = yardstick,
       .bytes = datagram.size(),
       .datagrams = static_cast<double>(cores.size()) * kDatagramsEach,
       .throughput_goal = throughput_goal,
       .in_other_threads = true,
       .counts_allocations = false});
}

}  // namespace

void AddThreadsLines() {
  std::vector<int> cores = Cores();
  if (cores.size() < 2) return AddNote("There is one core: nothing is said of two threads.");
  cores.resize(2);
  AddThreads("one thread", {cores[0]}, "", 0);
  AddThreads("two threads", cores, "RR + SDES + NACK 3 + PLI, both ways/one thread", 1.9);
}

}  // namespace bench
