#include "tools/zunrtcp/Encode/JsonReader.h"

#include <iostream>
#include <utility>

#include "tools/zunrtcp/Capture/InputPath.h"
#include "tools/zunrtcp/InputError.h"

namespace zunrtcp {

JsonReader::JsonReader(const std::string& path) : name_(InputName(path)), in_(&file_) {
  if (path == "-") {
    in_ = &std::cin;
    return;
  }
  CheckReadable(path);
  file_.open(path, std::ios::binary);
}

bool JsonReader::ReadValue() {
  *in_ >> std::ws;
  if (in_->peek() == std::istream::traits_type::eof()) return false;
  JsonField::Json value;
  try {
    *in_ >> value;
  } catch (const JsonField::Json::parse_error& error) {
    throw InputError(name_ + ": not JSON: " + error.what());
  }
  Take(std::move(value));
  return true;
}

void JsonReader::Take(JsonField::Json value) {
  if (value.is_array()) {
    for (JsonField::Json& element : value) Take(std::move(element));
  } else if (!value.is_object() || !value.contains("totals")) {
    read_.push_back(std::move(value));
  }
}

std::optional<JsonField::Json> JsonReader::Next() {
  while (read_.empty()) {
    if (!ReadValue()) return std::nullopt;
  }
  JsonField::Json value = std::move(read_.front());
  read_.pop_front();
  return value;
}

}  // namespace zunrtcp
