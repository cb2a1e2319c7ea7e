// What a subpacket holds, for people and for programs alike.
#ifndef TOOLS_ZUNRTCP_KINDS_DESCRIPTION_H
#define TOOLS_ZUNRTCP_KINDS_DESCRIPTION_H

#include <cstddef>
#include <cstdint>
#include <deque>
#include <nlohmann/json.hpp>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "tools/zunrtcp/Dialect.h"

namespace zunrtcp {

// Fields in the order in which they are told. Each has a key and a value for programs, and words for people. What
// comes in lists is described item by item, each on a line of its own.
class Description {
 public:
  using Value = nlohmann::ordered_json;

  // With `verbose`, nothing is cut short and details are shown. `dialect` is that of what is described.
  explicit Description(bool verbose, Dialect dialect = Dialect::house) : verbose_(verbose), dialect_(dialect) {}

  void Add(const char* key, Value value, std::string words);
  // "sender 0x12345678"
  void AddSource(const char* key, std::string_view label, std::uint32_t ssrc);
  // A list of sources, for people as `words` says.
  void AddSources(const char* key, std::span<const std::uint32_t> sources, std::string words);
  // "jitter 12"; with a unit, "jitter 12 ms"
  void AddNumber(const char* key, std::string_view label, std::uint64_t number, std::string_view unit = {});
  // "data 0a0b0c": for programs all of it, for people the beginning unless verbose. Nothing when there are none.
  void AddBytes(const char* key, std::string_view label, std::span<const std::byte> bytes);
  // Text of a peer's, for people with escapes in quotes.
  void AddText(const char* key, std::string_view label, std::string_view text);

  // For programs only: a value, and text of a peer's.
  void AddValue(const char* key, Value value) { value_[key] = std::move(value); }
  void AddTextValue(const std::string& key, std::string_view text);
  // For people only.
  void AddWords(std::string words) { words_.push_back(std::move(words)); }

  // A further item of the list `key`; valid as long as this description.
  Description& AddItem(const char* key);
  // Names a list that may stay empty.
  void AddList(const char* key) { value_[key] = Value::array(); }

  bool verbose() const { return verbose_; }
  Dialect dialect() const { return dialect_; }
  // The words of the fields of this level, one after the other.
  std::string Line() const;
  // Those of the items, one line each, with the items of an item in its line.
  std::vector<std::string> ItemLines() const;
  // All of it for programs.
  Value ToValue() const;

 private:
  struct Item;

  bool verbose_;
  Dialect dialect_;
  Value value_ = Value::object();
  std::vector<std::string> words_;
  std::deque<Item> items_;
};

struct Description::Item {
  const char* key;
  Description description;
};

}  // namespace zunrtcp

#endif
