// Gathers what the RTCP of a capture tells of each stream.
#ifndef TOOLS_ZUNRTCP_STATS_STATSCOLLECTOR_H
#define TOOLS_ZUNRTCP_STATS_STATSCOLLECTOR_H

#include <cstddef>
#include <cstdint>
#include <memory>
#include <string_view>
#include <vector>

#include "Zun/Rtp/Cpp/Xr.h"
#include "tools/zunrtcp/Capture/RtcpFinder.h"
#include "tools/zunrtcp/Packet/LibraryPacket.h"
#include "tools/zunrtcp/Packet/SubpacketWalk.h"
#include "tools/zunrtcp/Stats/StreamTable.h"

namespace zunrtcp {

// When and where something was said.
struct Moment {
  double seconds = 0;  // since the capture began
  Path path;
};

class StatsCollector {
 public:
  explicit StatsCollector(Dialect dialect) : dialect_(dialect) {}

  // Decodes the datagram within the library's budget. What is refused of it is counted, the rest is told of.
  void Add(const RtcpDatagram& datagram);
  // Works out what needs the whole capture; call it once, at the end.
  void Finish();

  const std::vector<std::unique_ptr<Stream>>& streams() const { return table_.streams(); }
  bool incomplete() const { return table_.full(); }
  std::size_t datagrams() const { return datagrams_; }
  std::size_t refused() const { return refused_; }            // datagrams of which something was refused
  std::size_t protected_count() const { return protected_; }  // SRTCP, of which only what is not encrypted is told
  // The time of the first datagram, since 1970, and how long after it the last one came.
  std::int64_t begin_seconds() const { return begin_seconds_; }
  std::uint32_t begin_microseconds() const { return begin_microseconds_; }
  double duration() const { return duration_; }

 private:
  double SecondsInto(const RtcpDatagram& datagram);
  // True when nothing of it was refused.
  bool AddPackets(std::string_view payload, const SubpacketWalk& walk, const Moment& moment);
  void Add(ObjectView object, const Moment& moment);

  const Dialect dialect_;
  StreamTable table_;
  std::size_t datagrams_ = 0;
  std::size_t refused_ = 0;
  std::size_t protected_ = 0;
  std::int64_t begin_seconds_ = 0;
  std::uint32_t begin_microseconds_ = 0;
  double duration_ = 0;
};

// What each kind tells, into the streams of the table.
void Observe(zun::rtcp::View<zun::rtcp::Sr> report, const Moment& moment, StreamTable* table);
void Observe(zun::rtcp::View<zun::rtcp::Rr> report, const Moment& moment, StreamTable* table);
void Observe(zun::rtcp::View<zun::rtcp::Sdes> description, const Moment& moment, StreamTable* table);
void Observe(zun::rtcp::View<zun::rtcp::Bye> bye, const Moment& moment, StreamTable* table);
void Observe(zun::rtcp::View<zun::rtcp::Nack> nack, const Moment& moment, StreamTable* table);
void Observe(zun::rtcp::View<zun::rtcp::TransportCc> feedback, const Moment& moment, StreamTable* table);
void Observe(zun::rtcp::View<zun::rtcp::Ccfb> feedback, const Moment& moment, StreamTable* table);
void Observe(zun::rtcp::View<zun::rtcp::Pli> pli, const Moment& moment, StreamTable* table);
void Observe(zun::rtcp::View<zun::rtcp::Fir> fir, const Moment& moment, StreamTable* table);
void Observe(zun::rtcp::View<zun::rtcp::Remb> remb, const Moment& moment, StreamTable* table);
// Nothing when it is none.
void Observe(zun::rtcp::XrReport report, const Moment& moment, StreamTable* table);
// A registered TMMBR, which no object holds; nothing for other bytes.
void ObserveLimit(const SubpacketView& view, const Moment& moment, StreamTable* table);

}  // namespace zunrtcp

#endif
