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

namespace {

// Copies of the first packets of a datagram.
class Prefix {
 public:
  Prefix(const LibraryPacket& packet, std::size_t count) {
    ZunVector_ZunRtcpSubpacketConstructDefault(&subpackets_, ZunAllocatorGetSystem());
    for (std::size_t i = 0; i < count; ++i) {
      if (!ZunVector_ZunRtcpSubpacketPushBack(&subpackets_, packet.Find(i))) throw std::bad_alloc();
    }
  }
  ~Prefix() { ZunVector_ZunRtcpSubpacketDestruct(&subpackets_); }
  Prefix(const Prefix&) = delete;
  Prefix& operator=(const Prefix&) = delete;

  const ZunVector_ZunRtcpSubpacket* get() const { return &subpackets_; }

 private:
  ZunVector_ZunRtcpSubpacket subpackets_;
};

[[noreturn]] void RefusePart(std::size_t packet, std::size_t needed, const SplitOptions& options) {
  if (needed == 0) throw InputError(Printed("packet %zu cannot be written", packet));
  const char* with = options.repeated > 0 ? " with those that are repeated" : "";
  throw InputError(Printed("packet %zu needs %zu bytes%s, more than %zu", packet, needed, with, options.max_size));
}

// The datagrams into which one is split.
std::vector<std::string> Split(std::string_view datagram, ZunRtcpDialect dialect, const SplitOptions& options) {
  const LibraryPacket packet(datagram, dialect);
  if (!packet.ok()) {
    const ZunRtcpDecodeRefusal& refusal = packet.refusals().front();
    throw InputError(Printed("packet %zu at byte %zu: ", refusal.index, refusal.offset) +
                     ZunRtcpDecodeReasonGetText(refusal.reason));
  }
  if (options.repeated >= packet.size()) {
    throw InputError(Printed("it has only %s, so nothing follows those that are repeated",
                             Counted(packet.size(), "packet").c_str()));
  }
  const Prefix prefix(packet, options.repeated);
  std::vector<std::string> parts;
  for (ZunSizeT next = options.repeated; next < packet.size();) {
    std::string part(options.max_size, '\0');
    ZunSizeT size = 0;
    const ZunSizeT first = next;
    if (!ZunRtcpPacketEncodePart(packet.get(), part.data(), part.size(), dialect, first, prefix.get(), &next, &size)) {
      RefusePart(first, size, options);
    }
    part.resize(size);
    parts.push_back(part);
  }
  return parts;
}

class Splitter {
 public:
  Splitter(const SplitOptions& options, std::ostream* out) : options_(options), out_(out) {}

  // `make` gives the bytes of the next datagram.
  template <class Make>
  void Take(const std::string& name, ZunRtcpDialect dialect, Make make) {
    ++count_;
    try {
      for (const std::string& part : Split(make(), dialect, options_)) *out_ << HexDigits(part) << '\n';
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
    const ZunRtcpDialect dialect = DialectOf(datagram, options.dialect);
    splitter->Take(reader.name(), dialect, [&] { return EncodeDatagram(datagram, dialect); });
  }
  splitter->Finish(reader.name());
}

void SplitHex(const SplitOptions& options, Splitter* splitter) {
  HexReader reader(options.path);
  const ZunRtcpDialect dialect = options.dialect.value_or(ZUN_RTCP_DIALECT_REGISTERED);
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
