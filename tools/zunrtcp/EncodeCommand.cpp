#include "tools/zunrtcp/EncodeCommand.h"

#include <algorithm>
#include <charconv>
#include <string_view>
#include <utility>

#include "tools/zunrtcp/Capture/CaptureWriter.h"
#include "tools/zunrtcp/Encode/Encoder.h"
#include "tools/zunrtcp/Encode/JsonReader.h"
#include "tools/zunrtcp/InputError.h"
#include "tools/zunrtcp/Text.h"

namespace zunrtcp {

namespace {

// Where a datagram goes of which nothing is told (TEST-NET-1, RFC 5737).
const Endpoint kDefaultSource{"192.0.2.1", 5005};
const Endpoint kDefaultDestination{"192.0.2.2", 5005};

Endpoint EndpointOf(const JsonField& datagram, const char* key, const Endpoint& otherwise) {
  const std::optional<JsonField> field = datagram.Find(key);
  if (!field) return otherwise;
  return {(*field)["address"].Text(), (*field)["port"].As<std::uint16_t>()};
}

// Whether the digits are a number and nothing else.
template <class Number>
bool ReadNumber(std::string_view digits, Number* number) {
  const auto [end, error] = std::from_chars(digits.data(), digits.data() + digits.size(), *number);
  return error == std::errc() && end == digits.data() + digits.size();
}

// "1795222299.000001".
void SetTime(const JsonField& field, RtcpDatagram* datagram) {
  constexpr std::size_t kMostDigits = 6;
  const std::string text = field.Text();
  const std::string_view whole = text;
  const std::size_t point = std::min(whole.find('.'), whole.size());
  const std::string_view fraction = whole.substr(std::min(point + 1, whole.size()));
  if (fraction.size() > kMostDigits || !ReadNumber(whole.substr(0, point), &datagram->seconds) ||
      !ReadNumber(fraction, &datagram->microseconds)) {
    field.Refuse("is no time in seconds and microseconds");
  }
}

RtcpDatagram DatagramOf(const JsonField& field, std::string payload) {
  RtcpDatagram datagram;
  datagram.source = EndpointOf(field, "source", kDefaultSource);
  datagram.destination = EndpointOf(field, "destination", kDefaultDestination);
  if (const std::optional<JsonField> time = field.Find("time")) SetTime(*time, &datagram);
  datagram.payload = std::move(payload);
  return datagram;
}

class DatagramWriter {
 public:
  DatagramWriter(const EncodeOptions& options, std::ostream* out) : options_(options), out_(out) {
    if (!options.capture.empty()) capture_.emplace(options.capture);
  }

  void Write(const JsonField& field) {
    ++count_;
    try {
      const std::string payload = EncodeDatagram(field, DialectOf(field, options_.dialect));
      if (!capture_) {
        *out_ << HexDigits(payload) << '\n';
      } else {
        capture_->Write(DatagramOf(field, payload));
      }
    } catch (const InputError& error) {
      throw InputError(Printed("datagram %zu: ", count_) + error.what());
    }
  }

  void Finish() {
    if (capture_) capture_->Finish();
  }

  std::size_t count() const { return count_; }

 private:
  const EncodeOptions& options_;
  std::ostream* out_;
  std::optional<CaptureWriter> capture_;
  std::size_t count_ = 0;
};

}  // namespace

ExitStatus RunEncode(const EncodeOptions& options, std::ostream* out) {
  JsonReader reader(options.path);
  DatagramWriter writer(options, out);
  while (const std::optional<JsonField::Json> value = reader.Next()) {
    try {
      writer.Write(JsonField(*value, ""));
    } catch (const InputError& error) {
      throw InputError(reader.name() + ": " + error.what());
    }
  }
  writer.Finish();
  if (writer.count() == 0) throw InputError(reader.name() + ": no datagram in it");
  return kFine;
}

}  // namespace zunrtcp
