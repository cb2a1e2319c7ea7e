// Reads what transport-wide congestion control feedback tells of each packet: its chunks and its receive deltas.
#ifndef ZUN_RTP_TRANSPORTFEEDBACK_TRANSPORTCCREADER_H
#define ZUN_RTP_TRANSPORTFEEDBACK_TRANSPORTCCREADER_H

#include "Zun/Rtp/Core/BodyReader.h"
#include "Zun/Rtp/TransportFeedback/ZunRtcpRtpfbTransportCcPacketInfo.h"

namespace zun {

// Replaces `infos` by the next `count` packets. False when the chunks are cut short, when a delta lies outside the
// buffer, or when storage is refused; `infos` then holds the packets up to there. A message whose deltas are cut short
// still tells which packets arrived: in the house's dialect it is read without any delta, with a true result; in the
// registered one it is refused.
bool ReadTransportCcPackets(const BodyReader& r, ZunVector_ZunRtcpRtpfbTransportCcPacketInfo* infos, ZunUint32 count,
                            bool is_registered);

}  // namespace zun

#endif
