// Reads the datagrams that decode --json printed.
#ifndef TOOLS_ZUNRTCP_ENCODE_JSONREADER_H
#define TOOLS_ZUNRTCP_ENCODE_JSONREADER_H

#include <deque>
#include <fstream>
#include <istream>
#include <optional>
#include <string>

#include "tools/zunrtcp/Encode/JsonField.h"

namespace zunrtcp {

// One value after the other, or lists of them; the totals are passed over.
class JsonReader {
 public:
  // Opens the file; "-" is standard input. InputError when there is none.
  explicit JsonReader(const std::string& path);

  // The next datagram; none at the end. InputError when it is not JSON.
  std::optional<JsonField::Json> Next();

  const std::string& name() const { return name_; }

 private:
  // False at the end.
  bool ReadValue();
  void Take(JsonField::Json value);

  std::string name_;
  std::ifstream file_;
  std::istream* in_;
  std::deque<JsonField::Json> read_;
};

}  // namespace zunrtcp

#endif
