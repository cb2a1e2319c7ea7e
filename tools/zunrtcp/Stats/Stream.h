// One stream of media between two endpoints, as the RTCP about it tells.
#ifndef TOOLS_ZUNRTCP_STATS_STREAM_H
#define TOOLS_ZUNRTCP_STATS_STREAM_H

#include <array>
#include <cstddef>
#include <cstdint>
#include <map>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "tools/zunrtcp/Capture/UdpDatagram.h"
#include "tools/zunrtcp/Stats/ArrivalFeedback.h"
#include "tools/zunrtcp/Stats/ClockRate.h"
#include "tools/zunrtcp/Stats/IntervalLoss.h"
#include "tools/zunrtcp/Stats/Metric.h"
#include "tools/zunrtcp/Stats/RoundTrip.h"
#include "tools/zunrtcp/Stats/SequenceStates.h"
#include "tools/zunrtcp/Stats/Series.h"
#include "tools/zunrtcp/Stats/Trend.h"

namespace zunrtcp {

// The way of a datagram.
struct Path {
  Endpoint from;
  Endpoint to;

  Path Reversed() const { return {to, from}; }
  // "127.0.0.1:5005 > 127.0.0.1:5007".
  std::string Name() const { return from.Name() + " > " + to.Name(); }
  bool operator==(const Path&) const = default;
};

enum class EventKind { Pli, Fir, Bye };
inline constexpr std::array<std::string_view, 3> kEventNames{"PLI", "FIR", "BYE"};

struct Event {
  double seconds = 0;
  EventKind kind = EventKind::Pli;
  std::uint32_t sender = 0;
};

// What its sender reports say.
struct SenderTotals {
  std::size_t reports = 0;
  std::uint64_t packets = 0;  // between the first report and the last
  std::uint64_t octets = 0;
};

struct ReporterTotals {
  std::size_t blocks = 0;
  std::int32_t lost = 0;  // as the last block says
  std::uint32_t highest_sequence = 0;
};

struct NackTotals {
  std::size_t messages = 0;
  std::size_t numbers = 0;   // different ones
  std::size_t repeated = 0;  // asked for again
};

struct Stream {
  static constexpr std::size_t kMostEvents = 2048;  // kept; all are counted
  static constexpr std::size_t kMostReporters = 16;

  Stream(std::optional<std::uint32_t> source, Path way) : ssrc(source), path(std::move(way)) {}

  std::optional<std::uint32_t> ssrc;  // none: all that goes this way, which transport-wide feedback tells of
  Path path;                          // of its media's sender, or the reverse of what its receiver sends
  bool sent = false;                  // the sender itself was seen
  std::string cname;

  SenderTotals sender;
  ReporterTotals reporter;
  NackTotals nack;
  ArrivalFeedback feedback;
  UnwrappedCounter feedback_clock{32};  // of the receiver, in units of its kind of feedback
  std::array<Series, kMetrics.size()> series;
  std::array<std::size_t, kEventNames.size()> event_counts{};
  std::vector<Event> events;

  // Of the last sender report.
  std::uint32_t last_packets = 0;
  std::uint32_t last_octets = 0;
  double last_report = 0;

  ClockRate clock;
  SentReports sent_reports;
  std::map<std::uint32_t, IntervalLoss> reporters;  // by their SSRC
  std::unique_ptr<SequenceStates> nacked;           // when there is a NACK

  Series& operator[](Metric metric) { return series[static_cast<std::size_t>(metric)]; }
  const Series& operator[](Metric metric) const { return series[static_cast<std::size_t>(metric)]; }

  void AddEvent(EventKind kind, std::uint32_t from, double seconds);
  std::size_t Count(EventKind kind) const { return event_counts[static_cast<std::size_t>(kind)]; }

  // "0x00001234", or "transport-wide".
  std::string Name() const;
  // "ms" where the clock rate is known, "ticks" of the RTP timestamp otherwise.
  std::string_view UnitOf(const MetricRow& row) const;
  // Of the estimated bit rate, or of the packets' rate where no packet size is known.
  std::optional<Trend> RateTrend() const;
};

}  // namespace zunrtcp

#endif
