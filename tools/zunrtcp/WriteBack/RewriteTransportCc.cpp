// Transport-wide feedback: statuses in chunks, then a delta for each packet that arrived. Chunks are laid out anew
// when written, so this reads the statuses and lays them out by itself.
#include <vector>

#include "tools/zunrtcp/WriteBack/Rewrite.h"

namespace zunrtcp {

namespace {

constexpr std::size_t kChunksOffset = 20;
constexpr std::size_t kMaxRun = 8191;

enum Symbol : unsigned { kNotReceived = 0, kSmallDelta = 1, kLargeDelta = 2, kNoDelta = 3 };

struct Status {
  unsigned symbol;
  std::uint16_t delta;
};

// The statuses that the chunks announce; `*at` moves behind the chunks.
std::vector<Status> ReadStatuses(std::string_view bytes, std::size_t* at) {
  const std::size_t count = U16At(bytes, 14);
  std::vector<Status> statuses;
  while (statuses.size() < count) {
    const unsigned chunk = U16At(bytes, *at);
    *at += 2;
    const bool vector = (chunk & 0x8000U) != 0;
    const unsigned bits = (chunk & 0x4000U) != 0 ? 2 : 1;
    const unsigned length = vector ? 14 / bits : chunk & 0x1fffU;
    for (unsigned i = 0; i < length && statuses.size() < count; ++i) {
      const unsigned symbol = vector ? (chunk >> (14 - bits * (i + 1))) & ((1U << bits) - 1) : chunk >> 13 & 3;
      statuses.push_back({symbol, 0});
    }
  }
  return statuses;
}

// Reads the deltas at `at` into the statuses, with the symbols under which they are written; returns where they end.
std::size_t ReadDeltas(std::string_view bytes, std::size_t at, std::vector<Status>* statuses, std::set<Rule>* rules) {
  std::size_t size = 0;
  for (const Status& status : *statuses) size += status.symbol % 3;
  const bool missing = size > bytes.size() - at;
  if (missing) rules->insert(Rule::TransportCcDeltasMissing);
  for (Status& status : *statuses) {
    if (status.symbol != kSmallDelta && status.symbol != kLargeDelta) continue;
    if (missing) {
      status.symbol = kNoDelta;
    } else if (status.symbol == kSmallDelta) {
      status.delta = U8At(bytes, at++);
    } else {
      const std::uint16_t onWire = U16At(bytes, at);
      at += 2;
      status.delta = (onWire & 0x80U) != 0 ? static_cast<std::uint16_t>(onWire | 0xff00U) : onWire;
      if (status.delta != onWire) rules->insert(Rule::TransportCcDeltaSign);
      if (status.delta < 256) {
        status.symbol = kSmallDelta;
        rules->insert(Rule::TransportCcDeltaSize);
      }
    }
  }
  return missing ? bytes.size() : at;
}

// How many statuses from `first` on one chunk takes: as many as one form of chunk can hold.
std::size_t ChunkLength(const std::vector<Status>& statuses, std::size_t first) {
  bool same = true;
  bool oneBit = true;
  std::size_t length = 0;
  for (; first + length < statuses.size(); ++length) {
    const unsigned symbol = statuses[first + length].symbol;
    same = same && symbol == statuses[first].symbol;
    oneBit = oneBit && symbol <= kSmallDelta;
    if (length >= 7 && !(length < 14 && oneBit) && !(length < kMaxRun && same)) break;
  }
  return length;
}

std::string WriteChunks(const std::vector<Status>& statuses) {
  std::string chunks;
  for (std::size_t first = 0; first < statuses.size();) {
    const std::size_t length = ChunkLength(statuses, first);
    bool same = true;
    bool oneBit = true;
    for (std::size_t i = 0; i < length; ++i) {
      same = same && statuses[first + i].symbol == statuses[first].symbol;
      oneBit = oneBit && statuses[first + i].symbol <= kSmallDelta;
    }
    std::uint64_t chunk = 0;
    if (same) {
      chunk = statuses[first].symbol << 13 | length;
    } else {
      const unsigned bits = oneBit ? 1 : 2;
      chunk = oneBit ? 0x8000 : 0xc000;
      for (std::size_t i = 0; i < length; ++i) chunk |= statuses[first + i].symbol << (14 - bits * (i + 1));
    }
    AppendNumber(&chunks, chunk, 2);
    first += length;
  }
  return chunks;
}

}  // namespace

void RewriteTransportCc(Rewrite* rewrite) {
  const std::string& in = rewrite->bytes;
  std::size_t at = kChunksOffset;
  std::vector<Status> statuses = ReadStatuses(in, &at);
  const std::string_view chunksRead = BytesAt(in, kChunksOffset, at - kChunksOffset);
  const std::size_t end = ReadDeltas(in, at, &statuses, &rewrite->rules);

  const std::string chunks = WriteChunks(statuses);
  if (chunks != chunksRead) rewrite->rules.insert(Rule::TransportCcChunks);
  std::string out = in.substr(0, kChunksOffset) + chunks;
  for (const Status& status : statuses) {
    if (status.symbol == kSmallDelta || status.symbol == kLargeDelta) AppendNumber(&out, status.delta, status.symbol);
  }
  const std::size_t length = (out.size() + 3) / 4 * 4;
  std::string padding;
  while ((rewrite->base + out.size() + padding.size()) % 4 != 0) padding += '\0';
  if (end < in.size() && BytesAt(in, end, in.size() - end) != padding) {
    rewrite->rules.insert(Rule::TransportCcPadding);
  }
  rewrite->bytes = out + padding;
  rewrite->PutLength(length);
}

}  // namespace zunrtcp
