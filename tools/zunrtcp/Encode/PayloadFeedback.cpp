#include "tools/zunrtcp/Encode/Builder.h"

namespace zunrtcp {

using namespace zun::rtcp;

namespace {

constexpr std::uint64_t kMostMacroblocks = 8191;
constexpr std::uint64_t kMostPictureId = 63;
constexpr std::uint64_t kMostPayloadType = 127;
constexpr std::uint64_t kMostTradeOff = 31;

void FillPli(const JsonField& packet, Pli* pli) {
  SetEnds(packet, pli);
  const std::string extension = packet.OptionalBytes("extension");
  MustAccept(pli->profile_specific_ext(octets_of(extension)), packet, ZUN_RTCP_ENCODE_REASON_NOT_WHOLE_WORDS);
}

void FillSli(const JsonField& packet, Sli* sli) {
  SetEnds(packet, sli);
  for (const JsonField& field : packet["items"].Elements()) {
    MustBeTrue(sli->add(static_cast<std::uint16_t>(field["firstLost"].Unsigned(kMostMacroblocks)),
                        static_cast<std::uint16_t>(field["lostCount"].Unsigned(kMostMacroblocks)),
                        static_cast<std::uint8_t>(field["pictureId"].Unsigned(kMostPictureId))));
  }
}

void FillRpsi(const JsonField& packet, Rpsi* rpsi) {
  SetEnds(packet, rpsi);
  MustBeTrue(rpsi->pt(static_cast<std::uint8_t>(packet["payloadType"].Unsigned(kMostPayloadType))));
  rpsi->unbits(packet["unusedBits"].As<std::uint8_t>());
  const std::string bit_string = packet["bitString"].Bytes();
  MustBeTrue(rpsi->rpsi(octets_of(bit_string)));
}

void FillFir(const JsonField& packet, Fir* fir) {
  SetEnds(packet, fir);
  for (const JsonField& field : packet["entries"].Elements()) {
    MustBeTrue(fir->add(field["source"].As<std::uint32_t>(), field["sequence"].As<std::uint8_t>()));
  }
}

// Of a TSTR or TSTA.
template <class Message>
void FillTradeOffs(const JsonField& packet, Message* message) {
  SetEnds(packet, message);
  for (const JsonField& field : packet["entries"].Elements()) {
    MustBeTrue(message->add(field["source"].As<std::uint32_t>(), field["sequence"].As<std::uint8_t>(),
                            static_cast<std::uint8_t>(field["index"].Unsigned(kMostTradeOff))));
  }
}

constexpr Builder kBuilders[] = {
    BuilderOf<Pli, FillPli>("PLI"), BuilderOf<Sli, FillSli>("SLI"),         BuilderOf<Rpsi, FillRpsi>("RPSI"),
    BuilderOf<Fir, FillFir>("FIR"), BuilderOf<Tstr, FillTradeOffs>("TSTR"), BuilderOf<Tsta, FillTradeOffs>("TSTA"),
};

}  // namespace

std::span<const Builder> PayloadFeedbackBuilders() { return kBuilders; }

}  // namespace zunrtcp
