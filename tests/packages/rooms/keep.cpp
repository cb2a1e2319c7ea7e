// The same with the C++ face: a packet whose room is left out is an Unknown, or an UnknownPsfb, for all who ask. Of all
// other packets it prints what the face tells of them.
#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <iostream>
#include <string>
#include <vector>

#include "Zun/Rtp/Cpp/Rtcp.h"

using namespace zun::rtcp;

namespace {

constexpr std::size_t kHeader = 4;
constexpr std::size_t kFeedbackHeader = 12;

struct Datagram {
  std::string name;
  std::vector<std::byte> octets;

  int type() const { return std::to_integer<int>(octets[1]); }
  int count() const { return std::to_integer<int>(octets[0]) & 31; }
  std::span<const std::byte> from(std::size_t begin) const { return std::span(octets).subspan(begin); }
};

[[noreturn]] void Fail(const Datagram& d, const char* what) {
  std::cerr << d.name << ": " << what << '\n';
  std::exit(1);
}

// 200 to 204 are one room; 206 has a room of its own inside, that of FMT 15.
bool IsLeftOut(const Datagram& d) {
  const int type = d.type();
  if (type >= 200 && type <= 204) return !ZUN_RTCP_HAS_REPORTS;
  if (type == 205) return !ZUN_RTCP_HAS_TRANSPORT_FEEDBACK;
  if (type != 206) return false;
  return !ZUN_RTCP_HAS_PAYLOAD_FEEDBACK || (d.count() == 15 && !ZUN_RTCP_HAS_APPLICATION_FEEDBACK);
}

bool AreSame(std::span<const std::byte> a, std::span<const std::byte> b) { return std::ranges::equal(a, b); }

bool IsKept(View<Subpacket> subpacket, const Datagram& d) {
#if ZUN_RTCP_HAS_PAYLOAD_FEEDBACK
  if (d.type() == 206) {
    const auto psfb = get_if<UnknownPsfb>(subpacket);
    return psfb && !holds<Unknown>(subpacket) && psfb->fmt() == 15 && AreSame(psfb->data(), d.from(kFeedbackHeader));
  }
#endif
  const auto unknown = get_if<Unknown>(subpacket);
  return unknown && unknown->type() == d.type() && unknown->subtype() == d.count() &&
         AreSame(unknown->data(), d.from(kHeader));
}

std::span<const std::byte> OctetsOf(const View<Unknown>& unknown) { return unknown.data(); }
#if ZUN_RTCP_HAS_PAYLOAD_FEEDBACK
std::span<const std::byte> OctetsOf(const View<UnknownPsfb>& unknown) { return unknown.data(); }
#endif
template <class Other>
std::span<const std::byte> OctetsOf(const Other&) {
  return {};
}

void ExpectKept(const Packet& packet, const Datagram& d, Dialect dialect, const char* after) {
  if (packet.size() != 1 || !IsKept(packet[0], d)) Fail(d, after);
  const auto visited = visit(packet[0], [](const auto& object) { return OctetsOf(object); });
  if (!AreSame(visited, d.from(d.type() == 206 && ZUN_RTCP_HAS_PAYLOAD_FEEDBACK ? kFeedbackHeader : kHeader)))
    Fail(d, "is visited as another");
  const auto written = packet.encode(dialect);
  if (!written || !AreSame(*written, d.octets)) Fail(d, "is not written as it came");
}

void Keep(const Datagram& d, Dialect dialect, Packet* used) {
  Packet packet;
  if (!packet.decode(d.octets, {.dialect = dialect})) Fail(d, "is refused");
  ExpectKept(packet, d, dialect, "is not kept");
  Packet copy = packet;
  ExpectKept(copy, d, dialect, "is not copied");
  Packet other(*used, system_allocator());
  if (!other.assign(packet)) Fail(d, "cannot be assigned");
  ExpectKept(other, d, dialect, "is not assigned over another");
  if (!used->decode(d.octets, {.dialect = dialect})) Fail(d, "is refused over another");
  ExpectKept(*used, d, dialect, "is not kept over another");
  const Packet moved = std::move(*used);
  *used = Packet();
  ExpectKept(moved, d, dialect, "is not moved");
  Packet appended;
  if (!appended.append(moved[0]) || !appended.append(Subpacket(moved[0]))) Fail(d, "cannot be appended");
  appended.erase(0);
  ExpectKept(appended, d, dialect, "is not appended");
  if (to_string(packet[0]).find("data ") == std::string::npos && d.octets.size() > kFeedbackHeader)
    Fail(d, "is not printed with its octets");
}

std::vector<std::byte> FromHex(const std::string& hex) {
  std::vector<std::byte> octets;
  for (std::size_t i = 0; i + 1 < hex.size(); i += 2)
    octets.push_back(static_cast<std::byte>(std::stoi(hex.substr(i, 2), nullptr, 16)));
  return octets;
}

}  // namespace

int main() {
  Packet used;
  int kept = 0;
  Datagram d;
  for (std::string hex; std::cin >> d.name >> hex;) {
    d.octets = FromHex(hex);
    for (const Dialect dialect : {Dialect::house, Dialect::registered}) {
      if (IsLeftOut(d)) {
        Keep(d, dialect, &used);
        ++kept;
      } else if (const auto decoded = used.decode(d.octets, {.dialect = dialect})) {
        std::cout << d.name << ' ' << used << '\n';
      } else {
        std::cout << d.name << ' ' << decoded.error() << '\n';
      }
    }
  }
  std::cerr << kept << " packets of rooms that are left out are kept by the C++ face, in each dialect one\n";
  return 0;
}
