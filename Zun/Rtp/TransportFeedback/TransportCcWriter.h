// Writes what transport-wide congestion control feedback tells of each packet: its chunks and its receive deltas.
#ifndef ZUN_RTP_TRANSPORTFEEDBACK_TRANSPORTCCWRITER_H
#define ZUN_RTP_TRANSPORTFEEDBACK_TRANSPORTCCWRITER_H

#include "Zun/Rtp/Core/BodyWriter.h"
#include "Zun/Rtp/Core/ZunRtcpDialect.h"
#include "Zun/Rtp/TransportFeedback/ZunRtcpRtpfbTransportCcPacketInfo.h"

namespace zun {

// The chunks and deltas of a list of packets, laid out once for its length and for its writing.
class TransportCcLayout {
 public:
  TransportCcLayout(const ZunVector_ZunRtcpRtpfbTransportCcPacketInfo& infos, ZunRtcpDialect dialect);

  // Bytes of all chunks and deltas.
  ZunSizeT Size() const;
  // False when a chunk cannot be appended. A delta that cannot be is left out, and nobody told: the statuses tell what
  // was to follow.
  bool Write(BodyWriter& w) const;

 private:
  using PacketInfo = ZunRtcpRtpfbTransportCcPacketInfo;

  bool WriteChunks(BodyWriter& w) const;
  void WriteDeltas(BodyWriter& w) const;

  // The first chunks are kept, so that few messages need a second pass over the packets to write them.
  static constexpr ZunSizeT kKept = 64;

  bool is_registered_;
  const PacketInfo* begin_;
  const PacketInfo* end_;
  const PacketInfo* after_kept_;  // the packet after those that the kept chunks tell of
  ZunSizeT chunks_ = 0;           // how many
  ZunSizeT deltas_ = 0;           // bytes
  bool is_small_ = true;          // every packet has a delta of one byte
  ZunUint16 kept_[kKept];
};

}  // namespace zun

#endif
