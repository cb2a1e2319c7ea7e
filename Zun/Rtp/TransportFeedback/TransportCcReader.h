// Reads what transport-wide congestion control feedback tells of each packet: its chunks and its receive deltas.
#ifndef ZUN_RTP_TRANSPORTFEEDBACK_TRANSPORTCCREADER_H
#define ZUN_RTP_TRANSPORTFEEDBACK_TRANSPORTCCREADER_H

#include "Zun/Rtp/Core/BodyReader.h"
#include "Zun/Rtp/TransportFeedback/ZunRtcpRtpfbTransportCcPacketInfo.h"

namespace zun {

// Replaces `infos` by the next `count` packets. A message whose deltas are cut short still tells which packets arrived:
// it is read without any delta, with a true result. False when the chunks are cut short, when a delta lies outside the
// buffer, or when storage is refused; `infos` then holds the packets up to there.
bool ReadTransportCcPackets(BodyReader r, ZunVector_ZunRtcpRtpfbTransportCcPacketInfo* infos, ZunUint32 count);

}  // namespace zun

#endif
