#include "tests/support/RandomDatagrams.h"

#include <vector>

#include "tests/support/OpenDoor.h"
#include "tests/support/Samples.h"

namespace test {
namespace {

// What differs in the registered dialect is not among the samples.
const std::vector<std::string>& Wires() {
  static const std::vector<std::string> wires = [] {
    std::vector<std::string> all = {
        Hex("8BCD0006 00000001 00000002 00030003 A001C002 FFFF0000 00000005"),           // CCFB with ECN
        Hex("AFCD0007 00000001 00000002 00830005 00B88217 DA20A7FF F0FFB501 21000003"),  // negative deltas, padded
        Hex("83CD0004 00000001 00000000 00000002 0A61601C"),  // a bit rate limit of three numbers
        Hex("84CD0004 00000001 00000000 00000002 0A61601C"),
        Hex("80CA0000"),
        Hex("80CB0000"),
        Hex("80CF0004 00000001 04000002 00000003 00000004"),
        Hex("A0C90002 00000001 00000004"),
    };
    for (const Sample& sample : Samples()) all.push_back(sample.wire);
    return all;
  }();
  return wires;
}

}  // namespace

std::string RandomDatagrams::NextWhole() {
  std::string bytes;
  for (unsigned left = 1 + Below(5); left > 0; --left) bytes += Wires()[Below(Wires().size())];
  return bytes;
}

std::string RandomDatagrams::Damaged(std::string bytes) {
  for (unsigned left = Below(5); left > 0 && !bytes.empty(); --left) Damage(&bytes);
  return bytes;
}

void RandomDatagrams::Damage(std::string* bytes) {
  static const char kTelling[] = {0, 1, 2, 4, 0x1F, 0x20, 0x7F, static_cast<char>(0x80), static_cast<char>(0xFF)};
  const std::size_t at = Below(bytes->size());
  const std::size_t word = at / 4 * 4;
  switch (Below(8)) {
    case 0:
      (*bytes)[at] = static_cast<char>((*bytes)[at] ^ (1 << Below(8)));
      break;
    case 1:
      (*bytes)[at] = static_cast<char>(Below(256));
      break;
    case 2:
    case 3:
      (*bytes)[at] = kTelling[Below(sizeof(kTelling))];
      break;
    case 4:  // the first octet of a word: often a header
      (*bytes)[word] = static_cast<char>(0x80 | Below(64));
      break;
    case 5:  // the last of its first word: often a length
      if (word + 3 < bytes->size()) (*bytes)[word + 3] = static_cast<char>(Below(16));
      break;
    case 6:
      bytes->erase(Below(4) == 0 ? at : word);
      break;
    default:
      bytes->insert(word, bytes->substr(Below(bytes->size()) & ~std::size_t{3}, 4));
      break;
  }
}

}  // namespace test
