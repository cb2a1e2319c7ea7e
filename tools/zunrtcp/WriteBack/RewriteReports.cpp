#include "tools/zunrtcp/Packet/KindName.h"
#include "tools/zunrtcp/WriteBack/Rewrite.h"

namespace zunrtcp {

namespace {

constexpr unsigned kMaxItemType = 15;

// SDES: each chunk an SSRC, items of (type, length, text) up to a type of 0, and zeros to a multiple of 4. The first
// item of a chunk is read as one even when its type is 0.
void RewriteSdes(Rewrite* rewrite, unsigned chunks) {
  const std::string& in = rewrite->bytes;
  std::string out = in.substr(0, 4);
  std::set<Rule> rules;
  std::size_t at = 4;
  for (unsigned i = 0; i < chunks; ++i) {
    const std::size_t chunk = at;
    const std::size_t outChunk = out.size();
    out += BytesAt(in, at, 4);
    at += 4;
    bool skippedEmpty = false;
    do {
      const unsigned type = U8At(in, at);
      const std::size_t size = 2U + U8At(in, at + 1);
      if (type != 0 && type <= kMaxItemType) {
        out += BytesAt(in, at, size);
      } else if (type == 0 && size == 2) {
        skippedEmpty = true;  // the end of a chunk without items, of which nothing is lost
      } else {
        rules.insert(Rule::SdesItemSkipped);
      }
      at += size;
    } while (U8At(in, at) != 0);
    ++at;
    while ((at - chunk) % 4 != 0) {
      if (U8At(in, at++) != 0) rules.insert(Rule::SdesPadding);
    }
    out += '\0';
    while ((out.size() - outChunk) % 4 != 0) out += '\0';
    if (skippedEmpty && out.size() - outChunk != at - chunk) rules.insert(Rule::SdesItemSkipped);
  }
  if (at != in.size()) throw OctetsEnd();
  rewrite->bytes = out;
  rewrite->PutLength(out.size());
  rewrite->rules.merge(rules);
}

// BYE: sources, then, when there is more, a reason behind its length and zeros to a multiple of 4.
void RewriteBye(Rewrite* rewrite, unsigned sources) {
  const std::size_t at = 4 + 4U * sources;
  if (at == rewrite->bytes.size()) return;
  const unsigned length = U8At(rewrite->bytes, at);
  if (length == 0) {
    rewrite->PutRest(at, "", Rule::ByeEmptyReason);
    rewrite->PutLength(at);
    return;
  }
  std::string reason(BytesAt(rewrite->bytes, at, 1U + length));
  while (reason.size() % 4 != 0) reason += '\0';
  rewrite->PutRest(at, reason, Rule::ByePadding);
}

}  // namespace

void RewriteReports(const SubpacketView& received, Rewrite* rewrite) {
  switch (received.type()) {
    case kSdes:
      if (received.count() > 0) RewriteSdes(rewrite, received.count());
      break;
    case kBye:
      RewriteBye(rewrite, received.count());
      break;
    case kApp:
      rewrite->Put(0, 1, 0x80, Rule::AppSubtype);
      break;
    default:
      break;
  }
}

}  // namespace zunrtcp
