#include "tools/zunrtcp/Encode/JsonField.h"

#include "tools/zunrtcp/Capture/HexText.h"
#include "tools/zunrtcp/InputError.h"

namespace zunrtcp {

void JsonField::Refuse(const std::string& words) const { throw InputError(path_ + ": " + words); }

std::optional<JsonField> JsonField::Find(const char* key) const {
  if (!value_->is_object()) Refuse("is no object");
  const auto found = value_->find(key);
  if (found == value_->end()) return std::nullopt;
  return JsonField(*found, path_.empty() ? key : path_ + "." + key);
}

JsonField JsonField::operator[](const char* key) const {
  std::optional<JsonField> member = Find(key);
  if (!member) throw InputError((path_.empty() ? "" : path_ + ".") + key + ": is missing");
  return *member;
}

std::vector<JsonField> JsonField::Elements() const {
  if (!value_->is_array()) Refuse("is no list");
  std::vector<JsonField> elements;
  for (const Json& element : *value_) {
    elements.emplace_back(element, path_ + "[" + std::to_string(elements.size()) + "]");
  }
  return elements;
}

std::uint64_t JsonField::Unsigned(std::uint64_t most) const {
  if (!value_->is_number_integer()) Refuse("is no whole number");
  if (!value_->is_number_unsigned() && value_->get<std::int64_t>() < 0) Refuse(value_->dump() + " is below 0");
  const auto number = value_->get<std::uint64_t>();
  if (number > most) Refuse(value_->dump() + " is above " + std::to_string(most));
  return number;
}

std::int64_t JsonField::Signed(std::int64_t least, std::int64_t most) const {
  if (!value_->is_number_integer()) Refuse("is no whole number");
  const bool is_huge = value_->is_number_unsigned() && value_->get<std::uint64_t>() > static_cast<std::uint64_t>(most);
  const auto number = value_->get<std::int64_t>();
  if (is_huge || number > most) Refuse(value_->dump() + " is above " + std::to_string(most));
  if (number < least) Refuse(value_->dump() + " is below " + std::to_string(least));
  return number;
}

double JsonField::Real() const {
  if (!value_->is_number()) Refuse("is no number");
  return value_->get<double>();
}

bool JsonField::Bool() const {
  if (!value_->is_boolean()) Refuse("is neither true nor false");
  return value_->get<bool>();
}

std::string JsonField::Text() const {
  if (!value_->is_string()) Refuse("is no text");
  return value_->get<std::string>();
}

std::string JsonField::Bytes() const {
  const std::optional<std::string> bytes = ReadHexDigits(Text());
  if (!bytes) Refuse("is not hex");
  return *bytes;
}

std::string JsonField::OptionalBytes(const char* key) const {
  const std::optional<JsonField> member = Find(key);
  return member ? member->Bytes() : std::string();
}

std::string JsonField::PeerText(const std::string& key) const {
  if (const std::optional<JsonField> hex = Find((key + "Hex").c_str())) return hex->Bytes();
  return (*this)[key.c_str()].Text();
}

}  // namespace zunrtcp
