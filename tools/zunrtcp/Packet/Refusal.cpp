#include "tools/zunrtcp/Packet/Refusal.h"

#include <algorithm>
#include <utility>

#include "tools/zunrtcp/Text.h"

namespace zunrtcp {

namespace {

constexpr std::size_t kWordSize = 4;
constexpr std::size_t kBytesShownOnEachSide = 2 * kWordSize;

}  // namespace

Refusal RefusalAt(std::string_view datagram, std::string reason, std::size_t offset, std::size_t stopped_at) {
  const std::size_t before = std::min(stopped_at, datagram.size());
  const std::size_t first = before > kBytesShownOnEachSide ? before - kBytesShownOnEachSide : 0;
  const std::size_t begin = first / kWordSize * kWordSize;
  return {std::move(reason), offset, stopped_at, begin,
          datagram.substr(begin, stopped_at + kBytesShownOnEachSide - begin)};
}

std::string Refusal::Words() const {
  return Printed("%s; it begins at byte %zu, reading stopped at byte %zu", reason.c_str(), offset, stopped_at);
}

std::string Refusal::BytesWords() const {
  if (bytes.empty()) return "no bytes";
  std::string words = Printed("bytes %zu to %zu:", bytes_offset, bytes_offset + bytes.size() - 1);
  for (std::size_t i = 0; i < bytes.size(); ++i) {
    const std::size_t at = bytes_offset + i;
    if (at == stopped_at) words += " |";
    if (at == stopped_at || at % kWordSize == 0) words += ' ';
    words += HexDigits(bytes.substr(i, 1));
  }
  return stopped_at >= bytes_offset + bytes.size() ? words + " |" : words;
}

}  // namespace zunrtcp
