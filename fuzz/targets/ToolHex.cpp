// The tool's reader of hex text: any text gives datagrams or one complaint, and bytes written down are read back.
#include <string>

#include "fuzz/File.h"
#include "tools/zunrtcp/Capture/HexReader.h"
#include "tools/zunrtcp/Capture/HexText.h"
#include "tools/zunrtcp/InputError.h"
#include "tools/zunrtcp/Text.h"

namespace {

void ReadLine(const std::string& line) {
  if (const auto bytes = zunrtcp::ReadHexDigits(line)) {
    fuzz::Check(bytes->size() <= line.size() / 2, "a byte takes two digits");
    const auto again = zunrtcp::ReadHexDigits(zunrtcp::HexDigits(*bytes));
    fuzz::Check(bytes->empty() || (again && *again == *bytes), "the digits of bytes are read as these bytes");
  }
  if (const auto dump = zunrtcp::ReadHexDumpLine(line)) {
    fuzz::Check(dump->bytes.size() <= line.size() / 2, "a byte takes two digits");
  }
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* octets, std::size_t size) {
  const std::string text(reinterpret_cast<const char*>(octets), size);
  ReadLine(text.substr(0, text.find('\n')));
  const fuzz::File file(octets, size);
  try {
    zunrtcp::HexReader reader(file.path());
    while (const auto found = reader.Next()) fuzz::Check(found->payload.size() <= size, "the text holds the payload");
  } catch (const zunrtcp::InputError& complaint) {
    fuzz::Check(*complaint.what() != '\0', "a complaint says something");
  }
  return 0;
}
