// Different objects may be used by different threads, while another sets the log's handler and levels. ThreadSanitizer
// sees what must not be shared (scripts/sanitize thread).
#include <gtest/gtest.h>

#include <atomic>
#include <string>
#include <thread>
#include <vector>

#include "Zun/Rtp/Dialect/ZunRtcpCodec.h"
#include "tests/support/Samples.h"

namespace {

using namespace test;

constexpr int kThreads = 4;
constexpr int kRounds = 5;

// A sample, whole and cut by a byte, which is refused with a log line, through both doors and back. Whether it came
// out as in the first round.
bool UseEverything(const std::string& wire) {
  std::string first;
  for (int round = 0; round < kRounds; ++round) {
    ZunRtcpPacket packet;
    ZunRtcpPacketConstructDefault(&packet, ZunAllocatorGetSystem());
    const Datagram cut(wire.substr(0, wire.size() - 1));
    (void)ZunRtcpPacketParseNetworkPacket(&packet, cut);
    const bool decoded =
        ZunRtcpPacketDecode(&packet, wire.data(), wire.size(), ZUN_RTCP_DIALECT_HOUSE, nullptr, nullptr) != 0;
    ZunRtcpPacket copy;
    const bool copied = ZunRtcpPacketConstructCopy(&copy, &packet) != nullptr;
    Text out;
    (void)ZunRtcpPacketGetNetworkPacket(&copy, out);
    const std::string written = out.str();
    if (copied) ZunRtcpPacketDestruct(&copy);
    ZunRtcpPacketDestruct(&packet);
    if (round == 0) first = written;
    if (!decoded || !copied || written != first) return false;
  }
  return true;
}

std::atomic<int> lines = {0};

void CountLine(ZunVoidPtr, ZunLogLevel, ZunLogCategory, const char*, ZunInt, const char*, const char*) { ++lines; }

TEST(ThreadsTest, EachUsesItsOwnPacketsWhileAnotherSetsTheLog) {
  std::atomic<bool> stop = {false};
  std::atomic<int> wrong = {0};
  std::thread setter([&stop] {
    while (!stop) {
      ZunLogSetHandler(CountLine, nullptr);
      ZunLogSetMaxLevel(ZunLogRtcp_, ZUN_LOG_FATAL);
      ZunLogSetMaxLevel(ZunLogRtcp_, ZUN_LOG_DEBUG);
      ZunLogSetMaxLevel(ZunLogRtcpFeedback_, ZUN_LOG_DEBUG);
      std::this_thread::yield();
      ZunLogSetHandler(nullptr, nullptr);
    }
  });
  const std::vector<Sample>& samples = Samples();  // built before the threads begin
  std::vector<std::thread> users;
  for (int t = 0; t < kThreads; ++t) {
    users.emplace_back([&] {
      do {
        for (const Sample& sample : samples) wrong += UseEverything(sample.wire) ? 0 : 1;
      } while (lines == 0);
    });
  }
  for (std::thread& user : users) user.join();
  stop = true;
  setter.join();
  ZunLogSetHandler(nullptr, nullptr);
  EXPECT_EQ(wrong, 0);
  EXPECT_GT(lines, 0) << "nothing was logged meanwhile";
}

}  // namespace
