// A packet into every capacity, whole and in parts: [flags] [first] datagram. What is written never passes the
// capacity, and the parts together are the whole.
#include <algorithm>
#include <vector>

#include "fuzz/Packets.h"

namespace {

using namespace fuzz;

constexpr ZunSizeT kBeyond = 8;

// Octets of the capacity, with some beyond that must stay.
class Block {
 public:
  explicit Block(ZunSizeT capacity) : capacity_(capacity), octets_(capacity + kBeyond, 0xEE) {}
  ~Block() {
    Check(std::all_of(octets_.begin() + static_cast<std::ptrdiff_t>(capacity_), octets_.end(),
                      [](std::uint8_t octet) { return octet == 0xEE; }),
          "octets beyond the capacity are not touched");
  }
  Block(const Block&) = delete;
  Block& operator=(const Block&) = delete;
  std::uint8_t* data() { return octets_.data(); }
  std::string First(ZunSizeT size) const { return {reinterpret_cast<const char*>(octets_.data()), size}; }

 private:
  ZunSizeT capacity_;
  std::vector<std::uint8_t> octets_;
};

void CheckWhole(const ZunRtcpPacket* p, ZunRtcpDialect dialect, const std::string& whole, ZunSizeT capacity) {
  Block block(capacity);
  ZunSizeT size = 12345;
  const bool ok = ZunRtcpPacketEncode(p, block.data(), capacity, dialect, &size) != 0;
  Check(size == whole.size(), "the size that is needed is told whatever the capacity");
  Check(ok == (!whole.empty() && whole.size() <= capacity), "what fits is encoded, and nothing else");
  if (ok) Check(block.First(size) == whole, "the octets do not depend on the capacity");
}

// All parts, each as large as the capacity allows.
void CheckParts(const ZunRtcpPacket* p, ZunRtcpDialect dialect, const std::string& whole, ZunSizeT capacity,
                const ZunVector_ZunRtcpSubpacket* prefix) {
  const ZunSizeT count = ZunRtcpPacketGetSubpacketCount(p);
  std::string all;
  for (ZunSizeT first = 0; first < count;) {
    Block block(capacity);
    ZunSizeT last = first;
    ZunSizeT size = 12345;
    if (!ZunRtcpPacketEncodePart(p, block.data(), capacity, dialect, first, prefix, &last, &size)) {
      Check(size == 0 || size > capacity, "a part that does not fit says what it needs");
      Check(last == first, "nothing is stored about a part that was not written");
      return;
    }
    Check(last > first && last <= count && size <= capacity, "every part makes progress and fits");
    first = last;
    all += block.First(size);
  }
  ZunSizeT last = 0;
  ZunSizeT size = 1;
  Check(!ZunRtcpPacketEncodePart(p, nullptr, 0, dialect, count, prefix, &last, &size) && size == 0,
        "after the last subpacket there is no part");
  if (prefix == nullptr && !whole.empty()) Check(all == whole, "the parts together are the whole");
}

void CheckFirstDoorParts(const ZunRtcpPacket* p, ZunSizeT max_size) {
  const std::string whole = Written(p);
  if (whole.empty()) return;
  Allocator allocator;
  String out(allocator);
  std::string all;
  const ZunSizeT count = ZunRtcpPacketGetSubpacketCount(p);
  for (ZunSizeT first = 0; first < count;) {
    ZunSizeT last = first;
    if (!ZunRtcpPacketGetPartialNetworkPacket(p, out, first, max_size, nullptr, &last)) return;
    Check(last > first && last <= count, "every partial packet makes progress");
    Check(last == first + 1 || out->size <= max_size || Holds(p, IsLir),
          "a partial packet of several is not too large");
    first = last;
    all += out.str();
  }
  Check(all == whole, "the partial packets together are the whole");
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  Input input(data, size);
  const std::uint8_t flags = input.U8();
  const std::size_t step = 1 + input.Below(16);
  const Octets octets = input.Rest();
  Allocator allocator;
  Packet p(allocator);
  (void)Decode(p, octets, DialectOf(flags), OptionsOf(flags));
  const ZunRtcpDialect dialect = DialectOf(static_cast<std::uint8_t>(flags >> 3));
  const std::string whole = Encoded(p, dialect);
  const ZunSizeT most = std::min<ZunSizeT>(whole.size() + 4, 512);
  for (ZunSizeT capacity = 0; capacity <= most; capacity += step) {
    CheckWhole(p, dialect, whole, capacity);
    CheckParts(p, dialect, whole, capacity, nullptr);
    CheckFirstDoorParts(p, capacity);
  }
  if (p.count() < 2) return 0;
  ZunVector_ZunRtcpSubpacket prefix;
  Check(ZunVector_ZunRtcpSubpacketConstructN(&prefix, 1, &p[0], allocator) != nullptr, "a list of one can be built");
  for (ZunSizeT capacity = 0; capacity <= 2 * most; capacity += 4 * step)
    CheckParts(p, dialect, whole, capacity, &prefix);
  ZunVector_ZunRtcpSubpacketDestruct(&prefix);
  return 0;
}
