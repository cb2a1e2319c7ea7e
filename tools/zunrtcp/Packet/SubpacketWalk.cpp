#include "tools/zunrtcp/Packet/SubpacketWalk.h"

#include "tools/zunrtcp/Text.h"

namespace zunrtcp {

namespace {

// The size of the subpacket at `offset`; 0, with the fault noted, when there is no whole one.
std::size_t SubpacketSize(std::string_view datagram, std::size_t offset, std::string* fault) {
  const std::size_t left = datagram.size() - offset;
  if (left < 4) {
    *fault = Counted(left, "byte") + " behind the last subpacket, fewer than a header has";
    return 0;
  }
  if (const unsigned version = U8At(datagram, offset) >> 6; version != 2) {
    *fault = "version " + std::to_string(version) + " instead of 2";
    return 0;
  }
  const std::size_t size = 4 + 4U * U16At(datagram, offset + 2);
  if (size > left) {
    *fault = Printed("type %u announces %zu bytes, of which %zu are there", U8At(datagram, offset + 1), size, left);
    return 0;
  }
  return size;
}

}  // namespace

SubpacketWalk WalkSubpackets(std::string_view datagram) {
  SubpacketWalk walk;
  for (std::size_t offset = 0; offset < datagram.size();) {
    const std::size_t size = SubpacketSize(datagram, offset, &walk.fault);
    if (size == 0) {
      walk.faultOffset = offset;
      break;
    }
    walk.subpackets.push_back({walk.subpackets.size(), offset, datagram.substr(offset, size)});
    offset += size;
  }
  return walk;
}

}  // namespace zunrtcp
