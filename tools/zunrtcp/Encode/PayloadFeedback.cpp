#include "tools/zunrtcp/Encode/Builder.h"

namespace zunrtcp {

namespace {

constexpr std::uint64_t kMostMacroblocks = 8191;
constexpr std::uint64_t kMostPictureId = 63;
constexpr std::uint64_t kMostPayloadType = 127;
constexpr std::uint64_t kMostTradeOff = 31;

void FillPli(const JsonField& packet, ZunRtcpPsfbPli* pli) {
  SetEnds(packet, pli);
  SetBytes(&pli->profile_specific_ext, packet.OptionalBytes("extension"));
}

void FillSli(const JsonField& packet, ZunRtcpPsfbSli* sli) {
  SetEnds(packet, sli);
  for (const JsonField& field : packet["items"].Elements()) {
    const ZunRtcpPsfbSliItem item{static_cast<ZunUint16>(field["firstLost"].Unsigned(kMostMacroblocks)),
                                  static_cast<ZunUint16>(field["lostCount"].Unsigned(kMostMacroblocks)),
                                  static_cast<ZunUint8>(field["pictureId"].Unsigned(kMostPictureId))};
    MustBeTrue(ZunVector_ZunRtcpPsfbSliItemPushBack(&sli->items, &item));
  }
}

void FillRpsi(const JsonField& packet, ZunRtcpPsfbRpsi* rpsi) {
  SetEnds(packet, rpsi);
  rpsi->pt = static_cast<ZunUint8>(packet["payloadType"].Unsigned(kMostPayloadType));
  rpsi->unbits = packet["unusedBits"].As<std::uint8_t>();
  SetBytes(&rpsi->rpsi, packet["bitString"].Bytes());
}

void FillFir(const JsonField& packet, ZunRtcpPsfbFir* fir) {
  SetEnds(packet, fir);
  for (const JsonField& field : packet["entries"].Elements()) {
    const ZunRtcpPsfbFirEntry entry{field["source"].As<std::uint32_t>(), field["sequence"].As<std::uint8_t>()};
    MustBeTrue(ZunVector_ZunRtcpPsfbFirEntryPushBack(&fir->fci, &entry));
  }
}

template <class Kind, class Entry, ZunBool (*kPushBack)(decltype(Kind::fci)*, const Entry*)>
void FillTradeOffs(const JsonField& packet, Kind* object) {
  SetEnds(packet, object);
  for (const JsonField& field : packet["entries"].Elements()) {
    const Entry entry{field["source"].As<std::uint32_t>(), field["sequence"].As<std::uint8_t>(),
                      static_cast<ZunUint8>(field["index"].Unsigned(kMostTradeOff))};
    MustBeTrue(kPushBack(&object->fci, &entry));
  }
}

constexpr auto kFillTstr = FillTradeOffs<ZunRtcpPsfbTstr, ZunRtcpPsfbTstrEntry, ZunVector_ZunRtcpPsfbTstrEntryPushBack>;
constexpr auto kFillTsta = FillTradeOffs<ZunRtcpPsfbTsta, ZunRtcpPsfbTstaEntry, ZunVector_ZunRtcpPsfbTstaEntryPushBack>;

constexpr Builder kBuilders[] = {
    BuilderOf<ZunRtcpPsfbPli, ZunRtcpPsfbPliConstructDefault, FillPli>("PLI"),
    BuilderOf<ZunRtcpPsfbSli, ZunRtcpPsfbSliConstructDefault, FillSli>("SLI"),
    BuilderOf<ZunRtcpPsfbRpsi, ZunRtcpPsfbRpsiConstructDefault, FillRpsi>("RPSI"),
    BuilderOf<ZunRtcpPsfbFir, ZunRtcpPsfbFirConstructDefault, FillFir>("FIR"),
    BuilderOf<ZunRtcpPsfbTstr, ZunRtcpPsfbTstrConstructDefault, kFillTstr>("TSTR"),
    BuilderOf<ZunRtcpPsfbTsta, ZunRtcpPsfbTstaConstructDefault, kFillTsta>("TSTA"),
};

}  // namespace

std::span<const Builder> PayloadFeedbackBuilders() { return kBuilders; }

}  // namespace zunrtcp
