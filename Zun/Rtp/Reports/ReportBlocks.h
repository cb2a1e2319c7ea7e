// The wire form of a list of report blocks, shared by sender and receiver reports.
#ifndef ZUN_RTP_REPORTS_REPORTBLOCKS_H
#define ZUN_RTP_REPORTS_REPORTBLOCKS_H

#include "Zun/Rtp/Core/EntryList.h"
#include "Zun/Rtp/Reports/ZunRtcpReportBlock.h"

ZUN_VECTOR_USE_PLAIN(ZunRtcpReportBlock)

namespace zun {

inline constexpr ZunSizeT kReportBlockSize = 24;
inline constexpr ZunSizeT kMaxReportBlocks = 31;
// The second word of a block: the fraction lost above the cumulative number.
inline constexpr int kFractionLostShift = 24;
inline constexpr ZunUint32 kPacketsLostMask = 0xFFFFFF;

inline ZunSizeT ReportBlocksLength(const ZunVector_ZunRtcpReportBlock& blocks) {
  return kReportBlockSize * VectorOfZunRtcpReportBlock::Size(&blocks);
}

inline void EncodeReportBlock(const ZunRtcpReportBlock& block, ZunUint8* octets) {
  const ZunUint32 fraction = static_cast<ZunUint32>(block.fraction_lost) << kFractionLostShift;
  StoreBigEndian(octets, block.ssrc);
  StoreBigEndian(octets + 4, fraction | (block.cum_num_packet_lost & kPacketsLostMask));
  StoreBigEndian(octets + 8, block.highest_seq_num_rcvd);
  StoreBigEndian(octets + 12, block.inter_arrival_jitter);
  StoreBigEndian(octets + 16, block.last_sr);
  StoreBigEndian(octets + 20, block.delay_last_sr);
}

// The number of packets lost stays a pattern of 24 bits; its getter knows the sign.
inline void DecodeReportBlock(const ZunUint8* octets, ZunRtcpReportBlock* block) {
  const ZunUint32 lost = ZunUint32FromOctets(octets + 4);
  block->ssrc = ZunUint32FromOctets(octets);
  block->fraction_lost = static_cast<ZunUint8>(lost >> kFractionLostShift);
  block->cum_num_packet_lost = lost & kPacketsLostMask;
  block->highest_seq_num_rcvd = ZunUint32FromOctets(octets + 8);
  block->inter_arrival_jitter = ZunUint32FromOctets(octets + 12);
  block->last_sr = ZunUint32FromOctets(octets + 16);
  block->delay_last_sr = ZunUint32FromOctets(octets + 20);
}

// What of a block is too large for its field; 0 when nothing is.
inline ZunUint32 ExcessOf(const ZunRtcpReportBlock& block) { return block.cum_num_packet_lost & ~kPacketsLostMask; }

template <class Writer>
[[gnu::always_inline]] inline bool WriteReportBlocks(Writer& w, const ZunVector_ZunRtcpReportBlock& blocks) {
  return WriteEntries<kReportBlockSize>(w, blocks, EncodeReportBlock);
}
// The same, but false when something is too large for its field.
template <class Writer>
[[gnu::always_inline]] inline bool WriteReportBlocksThatFit(Writer& w, const ZunVector_ZunRtcpReportBlock& blocks) {
  ZunUint32 excess = 0;
  return WriteEntries<kReportBlockSize>(w, blocks,
                                        [&excess](const ZunRtcpReportBlock& block, ZunUint8* octets) {
                                          excess |= ExcessOf(block);
                                          EncodeReportBlock(block, octets);
                                        }) &&
         excess == 0;
}

template <class Reader>
bool ReadReportBlocks(Reader& r, ZunUint8 count, ZunVector_ZunRtcpReportBlock* blocks) {
  return ReadCountedEntries<kReportBlockSize, VectorOfZunRtcpReportBlock>(r, blocks, count, DecodeReportBlock);
}

}  // namespace zun

#endif
