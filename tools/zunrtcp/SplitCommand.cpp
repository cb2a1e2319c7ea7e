#include "tools/zunrtcp/SplitCommand.h"

#include <new>
#include <vector>

#include "tools/zunrtcp/Capture/HexReader.h"
#include "tools/zunrtcp/Encode/Encoder.h"
#include "tools/zunrtcp/Encode/JsonReader.h"
#include "tools/zunrtcp/InputError.h"
#include "tools/zunrtcp/Packet/LibraryPacket.h"
#include "tools/zunrtcp/Text.h"

namespace zunrtcp {

using zun::rtcp::Datagrams;
using zun::rtcp::DecodeRefusal;
using zun::rtcp::EncodeError;
using zun::rtcp::Packet;

namespace {

// The first packets of a datagram, which every part repeats, and those that are split.
struct Halves {
  Packet repeated;
  Packet rest;
};

Halves HalvesOf(const Packet& packet, std::size_t repeated) {
  Halves halves;
  for (std::size_t i = 0; i < packet.size(); ++i) {
    if (!(i < repeated ? halves.repeated : halves.rest).append(packet[i])) throw std::bad_alloc();
  }
  return halves;
}

[[noreturn]] void RefusePart(const EncodeError& error, const SplitOptions& options) {
  const std::size_t packet = options.repeated + error.index();
  if (error.needed() == 0) throw InputError(Printed("packet %zu cannot be written", packet));
  const char* with = options.repeated > 0 ? " with those that are repeated" : "";
  throw InputError(
      Printed("packet %zu needs %zu bytes%s, more than %zu", packet, error.needed(), with, options.max_size));
}

// The datagrams into which one is split, as hex digits.
std::vector<std::string> Split(std::string_view datagram, Dialect dialect, const SplitOptions& options) {
  const LibraryPacket read(datagram, dialect);
  if (!read.ok()) {
    const DecodeRefusal& refusal = read.refusals().front();
    throw InputError(Printed("packet %zu at byte %zu: ", refusal.index, refusal.offset) +
                     ZunRtcpDecodeReasonGetText(refusal.reason));
  }
  if (options.repeated >= read.objects().size()) {
    throw InputError(Printed("it has only %s, so nothing follows those that are repeated",
                             Counted(read.objects().size(), "packet").c_str()));
  }
  const Halves halves = HalvesOf(read.objects(), options.repeated);
  Datagrams datagrams = halves.rest.datagrams(options.max_size, halves.repeated, dialect);
  std::vector<std::string> parts;
  for (const std::span<const std::byte> part : datagrams) parts.push_back(HexDigits(part));
  if (datagrams.error()) RefusePart(*datagrams.error(), options);
  return parts;
}

class Splitter {
 public:
  Splitter(const SplitOptions& options, std::ostream* out) : options_(options), out_(out) {}

  // `make` gives the bytes of the next datagram.
  template <class Make>
  void Take(const std::string& name, Dialect dialect, Make make) {
    ++count_;
    try {
      for (const std::string& part : Split(make(), dialect, options_)) *out_ << part << '\n';
    } catch (const InputError& error) {
      throw InputError(name + Printed(": datagram %zu: ", count_) + error.what());
    }
  }

  void Finish(const std::string& name) const {
    if (count_ == 0) throw InputError(name + ": no datagram in it");
  }

 private:
  const SplitOptions& options_;
  std::ostream* out_;
  std::size_t count_ = 0;
};

void SplitJson(const SplitOptions& options, Splitter* splitter) {
  JsonReader reader(options.path);
  while (const std::optional<JsonField::Json> value = reader.Next()) {
    const JsonField datagram(*value, "");
    const Dialect dialect = DialectOf(datagram, options.dialect);
    splitter->Take(reader.name(), dialect, [&] { return EncodeDatagram(datagram, dialect); });
  }
  splitter->Finish(reader.name());
}

void SplitHex(const SplitOptions& options, Splitter* splitter) {
  HexReader reader(options.path);
  const Dialect dialect = options.dialect.value_or(Dialect::registered);
  while (const std::optional<RtcpDatagram> datagram = reader.Next()) {
    splitter->Take(reader.path(), dialect, [&] { return datagram->payload; });
  }
  splitter->Finish(reader.path());
}

}  // namespace

ExitStatus RunSplit(const SplitOptions& options, std::ostream* out) {
  Splitter splitter(options, out);
  (options.json ? SplitJson : SplitHex)(options, &splitter);
  return kFine;
}

}  // namespace zunrtcp
