#include "tools/zunrtcp/Kinds/TransportFeedback/TransportCcRewrite.h"

#include <algorithm>
#include <vector>

#include "tools/zunrtcp/Kinds/FeedbackLayout.h"

namespace zunrtcp {

namespace {

constexpr std::size_t kStatusCountOffset = kFciOffset + 2;
constexpr std::size_t kChunksOffset = kFciOffset + 8;

constexpr std::size_t kMaxRun = 8191;
constexpr std::size_t kOneBitSymbols = 14;
constexpr std::size_t kTwoBitSymbols = 7;
constexpr unsigned kVectorBit = 0x8000;
constexpr unsigned kTwoBitVectorBit = 0x4000;

// Also the size of the delta, but for kNoDelta.
enum Symbol : unsigned { kNotReceived = 0, kSmallDelta = 1, kLargeDelta = 2, kNoDelta = 3 };

struct Status {
  unsigned symbol;
  std::uint16_t delta;

  bool HasDelta() const { return symbol == kSmallDelta || symbol == kLargeDelta; }
  std::size_t DeltaSize() const { return HasDelta() ? symbol : 0; }
};

using Statuses = std::vector<Status>;

// Appends the statuses that a chunk stands for, up to `count` in all.
void AppendChunk(unsigned chunk, std::size_t count, Statuses* statuses) {
  const bool is_vector = (chunk & kVectorBit) != 0;
  const unsigned bits = (chunk & kTwoBitVectorBit) != 0 ? 2 : 1;
  const unsigned length = is_vector ? 14 / bits : chunk & 0x1FFFU;
  for (unsigned i = 0; i < length && statuses->size() < count; ++i) {
    const unsigned symbol = is_vector ? chunk >> (14 - bits * (i + 1)) & ((1U << bits) - 1) : chunk >> 13 & 3;
    statuses->push_back({symbol, 0});
  }
}

Statuses ReadChunks(OctetCursor* in, std::size_t count) {
  Statuses statuses;
  while (statuses.size() < count) AppendChunk(in->U16(), count, &statuses);
  return statuses;
}

// In the house's dialect the low byte of a large delta is read with its sign. A delta that fits one byte is written in
// one.
void ReadLargeDelta(std::uint16_t on_wire, bool is_registered, Status* status, std::set<Rule>* rules) {
  const bool is_negative = !is_registered && (on_wire & 0x80U) != 0;
  status->delta = is_negative ? static_cast<std::uint16_t>(on_wire | 0xFF00U) : on_wire;
  if (status->delta != on_wire) rules->insert(Rule::TransportCcDeltaSign);
  if (status->delta > 0xFF) return;
  status->symbol = kSmallDelta;
  rules->insert(Rule::TransportCcDeltaSize);
}

// Reads the deltas into the statuses, with the symbols under which they are written: none where not all are there.
void ReadDeltas(OctetCursor* in, bool is_registered, Statuses* statuses, std::set<Rule>* rules) {
  std::size_t size = 0;
  for (const Status& status : *statuses) size += status.DeltaSize();
  const bool are_missing = size > in->left();
  if (are_missing) {
    rules->insert(Rule::TransportCcDeltasMissing);
    in->TakeRest();
  }
  for (Status& status : *statuses) {
    if (!status.HasDelta()) continue;
    if (are_missing) {
      status.symbol = kNoDelta;
    } else if (status.symbol == kSmallDelta) {
      status.delta = in->U8();
    } else {
      ReadLargeDelta(in->U16(), is_registered, &status, rules);
    }
  }
}

// Statuses that one chunk is to stand for, and which forms of chunk can.
struct Stretch {
  std::size_t first;
  std::size_t length = 0;
  bool is_same = true;     // a run can
  bool is_one_bit = true;  // a vector of one bit each can; one of two bits always can

  // Whether a chunk can stand for so many of these.
  bool Fits(std::size_t size) const {
    return size <= kTwoBitSymbols || (is_one_bit && size <= kOneBitSymbols) || (is_same && size <= kMaxRun);
  }
};

// The statuses from `first` on that one chunk takes: as many as one form of chunk can hold.
Stretch NextStretch(const Statuses& statuses, std::size_t first) {
  Stretch stretch{.first = first};
  while (first + stretch.length < statuses.size()) {
    const unsigned symbol = statuses[first + stretch.length].symbol;
    Stretch longer = stretch;
    ++longer.length;
    longer.is_same = stretch.is_same && symbol == statuses[first].symbol;
    longer.is_one_bit = stretch.is_one_bit && symbol <= kSmallDelta;
    if (!longer.Fits(longer.length)) break;
    stretch = longer;
  }
  return stretch;
}

// A reader takes a vector of one bit each for 14 statuses, so in the registered dialect one that is followed by others
// and has fewer gives way to a vector of two bits each, which is full.
Stretch NextReadableStretch(const Statuses& statuses, std::size_t first) {
  Stretch stretch = NextStretch(statuses, first);
  const bool is_one_bit_vector = stretch.is_one_bit && !stretch.is_same;
  const bool is_followed = first + stretch.length < statuses.size();
  if (is_one_bit_vector && is_followed && stretch.length < kOneBitSymbols) {
    stretch.length = kTwoBitSymbols;
    stretch.is_one_bit = false;
  }
  return stretch;
}

std::uint64_t ChunkOf(const Statuses& statuses, const Stretch& stretch) {
  if (stretch.is_same) return statuses[stretch.first].symbol << 13 | stretch.length;
  const unsigned bits = stretch.is_one_bit ? 1 : 2;
  std::uint64_t chunk = stretch.is_one_bit ? kVectorBit : kVectorBit | kTwoBitVectorBit;
  for (std::size_t i = 0; i < stretch.length; ++i) {
    chunk |= std::uint64_t{statuses[stretch.first + i].symbol} << (14 - bits * (i + 1));
  }
  return chunk;
}

std::string WriteChunks(const Statuses& statuses, bool is_registered) {
  std::string chunks;
  for (std::size_t first = 0; first < statuses.size();) {
    const Stretch stretch = is_registered ? NextReadableStretch(statuses, first) : NextStretch(statuses, first);
    AppendNumber(&chunks, ChunkOf(statuses, stretch), 2);
    first += stretch.length;
  }
  return chunks;
}

std::string WriteDeltas(const Statuses& statuses) {
  std::string deltas;
  for (const Status& status : statuses) AppendNumber(&deltas, status.delta, status.DeltaSize());
  return deltas;
}

}  // namespace

void RewriteTransportCc(Rewrite* rewrite) {
  OctetCursor in(rewrite->bytes);
  std::string out(in.Take(kChunksOffset));
  Statuses statuses = ReadChunks(&in, U16At(rewrite->bytes, kStatusCountOffset));
  const std::string_view chunks_read = BytesAt(rewrite->bytes, kChunksOffset, in.at() - kChunksOffset);
  ReadDeltas(&in, rewrite->is_registered, &statuses, &rewrite->rules);

  const std::string chunks = WriteChunks(statuses, rewrite->is_registered);
  if (chunks != chunks_read) rewrite->rules.insert(Rule::TransportCcChunks);
  out += chunks + WriteDeltas(statuses);
  const std::size_t length = out.size() + PaddingAfter(out.size());
  const std::string padding(rewrite->PaddingOfString(out.size()), '\0');
  if (!in.AtEnd() && in.TakeRest() != padding) rewrite->rules.insert(Rule::TransportCcPadding);
  rewrite->bytes = out + padding;
  rewrite->PutLength(length);
}

}  // namespace zunrtcp
