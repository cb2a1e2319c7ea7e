// Finds the stream that a packet is about.
#ifndef TOOLS_ZUNRTCP_STATS_STREAMTABLE_H
#define TOOLS_ZUNRTCP_STATS_STREAMTABLE_H

#include <cstddef>
#include <cstdint>
#include <map>
#include <memory>
#include <string>
#include <utility>
#include <vector>

#include "tools/zunrtcp/Stats/Stream.h"

namespace zunrtcp {

// What is known of an SSRC between two hosts, whether it sends media or only reports.
struct Participant {
  std::vector<Stream*> streams;     // that it sends
  std::vector<Stream*> reports_on;  // streams of others
  SentReports reference_times;      // of its XR
};

// Reports often take another pair of ports than the sender reports of the stream that they are about. So a stream is
// looked for by its SSRC: first the one that was sent on the very ports, then any between the two hosts.
class StreamTable {
 public:
  // A capture with more is told of as far as that; memory stays bounded.
  static constexpr std::size_t kMostStreams = 1024;
  static constexpr std::size_t kMostParticipants = 8192;

  // The stream that `ssrc` sends on `path`; null when there are too many streams.
  Stream* Sent(std::uint32_t ssrc, const Path& path);
  // The stream that something coming back on `path` speaks of. An SSRC of 0 stands for the other side's only stream.
  Stream* About(std::uint32_t ssrc, const Path& path);
  // All that is sent against `path`, which transport-wide feedback speaks of.
  Stream* Transport(const Path& path);
  // The participant; null when there are too many.
  Participant* Find(std::uint32_t ssrc, const Path& path);

  // Gives the streams of which only receivers spoke the path on which what these receive is sent, as far as that is
  // known, and brings those of one path together.
  void Settle();

  // In the order of their first packets until then, afterwards by path, those whose sender was
  // seen first.
  const std::vector<std::unique_ptr<Stream>>& streams() const { return streams_; }
  // Whether streams or participants were left out.
  bool full() const { return full_; }

 private:
  using Hosts = std::pair<std::string, std::string>;  // sorted

  static Hosts HostsOf(const Path& path);
  Stream* New(std::uint32_t ssrc, const Path& path, std::vector<Stream*>* streams);
  Stream* TakeUnnamed(const Path& path);
  Stream* Make(std::optional<std::uint32_t> ssrc, const Path& path);
  Stream* OnlyOn(const Path& path) const;
  void Learn(const Path& sent_on, const Path& path);

  std::vector<std::unique_ptr<Stream>> streams_;
  std::map<std::pair<std::uint32_t, Hosts>, Participant> participants_;
  std::vector<Stream*> transports_;
  std::vector<std::pair<Path, Path>> answered_;  // on which path comes back what is sent on which
  bool full_ = false;
};

}  // namespace zunrtcp

#endif
