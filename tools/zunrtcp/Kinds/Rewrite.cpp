#include "tools/zunrtcp/Kinds/Rewrite.h"

namespace zunrtcp {

Rewrite::Rewrite(const SubpacketView& received, std::size_t bytes_before)
    : bytes(received.WithoutPadding().bytes), base(bytes_before), is_registered(received.registered()) {
  if (bytes.size() == received.bytes.size()) {
    Mask(0, ~kPaddingBit, Rule::PaddingBit);
    return;
  }
  Mask(0, ~kPaddingBit, Rule::PaddingOctetsDropped);
  PutLength(bytes.size() + PaddingAfter(bytes.size()));
}

void Rewrite::FillLastWord() {
  if (rules.contains(Rule::PaddingOctetsDropped)) bytes.append(PaddingAfter(bytes.size()), '\0');
}

void Rewrite::Put(std::size_t offset, std::size_t size, std::uint64_t value, Rule rule) {
  std::string field;
  AppendNumber(&field, value, size);
  if (BytesAt(bytes, offset, size) == field) return;
  bytes.replace(offset, size, field);
  rules.insert(rule);
}

void Rewrite::Mask(std::size_t offset, unsigned mask, Rule rule) { Put(offset, 1, U8At(bytes, offset) & mask, rule); }

void Rewrite::PutRest(std::size_t offset, const std::string& rest, Rule rule) {
  if (BytesAt(bytes, offset, bytes.size() - offset) == rest) return;
  bytes.replace(offset, bytes.size() - offset, rest);
  rules.insert(rule);
}

void Rewrite::PutLength(std::size_t size) {
  std::string words;
  AppendNumber(&words, size / 4 - 1, 2);
  bytes.replace(2, 2, words);
}

}  // namespace zunrtcp
