#include "tools/zunrtcp/Describe/Describe.h"
#include "tools/zunrtcp/Text.h"

namespace zunrtcp {

namespace {

void DescribeRemb(const ZunRtcpPsfbAfbRemb& remb, Description* description) {
  const double bitrate = ZunRtcpPsfbAfbRembGetBitrate(&remb);
  description->Add("bitrate", bitrate, Printed("%.3f kbit/s", bitrate / 1000));
  std::vector<std::string> names;
  Description::Value sources = Description::Value::array();
  for (const ZunRtpSourceId source : Elements(remb.sources)) {
    sources.push_back(source);
    names.push_back(SourceName(source));
  }
  description->Add("sources", std::move(sources), names.empty() ? "for no source" : "for " + Joined(names, " "));
}

void DescribeAbafb(const ZunRtcpPsfbAfbAbafb& abafb, Description* description) {
  const int difference = ZunRtcpPsfbAfbAbafbGetAverageDelayDifference(&abafb);
  description->AddNumber("timestamp", "timestamp", ZunRtcpPsfbAfbAbafbGetTimestamp(&abafb));
  description->AddNumber("delay", "delay", ZunRtcpPsfbAfbAbafbGetDelay(&abafb), "us");
  description->AddNumber("dataRate", "data rate", ZunRtcpPsfbAfbAbafbGetDataRate(&abafb));
  description->AddNumber("lossRate", "loss rate", ZunRtcpPsfbAfbAbafbGetLossRate(&abafb));
  description->AddNumber("abaDataRate", "ABA data rate", ZunRtcpPsfbAfbAbafbGetAbaDataRate(&abafb));
  description->Add("averageDelayDifference", difference, Printed("average delay difference %d", difference));
  description->AddNumber("averageArrivalDifference", "average arrival difference",
                         ZunRtcpPsfbAfbAbafbGetAverageArrivalDifference(&abafb));
}

std::string ParameterName(ZunRtcpPsfbAfbShowParameterType type) {
  switch (type) {
    case ZUN_RTCPPSFBAFBSHOWPARAMETER_TYPE_Enable:
      return "enable";
    case ZUN_RTCPPSFBAFBSHOWPARAMETER_TYPE_Preference:
      return "preference";
    case ZUN_RTCPPSFBAFBSHOWPARAMETER_TYPE_Width:
      return "width";
    case ZUN_RTCPPSFBAFBSHOWPARAMETER_TYPE_Height:
      return "height";
    case ZUN_RTCPPSFBAFBSHOWPARAMETER_TYPE_FrameRate:
      return "frame rate";
    case ZUN_RTCPPSFBAFBSHOWPARAMETER_TYPE_PixelRate:
      return "pixel rate";
    case ZUN_RTCPPSFBAFBSHOWPARAMETER_TYPE_Bandwidth:
      return "bandwidth";
    case ZUN_RTCPPSFBAFBSHOWPARAMETER_TYPE_MinWidth:
      return "min width";
    case ZUN_RTCPPSFBAFBSHOWPARAMETER_TYPE_MinHeight:
      return "min height";
    case ZUN_RTCPPSFBAFBSHOWPARAMETER_TYPE_MinFrameRate:
      return "min frame rate";
    case ZUN_RTCPPSFBAFBSHOWPARAMETER_TYPE_MinPixelRate:
      return "min pixel rate";
    case ZUN_RTCPPSFBAFBSHOWPARAMETER_TYPE_MinBandwidth:
      return "min bandwidth";
    case ZUN_RTCPPSFBAFBSHOWPARAMETER_TYPE_PacketSize:
      return "packet size";
    default:
      return "parameter of type " + std::to_string(type);
  }
}

void DescribeShow(const ZunRtcpPsfbAfbShow& show, Description* description) {
  description->AddNumber("sequence", "request", ZunRtcpPsfbAfbShowGetSequenceNumber(&show));
  Description::Value values = Description::Value::array();
  for (const ZunRtcpPsfbAfbShowParameter& parameter : Elements(*ZunRtcpPsfbAfbShowGetParameters(&show))) {
    const std::string name = ParameterName(parameter.type);
    values.push_back({{"type", parameter.type}, {"name", name}, {"value", parameter.value}});
    description->AddWords(name + " " + std::to_string(parameter.value));
  }
  description->AddValue("parameters", std::move(values));
}

void DescribeShowAck(const ZunRtcpPsfbAfbShowAck& ack, Description* description) {
  description->AddNumber("sequence", "request", ZunRtcpPsfbAfbShowAckGetSequenceNumber(&ack));
  description->AddSource("showSender", "of", ZunRtcpPsfbAfbShowAckGetShowSender(&ack));
}

void DescribeLir(const ZunRtcpPsfbAfbLir& lir, Description* description) {
  description->AddList("entries");
  for (const ZunRtcpPsfbAfbLirEntry& entry : Elements(lir.fci)) {
    Description& described = description->AddItem("entries");
    described.AddSource("source", "source", entry.ssrc);
    described.AddNumber("sequence", "sequence", entry.seqno);
    described.AddNumber("payloadType", "payload type", entry.payloadType);
    described.AddBytes("layerData", "layer data", BytesOf(entry.layerData));
  }
}

}  // namespace

void DescribeApplicationFeedback(const ZunRtcpPsfbAfb& afb, Description* description) {
  switch (ZunRtcpPsfbAfbGetType(&afb)) {
    case ZUN_RTCPPSFBAFB_TYPE_REMB:
      return DescribeRemb(*ZunRtcpPsfbAfbGetRemb(&afb), description);
    case ZUN_RTCPPSFBAFB_TYPE_ABAFB:
      return DescribeAbafb(*ZunRtcpPsfbAfbGetAbafb(&afb), description);
    case ZUN_RTCPPSFBAFB_TYPE_ALBR:
      return description->AddNumber("availableBitRate", "available link bit rate", afb.albr.available_bit_rate);
    case ZUN_RTCPPSFBAFB_TYPE_SHOW:
      return DescribeShow(*ZunRtcpPsfbAfbGetShow(&afb), description);
    case ZUN_RTCPPSFBAFB_TYPE_SHOWACK:
      return DescribeShowAck(*ZunRtcpPsfbAfbGetShowAck(&afb), description);
    case ZUN_RTCPPSFBAFB_TYPE_LIR:
      return DescribeLir(*ZunRtcpPsfbAfbGetLir(&afb), description);
    default:
      return description->AddBytes("data", "data", BytesOf(*ZunRtcpPsfbAfbUnknownGetData(&afb.unk)));
  }
}

}  // namespace zunrtcp
