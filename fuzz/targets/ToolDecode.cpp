// The tool's decode and encode: any datagram is described, in words and in JSON, and what encode makes of that JSON is
// described in the same way. The first byte chooses the dialect.
#include <algorithm>
#include <sstream>
#include <string>

#include "fuzz/Check.h"
#include "tools/zunrtcp/Encode/Encoder.h"
#include "tools/zunrtcp/InputError.h"
#include "tools/zunrtcp/Output/Printer.h"

namespace {

using nlohmann::json;
using zunrtcp::Dialect;

json JsonOf(const std::string& payload, Dialect dialect) {
  zunrtcp::RtcpDatagram datagram;
  datagram.payload = payload;
  const zunrtcp::DecodedDatagram decoded(std::move(datagram), dialect, true);
  std::ostringstream words;
  zunrtcp::TextPrinter(&words, dialect, true).Print(decoded);
  fuzz::Check(!words.str().empty(), "a datagram is described in words");
  std::ostringstream printed;
  zunrtcp::JsonPrinter(&printed, dialect).Print(decoded);
  json parsed = json::parse(printed.str(), nullptr, false);
  fuzz::Check(!parsed.is_discarded(), "what is printed is JSON");
  return parsed;
}

// Whether what is encoded may be read as something else: the bytes of an LIR need not be as many as its header says.
bool MayDiffer(const json& datagram) {
  const json& packets = datagram["subpackets"];
  return std::any_of(packets.begin(), packets.end(), [](const json& packet) { return packet["kind"] == "LIR"; });
}

// Of a packet that was not received only that is written.
void ForgetWhatNoMetricTells(json* ccfb) {
  for (json& stream : (*ccfb)["streams"]) {
    for (json& metric : stream["metrics"]) {
      if (metric["received"] == true) continue;
      for (const char* const untold : {"ecn", "offset"}) metric.erase(untold);
    }
  }
}

// What is told of the packets, but for how their bytes lie, which encode chooses itself.
json PacketsOf(const json& datagram) {
  json packets = datagram.value("subpackets", json::array());
  for (json& packet : packets) {
    for (const char* const layout : {"offset", "length", "padded", "paddingLength"}) packet.erase(layout);
    if (packet["kind"] == "XR") packet.erase("count");     // its bits are reserved, and written as zeros
    if (packet["kind"] == "TSTR") packet.erase("source");  // a TSTR is about no source, and 0 is written
    if (packet["kind"] != "CCFB" || !packet.contains("streams")) continue;
    packet.erase("count");  // one of two numbers is read, the registered one written
    ForgetWhatNoMetricTells(&packet);
  }
  return packets;
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* octets, std::size_t size) {
  if (size == 0) return 0;
  const Dialect dialect = (octets[0] & 1) != 0 ? Dialect::registered : Dialect::house;
  const std::string payload(reinterpret_cast<const char*>(octets + 1), size - 1);
  const json described = JsonOf(payload, dialect);
  try {
    const std::string encoded = zunrtcp::EncodeDatagram(zunrtcp::JsonField(described, ""), dialect);
    if (dialect == Dialect::registered && !MayDiffer(described)) {
      fuzz::Check(PacketsOf(JsonOf(encoded, dialect)) == PacketsOf(described),
                  "what is encoded is described as before");
    }
  } catch (const zunrtcp::InputError& complaint) {
    fuzz::Check(*complaint.what() != '\0', "a complaint says something");
  }
  return 0;
}
