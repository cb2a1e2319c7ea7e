#include "tools/zunrtcp/Text.h"

namespace zunrtcp {

std::string Joined(const std::vector<std::string>& words, std::string_view separator) {
  std::string text;
  for (const std::string& word : words) {
    if (!text.empty()) text += separator;
    text += word;
  }
  return text;
}

}  // namespace zunrtcp
