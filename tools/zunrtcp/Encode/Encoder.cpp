#include "tools/zunrtcp/Encode/Encoder.h"

#include <algorithm>

#include "tools/zunrtcp/Encode/Builder.h"
#include "tools/zunrtcp/Encode/Forms.h"
#include "tools/zunrtcp/Packet/Octets.h"
#include "tools/zunrtcp/Packet/SubpacketWalk.h"

namespace zunrtcp {

namespace {

constexpr std::uint64_t kMostPadding = 255;

const Builder* FindBuilder(const std::string& kind) {
  for (const std::span<const Builder> builders :
       {ReportBuilders(), TransportFeedbackBuilders(), PayloadFeedbackBuilders(), ApplicationFeedbackBuilders()}) {
    const auto found = std::ranges::find(builders, kind, &Builder::kind);
    if (found != builders.end()) return &*found;
  }
  return nullptr;
}

// A packet of the library's with the one object that is built from JSON.
class BuiltPacket {
 public:
  explicit BuiltPacket(const JsonField& packet) {
    ZunRtcpPacketConstructDefault(&packet_, ZunAllocatorGetSystem());
    ZunRtcpSubpacket object;
    bool is_constructed = false;
    try {
      Build(packet, &object, &is_constructed);
      MustBeTrue(ZunRtcpPacketAppendSubpacket(&packet_, &object));
    } catch (...) {
      if (is_constructed) ZunRtcpSubpacketDestruct(&object);
      ZunRtcpPacketDestruct(&packet_);
      throw;
    }
    ZunRtcpSubpacketDestruct(&object);
  }
  ~BuiltPacket() { ZunRtcpPacketDestruct(&packet_); }
  BuiltPacket(const BuiltPacket&) = delete;
  BuiltPacket& operator=(const BuiltPacket&) = delete;

  std::string Encode(const JsonField& packet, ZunRtcpDialect dialect) const {
    std::string octets(ZunRtcpPacketGetEncodedLength(&packet_, dialect), '\0');
    ZunSizeT size = 0;
    if (!octets.empty() && ZunRtcpPacketEncode(&packet_, octets.data(), octets.size(), dialect, &size)) return octets;
    packet.Refuse(ZunRtcpEncodeReasonGetText(ZunRtcpPacketFindUnencodable(&packet_, dialect, nullptr)));
  }

 private:
  static void Build(const JsonField& packet, ZunRtcpSubpacket* object, bool* is_constructed) {
    const std::string kind = packet["kind"].Text();
    if (kind == "XR") {
      BuildXr(packet, object);
      *is_constructed = true;
      return;
    }
    const Builder* found = FindBuilder(kind);
    const Builder& builder = found != nullptr ? *found : BuilderOfBytes(packet);
    builder.construct(object);
    *is_constructed = true;
    builder.fill(packet, object);
  }

  ZunRtcpPacket packet_;
};

// The subtype of an APP, which no object keeps.
void PutSubtype(const JsonField& packet, std::string* octets) {
  const std::optional<JsonField> subtype = packet.Find("count");
  if (!subtype || packet["kind"].Text() != "APP") return;
  octets->front() = static_cast<char>(U8At(*octets, 0) | subtype->Unsigned(kCountMask));
}

// Padding octets, which the library never writes. 1 to 3 of them are already there, as zeros after the last field.
void AddPadding(const JsonField& packet, std::string* octets) {
  const std::optional<JsonField> field = packet.Find("paddingLength");
  const std::size_t padding = field ? field->Unsigned(kMostPadding) : 0;
  if (padding == 0) return;
  const std::string filled(padding % 4, '\0');
  if (!octets->ends_with(filled)) field->Refuse("the packet ends with a field, so only a multiple of 4 can follow");
  octets->append(padding - filled.size(), '\0');
  octets->back() = static_cast<char>(padding);
  octets->front() = static_cast<char>(U8At(*octets, 0) | kPaddingBit);
  const std::size_t words = octets->size() / 4 - 1;
  if (words > 0xFFFF) field->Refuse("makes the packet longer than its header can say");
  std::string length;
  AppendNumber(&length, words, 2);
  octets->replace(2, 2, length);
}

std::string EncodePacket(const JsonField& packet, ZunRtcpDialect dialect) {
  if (packet.Find("refused")) packet.Refuse("was refused when it was decoded, so its fields are not known");
  const std::string kind = packet["kind"].Text();
  const bool is_registered = dialect == ZUN_RTCP_DIALECT_REGISTERED;
  std::string octets;
  if (is_registered && (kind == "TMMBR" || kind == "TMMBN")) {
    octets = EncodeTmmb(packet, kind == "TMMBR" ? ZUN_RTCP_TMMB_TYPE_TMMBR : ZUN_RTCP_TMMB_TYPE_TMMBN);
  } else {
    octets = BuiltPacket(packet).Encode(packet, dialect);
  }
  PutSubtype(packet, &octets);
  AddPadding(packet, &octets);
  return octets;
}

}  // namespace

ZunRtcpDialect DialectOf(const JsonField& datagram, std::optional<ZunRtcpDialect> given) {
  if (given) return *given;
  const std::optional<JsonField> field = datagram.Find("dialect");
  if (!field || field->Text() == "registered") return ZUN_RTCP_DIALECT_REGISTERED;
  if (field->Text() != "house") field->Refuse("is neither registered nor house");
  return ZUN_RTCP_DIALECT_HOUSE;
}

std::string EncodeDatagram(const JsonField& datagram, ZunRtcpDialect dialect) {
  std::string octets;
  if (const std::optional<JsonField> rest = datagram.Find("refused"))
    rest->Refuse("what follows the last packet is not known");
  for (const JsonField& packet : datagram["subpackets"].Elements()) octets += EncodePacket(packet, dialect);
  if (octets.empty()) datagram["subpackets"].Refuse("is empty");
  return octets;
}

}  // namespace zunrtcp
