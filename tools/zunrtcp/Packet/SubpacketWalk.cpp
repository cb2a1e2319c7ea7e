#include "tools/zunrtcp/Packet/SubpacketWalk.h"

#include "tools/zunrtcp/Text.h"

namespace zunrtcp {

namespace {

constexpr unsigned kVersion = 2;

// With its header; what the length field announces.
std::size_t SubpacketSize(std::string_view rest) { return kHeaderSize + std::size_t{4} * U16At(rest, 2); }

// Why `rest`, the datagram from here on, does not begin with a whole subpacket; empty when it does.
std::string FaultOf(std::string_view rest) {
  if (rest.size() < kHeaderSize) {
    return Counted(rest.size(), "byte") + " after the last subpacket, fewer than a header has";
  }
  if (const unsigned version = U8At(rest, 0) >> 6; version != kVersion) {
    return Printed("version %u instead of %u", version, kVersion);
  }
  const std::size_t size = SubpacketSize(rest);
  if (size <= rest.size()) return {};
  return Printed("type %u announces %zu bytes, of which %zu are there", U8At(rest, 1), size, rest.size());
}

}  // namespace

SubpacketView SubpacketView::WithoutPadding() const {
  SubpacketView bare = *this;
  const std::size_t padding = registered() && padded() ? U8At(bytes, bytes.size() - 1) : 0;
  if (padding <= body().size()) bare.bytes.remove_suffix(padding);
  return bare;
}

SubpacketWalk WalkSubpackets(std::string_view datagram, Dialect dialect) {
  SubpacketWalk walk;
  for (std::size_t offset = 0; offset < datagram.size();) {
    const std::string_view rest = datagram.substr(offset);
    walk.fault = FaultOf(rest);
    if (!walk.fault.empty()) {
      walk.fault_offset = offset;
      break;
    }
    const std::size_t size = SubpacketSize(rest);
    walk.subpackets.push_back({walk.subpackets.size(), offset, rest.substr(0, size), dialect});
    offset += size;
  }
  return walk;
}

}  // namespace zunrtcp
