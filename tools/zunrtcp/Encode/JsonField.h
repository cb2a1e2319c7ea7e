// A value of the JSON that is encoded, with its path: what is wrong with it is said with the place.
#ifndef TOOLS_ZUNRTCP_ENCODE_JSONFIELD_H
#define TOOLS_ZUNRTCP_ENCODE_JSONFIELD_H

#include <cstddef>
#include <cstdint>
#include <limits>
#include <nlohmann/json.hpp>
#include <optional>
#include <string>
#include <utility>
#include <vector>

namespace zunrtcp {

// All throw InputError when the value is something else than they ask for.
class JsonField {
 public:
  using Json = nlohmann::json;

  JsonField(const Json& value, std::string path) : value_(&value), path_(std::move(path)) {}

  // "subpackets[1].sender: " and what is wrong with it.
  [[noreturn]] void Refuse(const std::string& words) const;

  // The member, which must be there.
  JsonField operator[](const char* key) const;
  std::optional<JsonField> Find(const char* key) const;
  // The elements of the list.
  std::vector<JsonField> Elements() const;

  std::uint64_t Unsigned(std::uint64_t most) const;
  std::int64_t Signed(std::int64_t least, std::int64_t most) const;
  // As much as `Number` holds.
  template <class Number>
  Number As() const {
    return static_cast<Number>(Unsigned(std::numeric_limits<Number>::max()));
  }
  double Real() const;
  bool Bool() const;
  bool IsNull() const { return value_->is_null(); }
  std::string Text() const;
  // The bytes that hex digits stand for.
  std::string Bytes() const;

  // Bytes under `key`; none when there is no such member.
  std::string OptionalBytes(const char* key) const;
  // Text of a peer's: the bytes of `key`Hex, or without that the text of `key` as it stands.
  std::string PeerText(const std::string& key) const;

  const std::string& path() const { return path_; }

 private:
  const Json* value_;
  std::string path_;
};

}  // namespace zunrtcp

#endif
