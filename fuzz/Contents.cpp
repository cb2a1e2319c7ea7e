// What the objects hold, as text.
#include <cstring>

#include "fuzz/Packets.h"

namespace fuzz {
namespace {

class Contents {
 public:
  std::string text;

  template <class... Numbers>
  void Put(Numbers... numbers) {
    ((text += std::to_string(numbers) + ' '), ...);
  }
  void Put(const ZunString& s) {
    Put(s.size);
    text.append(ZunStringCStr(&s), s.size);
    Check(ZunStringCStr(&s)[s.size] == '\0', "a zero follows the last byte of a string");
  }
  template <class V, class PutElement>
  void PutList(const V& v, PutElement put) {
    Put(v.end - v.begin);
    for (const auto* e = v.begin; e != v.end; ++e) put(*e);
  }
};

void PutBlocks(Contents& c, const ZunVector_ZunRtcpReportBlock& blocks) {
  c.PutList(blocks, [&](const ZunRtcpReportBlock& b) {
    c.Put(b.ssrc, b.fraction_lost, b.cum_num_packet_lost, b.highest_seq_num_rcvd, b.inter_arrival_jitter, b.last_sr,
          b.delay_last_sr);
  });
}

void Put(Contents& c, const ZunRtcpSr& p) {
  c.Put(p.sender_source, p.ntp_timestamp, p.rtp_timestamp, p.sender_packet_cnt, p.sender_octet_cnt);
  PutBlocks(c, p.report_blocks);
  c.Put(p.profile_specific_ext);
}

void Put(Contents& c, const ZunRtcpRr& p) {
  c.Put(p.sender_source);
  PutBlocks(c, p.report_blocks);
  c.Put(p.profile_specific_ext);
}

void Put(Contents& c, const ZunRtcpSdes& p) {
  c.PutList(p.chunks, [&](const ZunRtcpSdesChunk& chunk) {
    c.Put(chunk.ssrc);
    c.PutList(chunk.items, [&](const ZunRtcpSdesItem& item) {
      c.Put(item.type);
      c.Put(item.text);
    });
  });
}

void PutSources(Contents& c, const ZunVector_ZunRtpSourceId& sources) {
  c.PutList(sources, [&](ZunRtpSourceId source) { c.Put(source); });
}

void Put(Contents& c, const ZunRtcpBye& p) {
  PutSources(c, p.sources);
  c.Put(p.reason);
}

void Put(Contents& c, const ZunRtcpApp& p) {
  c.Put(p.source);
  c.Put(p.name);
  c.Put(p.data);
}

void Put(Contents& c, const ZunRtcpUnknown& p) {
  c.Put(p.subtype);
  c.Put(p.data);
}

void Put(Contents& c, const ZunRtcpRtpfbNack& p) {
  c.Put(p.source);
  c.PutList(p.seqMaps, [&](const ZunRtcpRtpfbNackSeqMap& m) { c.Put(m.seqNumber, m.map); });
}

void Put(Contents& c, const ZunRtcpRtpfbTmmbr& p) {
  c.Put(p.source);
  c.PutList(p.fci, [&](const ZunRtcpRtpfbTmmbrEntry& e) { c.Put(e.ssrc, e.max_bitrate); });
}

void Put(Contents& c, const ZunRtcpRtpfbTmmbn& p) { c.Put(p.source, p.max_bitrate); }

void Put(Contents& c, const ZunRtcpRtpfbCcfb& p) {
  c.Put(p.sendTimestamp);
  c.PutList(p.streams, [&](const ZunRtcpRtpfbCcfbStream& s) {
    c.Put(s.ssrc, s.beginSeq);
    c.PutList(s.packetMetrics,
              [&](const ZunRtcpRtpfbCcfbPacketMetric& m) { c.Put(m.received, m.ecn, m.arrivalTimeOffset); });
  });
}

void Put(Contents& c, const ZunRtcpRtpfbTransportCc& p) {
  c.Put(p.source, p.baseSeq, p.refTime, p.packetCount, p.latestTime);
  c.PutList(p.packetInfo, [&](const ZunRtcpRtpfbTransportCcPacketInfo& i) { c.Put(i.received, i.haveDelta, i.delta); });
}

// Of a delay that is calculated when it is asked for only the fact is told: it goes on with the clock.
template <class Kind>
void PutDelay(Contents& c, const Kind& p, ZunUint32 delay) {
  c.Put(p.calculate_delay);
  if (!p.calculate_delay) c.Put(delay);
}

void Put(Contents& c, const ZunRtcpRtpfbAbafb& p) {
  c.Put(p.source, p.timestamp, p.data_rate, p.loss_rate, p.aba_data_rate);
  PutDelay(c, p, ZunRtcpRtpfbAbafbGetDelay(&p));
}

void Put(Contents& c, const ZunRtcpRtpfbUnknown& p) {
  c.Put(p.source);
  c.Put(p.data);
}

void Put(Contents& c, const ZunRtcpRtpfb& p) {
  c.Put(p.unk.fmt, p.unk.sender);
  switch (p.unk.fmt) {
#define PUT_KIND(value, Kind, member, Getter) \
  case value:                                 \
    return Put(c, *Getter(&p));
    ZUN_RTCPRTPFB_KINDS(PUT_KIND)
    default:
      return Put(c, p.unk);
  }
}

void Put(Contents& c, const ZunRtcpPsfbPli& p) {
  c.Put(p.source);
  c.Put(p.profile_specific_ext);
}

void Put(Contents& c, const ZunRtcpPsfbSli& p) {
  c.Put(p.source);
  c.PutList(p.items, [&](const ZunRtcpPsfbSliItem& i) { c.Put(i.lost_mblock, i.num_lost_mblocks, i.picture_id); });
}

void Put(Contents& c, const ZunRtcpPsfbRpsi& p) {
  c.Put(p.source, p.unbits, p.pt);
  c.Put(p.rpsi);
}

void Put(Contents& c, const ZunRtcpPsfbFir& p) {
  c.Put(p.source);
  c.PutList(p.fci, [&](const ZunRtcpPsfbFirEntry& e) { c.Put(e.ssrc, e.seqno); });
}

template <class Kind>
void PutTradeOffs(Contents& c, const Kind& p) {
  c.Put(p.source);
  c.PutList(p.fci, [&](const auto& e) { c.Put(e.ssrc, e.seqno, e.index); });
}
void Put(Contents& c, const ZunRtcpPsfbTstr& p) { PutTradeOffs(c, p); }
void Put(Contents& c, const ZunRtcpPsfbTsta& p) { PutTradeOffs(c, p); }

void Put(Contents& c, const ZunRtcpPsfbUnknown& p) {
  c.Put(p.source);
  c.Put(p.data);
}

void Put(Contents& c, const ZunRtcpPsfbAfbAbafb& p) {
  c.Put(p.timestamp, p.data_rate, p.loss_rate, p.aba_data_rate, p.average_delay_difference,
        p.average_arrival_difference);
  PutDelay(c, p, ZunRtcpPsfbAfbAbafbGetDelay(&p));
}

void Put(Contents& c, const ZunRtcpPsfbAfbAlbr& p) { c.Put(p.available_bit_rate); }

void Put(Contents& c, const ZunRtcpPsfbAfbShow& p) {
  c.Put(p.seqno);
  c.PutList(p.parameters, [&](const ZunRtcpPsfbAfbShowParameter& e) { c.Put(e.type, e.value); });
}

void Put(Contents& c, const ZunRtcpPsfbAfbShowAck& p) { c.Put(p.seqno, p.showSender); }

void Put(Contents& c, const ZunRtcpPsfbAfbLir& p) {
  c.PutList(p.fci, [&](const ZunRtcpPsfbAfbLirEntry& e) {
    c.Put(e.ssrc, e.seqno, e.payloadType);
    c.Put(e.layerData);
  });
}

void Put(Contents& c, const ZunRtcpPsfbAfbRemb& p) {
  ZunUint32 bits = 0;
  static_assert(sizeof(bits) == sizeof(p.bitrate));
  std::memcpy(&bits, &p.bitrate, sizeof(bits));
  c.Put(bits);
  PutSources(c, p.sources);
}

void Put(Contents& c, const ZunRtcpPsfbAfbUnknown& p) { c.Put(p.data); }

void Put(Contents& c, const ZunRtcpPsfbAfb& p) {
  c.Put(p.unk.afbType, p.unk.source);
  switch (p.unk.afbType) {
    ZUN_RTCPPSFBAFB_KINDS(PUT_KIND)
    default:
      return Put(c, p.unk);
  }
}

void Put(Contents& c, const ZunRtcpPsfb& p) {
  c.Put(p.unk.fmt, p.unk.sender);
  switch (p.unk.fmt) {
    ZUN_RTCPPSFB_KINDS(PUT_KIND)
    default:
      return Put(c, p.unk);
  }
}

void Put(Contents& c, const ZunRtcpSubpacket& p) {
  c.Put(p.unk.type);
  switch (p.unk.type) {
    ZUN_RTCPSUBPACKET_KINDS(PUT_KIND)
    default:
      return Put(c, p.unk);
  }
}

}  // namespace

std::string ContentsOf(const ZunRtcpSubpacket& sp) {
  Contents c;
  Put(c, sp);
  return c.text;
}

std::string ContentsOf(const ZunRtcpPacket* p, ZunSizeT count) {
  std::string text;
  for (ZunSizeT i = 0; i < count; ++i) text += ContentsOf(*ZunRtcpPacketGetSubpacket(p, i)) + '\n';
  return text;
}

std::string ContentsOf(const ZunRtcpPacket* p) { return ContentsOf(p, ZunRtcpPacketGetSubpacketCount(p)); }

}  // namespace fuzz
