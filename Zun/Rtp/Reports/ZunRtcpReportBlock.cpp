#include "Zun/Rtp/Reports/ZunRtcpReportBlock.h"

#include "Zun/Rtp/Reports/ReportBlocks.h"
#include "Zun/Utils/Owned.h"

ZUN_VECTOR_DEFINE(ZunRtcpReportBlock)
ZUN_PLAIN_DEFINE(ZunRtcpReportBlock)

namespace {

constexpr ZunInt32 kMinPacketsLost = -0x800000;
constexpr ZunInt32 kMaxPacketsLost = 0x7FFFFF;

// The sizes of a block's fields in wire order. The fraction lost is read with the first byte of the number of
// packets lost.
constexpr ZunSizeT kFieldSizes[] = {4, 2, 2, 4, 4, 4, 4};

void SkipWholeFields(zun::BodyReader& r) {
  for (const ZunSizeT size : kFieldSizes) {
    if (!r.SkipReadable(size)) return;
  }
}

}  // namespace

ZunBool ZunRtcpReportBlockSetPacketsLost(ZunRtcpReportBlock* p, ZunInt32 lost) {
  if (lost < kMinPacketsLost) lost = kMinPacketsLost;
  if (lost > kMaxPacketsLost) lost = kMaxPacketsLost;
  p->cum_num_packet_lost = static_cast<ZunUint32>(lost) & zun::kPacketsLostMask;
  return 1;
}

ZunBool ZunRtcpWriteReportBlockToBuffer(const ZunVector_ZunRtcpReportBlock* rblocks, ZunString* b) {
  zun::Output out(b);
  zun::BodyWriter w(out, zun::ReportBlocksLength(*rblocks));
  return zun::WriteReportBlocks(w, *rblocks);
}

ZunBool ZunRtcpAssignReportBlockFromBuffer(const ZunString* b, ZunSizeT* ppos, ZunSizeT end, ZunUint8 count,
                                           ZunVector_ZunRtcpReportBlock* rblocks) {
  zun::BodyReader r(zun::BodyIn(b, *ppos, end, {ZUN_RTCPSUBPACKET_TYPE_Unknown, count}));
  const bool read = zun::ReadReportBlocks(r, count, rblocks);
  // A list that could not grow leaves the reader after the block that found no room, a short body in front of the
  // one that is cut off.
  const bool cut_off = !read && r.Position() == *ppos + zun::ReportBlocksLength(*rblocks);
  if (cut_off) SkipWholeFields(r);
  *ppos = r.Position();
  return read;
}
