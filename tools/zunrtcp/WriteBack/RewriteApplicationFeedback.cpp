#include "tools/zunrtcp/Packet/KindName.h"
#include "tools/zunrtcp/WriteBack/Rewrite.h"

namespace zunrtcp {

namespace {

constexpr std::size_t kBodyOffset = 16;  // behind the header, two SSRCs and the identifier

// REMB: a count, an exponent of 6 bits and a mantissa of 18. The exponent is as small as the mantissa allows.
void RewriteRemb(Rewrite* rewrite) {
  const std::uint64_t bits = NumberAt(rewrite->bytes, 17, 3);
  std::uint64_t exponent = bits >> 18;
  std::uint64_t mantissa = bits & 0x3ffff;
  if (mantissa == 0) exponent = 0;
  while (exponent > 0 && mantissa < 1U << 17) {
    mantissa <<= 1;
    --exponent;
  }
  rewrite->Put(17, 3, exponent << 18 | mantissa, Rule::RembMantissa);
}

// Messages of a fixed size: what is behind it is not kept.
void RewriteFixedSize(Rewrite* rewrite, std::size_t size) {
  if (rewrite->bytes.size() < size) throw OctetsEnd();
  rewrite->PutRest(size, "", Rule::BytesBehindFields);
  rewrite->PutLength(size);
}

// SHOW: a sequence number, then parameters of a descriptor (5 bits of type, 3 bits of size minus 1) and a value; a
// descriptor of 0 begins the padding.
void RewriteShow(Rewrite* rewrite) {
  const std::string& in = rewrite->bytes;
  std::string out = in.substr(0, kBodyOffset + 1);
  std::size_t at = kBodyOffset + 1;
  while (at < in.size() && U8At(in, at) != 0) {
    const unsigned descriptor = U8At(in, at);
    const std::size_t size = (descriptor & 7U) + 1;
    const std::uint64_t value = NumberAt(in, at + 1, size);
    std::size_t needed = 1;
    while (needed < 8 && value >> (8 * needed) != 0) ++needed;
    if (needed != size) rewrite->rules.insert(Rule::ShowWidth);
    AppendNumber(&out, (descriptor & 0xf8U) | (needed - 1), 1);
    AppendNumber(&out, value, needed);
    at += 1 + size;
  }
  const std::size_t length = (out.size() + 3) / 4 * 4;
  const std::size_t padding = in.size() - at;
  while ((rewrite->base + out.size()) % 4 != 0) out += '\0';
  if (padding >= 4) rewrite->rules.insert(Rule::ShowPadding);
  rewrite->bytes = out;
  rewrite->PutLength(length);
}

// LIR: entries are read as SSRC, sequence number, payload type, 2 bytes of length and padded data, and written
// without the length.
void RewriteLir(Rewrite* rewrite) {
  const std::string& in = rewrite->bytes;
  std::string out = in.substr(0, kBodyOffset);
  for (std::size_t at = kBodyOffset; at < in.size();) {
    const std::size_t length = U16At(in, at + 6);
    const std::size_t padding = (4 - length % 4) % 4;
    out += BytesAt(in, at, 6);
    out += BytesAt(in, at + 8, length);
    out.append(padding, '\0');
    at += 8 + length + padding;
  }
  rewrite->bytes = out;
  rewrite->PutLength(24);
  rewrite->rules.insert(Rule::LirLayout);
}

}  // namespace

void RewriteApplicationFeedback(const SubpacketView& received, Rewrite* rewrite) {
  if (IsRemb(received)) RewriteRemb(rewrite);
  if (IsHouseMessage(received, kAbafb)) RewriteFixedSize(rewrite, 44);
  if (IsHouseMessage(received, kAlbr)) RewriteFixedSize(rewrite, 20);
  if (IsHouseMessage(received, kShow)) RewriteShow(rewrite);
  if (IsHouseMessage(received, kShowAck)) {
    rewrite->Put(21, 3, 0, Rule::ReservedBits);
    RewriteFixedSize(rewrite, 24);
  }
  if (IsHouseMessage(received, kLir)) RewriteLir(rewrite);
}

}  // namespace zunrtcp
