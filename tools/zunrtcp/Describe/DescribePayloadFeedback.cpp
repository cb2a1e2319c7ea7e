#include "tools/zunrtcp/Describe/Describe.h"
#include "tools/zunrtcp/Text.h"

namespace zunrtcp {

namespace {

void DescribeSli(const ZunRtcpPsfbSli& sli, Description* description) {
  description->AddList("items");
  for (const ZunRtcpPsfbSliItem& item : Elements(sli.items)) {
    Description& described = description->AddItem("items");
    described.AddNumber("firstLost", "lost from macroblock", ZunRtcpPsfbSliItemGetFirstLostMblock(&item));
    described.AddNumber("lostCount", "as many as", ZunRtcpPsfbSliItemGetNumLostMblocks(&item));
    described.AddNumber("pictureId", "in picture", ZunRtcpPsfbSliItemGetPictureId(&item));
  }
}

void DescribeRpsi(const ZunRtcpPsfbRpsi& rpsi, Description* description) {
  description->AddNumber("payloadType", "payload type", ZunRtcpPsfbRpsiGetPt(&rpsi));
  description->AddNumber("unusedBits", "unused bits", ZunRtcpPsfbRpsiGetUnusedBits(&rpsi));
  description->AddBytes("bitString", "bit string", BytesOf(rpsi.rpsi));
}

// FIR, and with an index TSTR and TSTA.
void DescribeEntries(const ZunVector_ZunRtcpPsfbFirEntry& entries, Description* description) {
  description->AddList("entries");
  for (const ZunRtcpPsfbFirEntry& entry : Elements(entries)) {
    Description& described = description->AddItem("entries");
    described.AddSource("source", "to", entry.ssrc);
    described.AddNumber("sequence", "command", entry.seqno);
  }
}

template <typename Entries>
void DescribeTradeOffs(const Entries& entries, Description* description) {
  description->AddList("entries");
  for (const auto& entry : Elements(entries)) {
    Description& described = description->AddItem("entries");
    described.AddSource("source", "to", entry.ssrc);
    described.AddNumber("sequence", "request", entry.seqno);
    described.AddNumber("index", "trade-off", entry.index);
  }
}

}  // namespace

void DescribePayloadFeedback(const ZunRtcpPsfb& psfb, Description* description) {
  description->AddSource("sender", "sender", ZunRtcpPsfbGetSender(&psfb));
  description->AddSource("source", "source", ZunRtcpPsfbGetMediaSource(&psfb));
  switch (ZunRtcpPsfbGetFeedbackMessageType(&psfb)) {
    case ZUN_RTCPPSFB_TYPE_PLI:
      return description->AddBytes("extension", "extension", BytesOf(psfb.pli.profile_specific_ext));
    case ZUN_RTCPPSFB_TYPE_SLI:
      return DescribeSli(*ZunRtcpPsfbGetSli(&psfb), description);
    case ZUN_RTCPPSFB_TYPE_RPSI:
      return DescribeRpsi(*ZunRtcpPsfbGetRpsi(&psfb), description);
    case ZUN_RTCPPSFB_TYPE_FIR:
      return DescribeEntries(psfb.fir.fci, description);
    case ZUN_RTCPPSFB_TYPE_TSTR:
      return DescribeTradeOffs(psfb.tstr.fci, description);
    case ZUN_RTCPPSFB_TYPE_TSTA:
      return DescribeTradeOffs(psfb.tsta.fci, description);
    case ZUN_RTCPPSFB_TYPE_AFB:
      return DescribeApplicationFeedback(*ZunRtcpPsfbGetAfb(&psfb), description);
    default:
      return description->AddBytes("data", "data", BytesOf(*ZunRtcpPsfbUnknownGetData(&psfb.unk)));
  }
}

}  // namespace zunrtcp
