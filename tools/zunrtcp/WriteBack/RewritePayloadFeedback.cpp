#include "tools/zunrtcp/Packet/KindName.h"
#include "tools/zunrtcp/WriteBack/Rewrite.h"

namespace zunrtcp {

namespace {

// RPSI: the number of padding bits, the payload type in 7 bits, then the bit string. The octets that the number
// covers are dropped; its rest, bits of the last octet, is kept.
void RewriteRpsi(Rewrite* rewrite) {
  const std::size_t bits = U8At(rewrite->bytes, 12);
  rewrite->Put(13, 1, U8At(rewrite->bytes, 13) & 0x7fU, Rule::ReservedBits);
  const std::size_t dropped = bits / 8;
  const std::size_t held = rewrite->bytes.size() - 14;
  if (dropped > held) throw OctetsEnd();
  std::string string = rewrite->bytes.substr(14, held - dropped);
  const std::size_t padding = (4 - (string.size() + 2) % 4) % 4;
  const std::size_t written = string.empty() ? bits : 8 * padding + bits % 8;
  string.append(padding, '\0');
  rewrite->Put(12, 1, written, Rule::RpsiPadding);
  rewrite->PutRest(14, string, Rule::RpsiPadding);
  rewrite->PutLength(rewrite->bytes.size());
}

// FIR, TSTR, TSTA: entries of an SSRC, a sequence number, two reserved octets and one that is reserved too or has an
// index in its low 5 bits.
void RewriteEntries(Rewrite* rewrite, unsigned lastOctetMask) {
  for (std::size_t at = 12; at < rewrite->bytes.size(); at += 8) {
    rewrite->Put(at + 5, 2, 0, Rule::ReservedBits);
    rewrite->Put(at + 7, 1, U8At(rewrite->bytes, at + 7) & lastOctetMask, Rule::ReservedBits);
  }
}

}  // namespace

void RewritePayloadFeedback(const SubpacketView& received, Rewrite* rewrite) {
  if (received.type() != kPsfb) return;
  switch (received.count()) {
    case kRpsi:
      RewriteRpsi(rewrite);
      break;
    case kFir:
      RewriteEntries(rewrite, 0);
      break;
    case kTstr:
      rewrite->Put(8, 4, 0, Rule::MediaSource);
      [[fallthrough]];
    case kTsta:
      RewriteEntries(rewrite, 0x1f);
      break;
    default:
      break;
  }
}

}  // namespace zunrtcp
