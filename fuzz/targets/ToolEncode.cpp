// The tool's encode: any JSON gives bytes or one complaint. The first byte chooses the dialect.
#include <string>

#include "fuzz/Check.h"
#include "tools/zunrtcp/Encode/Encoder.h"
#include "tools/zunrtcp/InputError.h"

using zunrtcp::Dialect;

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* octets, std::size_t size) {
  if (size == 0) return 0;
  const Dialect dialect = (octets[0] & 1) != 0 ? Dialect::registered : Dialect::house;
  const auto value = nlohmann::json::parse(octets + 1, octets + size, nullptr, false);
  if (value.is_discarded()) return 0;
  try {
    const std::string bytes = zunrtcp::EncodeDatagram(zunrtcp::JsonField(value, ""), dialect);
    fuzz::Check(!bytes.empty(), "what is encoded has bytes");
  } catch (const zunrtcp::InputError& complaint) {
    fuzz::Check(*complaint.what() != '\0', "a complaint says something");
  }
  return 0;
}
