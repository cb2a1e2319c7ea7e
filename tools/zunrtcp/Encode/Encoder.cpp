#include "tools/zunrtcp/Encode/Encoder.h"

#include <algorithm>

#include "tools/zunrtcp/Encode/Builder.h"
#include "tools/zunrtcp/Encode/Forms.h"
#include "tools/zunrtcp/Packet/LibraryPacket.h"
#include "tools/zunrtcp/Packet/Octets.h"
#include "tools/zunrtcp/Packet/SubpacketWalk.h"

namespace zunrtcp {

using zun::rtcp::Packet;

namespace {

constexpr std::uint64_t kMostPadding = 255;
constexpr std::size_t kMostWords = 0x10000;  // of a packet, its header among them

const Builder* FindBuilder(const std::string& kind) {
  for (const std::span<const Builder> builders :
       {ReportBuilders(), TransportFeedbackBuilders(), PayloadFeedbackBuilders(), ApplicationFeedbackBuilders()}) {
    const auto found = std::ranges::find(builders, kind, &Builder::kind);
    if (found != builders.end()) return &*found;
  }
  return nullptr;
}

// Appends the one object that is built from JSON.
void AppendObject(const JsonField& field, Packet* packet) {
  const std::string kind = field["kind"].Text();
  if (kind == "XR") return AppendXr(field, packet);
  const Builder* found = FindBuilder(kind);
  const Builder& builder = found != nullptr ? *found : BuilderOfBytes(field);
  builder.append(field, packet);
}

std::string EncodeObject(const JsonField& field, Dialect dialect) {
  Packet packet;
  AppendObject(field, &packet);
  std::string octets(packet.encoded_length(dialect), '\0');
  const auto written = packet.encode(std::as_writable_bytes(std::span(octets)), dialect);
  if (!written) field.Refuse(ZunRtcpEncodeReasonGetText(written.error().reason()));
  return octets;
}

// The subtype of an APP, which no object keeps.
void PutSubtype(const JsonField& packet, std::string* octets) {
  const std::optional<JsonField> subtype = packet.Find("count");
  if (!subtype || packet["kind"].Text() != "APP") return;
  octets->front() = static_cast<char>(U8At(*octets, 0) | subtype->Unsigned(kCountMask));
}

// The packet with zeros appended, and its last octet telling that it ends with so much padding.
std::string WithPadding(std::string octets, std::size_t appended, std::size_t padding) {
  octets.append(appended, '\0');
  octets.back() = static_cast<char>(padding);
  octets.front() = static_cast<char>(U8At(octets, 0) | kPaddingBit);
  std::string words;
  AppendNumber(&words, octets.size() / 4 - 1, 2);
  return octets.replace(2, 2, words);
}

// What the registered dialect reads of these bytes, as the library writes it; nothing where it reads nothing.
std::optional<std::string> Meaning(std::string_view octets) {
  return LibraryPacket(octets, Dialect::registered).Write();
}

// Padding octets, which the library never writes. Zeros that complete the last word may be some of them, and a field
// that ends with zeros looks alike: what has padding must still say the same.
void AddPadding(const JsonField& packet, std::string* octets) {
  const std::optional<JsonField> field = packet.Find("paddingLength");
  const std::size_t padding = field ? field->Unsigned(kMostPadding) : 0;
  if (padding == 0) return;
  const std::size_t of_last_word = padding % 4;
  const std::optional<std::string> meaning = Meaning(*octets);
  for (const std::size_t appended : {padding - of_last_word, padding + PaddingAfter(padding)}) {
    if ((octets->size() + appended) / 4 > kMostWords) field->Refuse("makes the packet longer than its header can say");
    std::string padded = WithPadding(*octets, appended, padding);
    if (of_last_word != 0 && (!meaning || Meaning(padded) != meaning)) continue;
    *octets = std::move(padded);
    return;
  }
  field->Refuse("the packet ends with a field, so only a multiple of 4 can follow");
}

std::string EncodePacket(const JsonField& packet, Dialect dialect) {
  if (packet.Find("refused")) packet.Refuse("was refused when it was decoded, so its fields are not known");
  const std::string kind = packet["kind"].Text();
  const bool is_registered = dialect == Dialect::registered;
  std::string octets;
  if (is_registered && (kind == "TMMBR" || kind == "TMMBN")) {
    octets = EncodeTmmb(packet, kind == "TMMBR" ? ZUN_RTCP_TMMB_TYPE_TMMBR : ZUN_RTCP_TMMB_TYPE_TMMBN);
  } else {
    octets = EncodeObject(packet, dialect);
  }
  PutSubtype(packet, &octets);
  AddPadding(packet, &octets);
  return octets;
}

}  // namespace

Dialect DialectOf(const JsonField& datagram, std::optional<Dialect> given) {
  if (given) return *given;
  const std::optional<JsonField> field = datagram.Find("dialect");
  if (!field || field->Text() == "registered") return Dialect::registered;
  if (field->Text() != "house") field->Refuse("is neither registered nor house");
  return Dialect::house;
}

std::string EncodeDatagram(const JsonField& datagram, Dialect dialect) {
  std::string octets;
  if (const std::optional<JsonField> rest = datagram.Find("refused"))
    rest->Refuse("what follows the last packet is not known");
  for (const JsonField& packet : datagram["subpackets"].Elements()) octets += EncodePacket(packet, dialect);
  if (octets.empty()) datagram["subpackets"].Refuse("is empty");
  return octets;
}

}  // namespace zunrtcp
