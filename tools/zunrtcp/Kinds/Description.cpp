#include "tools/zunrtcp/Kinds/Description.h"

#include <utility>

#include "tools/zunrtcp/Text.h"

namespace zunrtcp {

namespace {

constexpr std::size_t kMostBytesShown = 32;

}  // namespace

void Description::Add(const char* key, Value value, std::string words) {
  value_[key] = std::move(value);
  words_.push_back(std::move(words));
}

void Description::AddSource(const char* key, std::string_view label, std::uint32_t ssrc) {
  Add(key, ssrc, std::string(label) + (label.empty() ? "" : " ") + SourceName(ssrc));
}

void Description::AddSources(const char* key, std::span<const std::uint32_t> sources, std::string words) {
  Value value = Value::array();
  for (const std::uint32_t source : sources) value.push_back(source);
  Add(key, std::move(value), std::move(words));
}

void Description::AddNumber(const char* key, std::string_view label, std::uint64_t number, std::string_view unit) {
  std::string words = std::string(label) + " " + std::to_string(number);
  if (!unit.empty()) words += std::string(" ").append(unit);
  Add(key, number, words);
}

void Description::AddBytes(const char* key, std::string_view label, std::span<const std::byte> bytes) {
  AddValue(key, HexDigits(bytes));
  if (bytes.empty()) return;
  AddWords(std::string(label) + " " + (verbose_ ? HexDigits(bytes) : HexDigits(bytes, kMostBytesShown)));
}

void Description::AddText(const char* key, std::string_view label, std::string_view text) {
  AddTextValue(key, text);
  AddWords(std::string(label) + " " + Quoted(text));
}

void Description::AddTextValue(const std::string& key, std::string_view text) {
  const std::string quoted = Quoted(text);
  value_[key] = quoted.substr(1, quoted.size() - 2);
  value_[key + "Hex"] = HexDigits(text);
}

Description& Description::AddItem(const char* key) {
  items_.push_back({key, Description(verbose_, dialect_)});
  return items_.back().description;
}

std::string Description::Line() const { return Joined(words_, ", "); }

std::vector<std::string> Description::ItemLines() const {
  std::vector<std::string> lines;
  for (const Item& item : items_) {
    const std::vector<std::string> inner = item.description.ItemLines();
    lines.push_back(item.description.Line() + (inner.empty() ? "" : ": ") + Joined(inner, ", "));
  }
  return lines;
}

Description::Value Description::ToValue() const {
  Value value = value_;
  for (const Item& item : items_) value[item.key].push_back(item.description.ToValue());
  return value;
}

}  // namespace zunrtcp
