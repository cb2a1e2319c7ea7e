// Asks for lost packets: NACK for a gap, PLI when the gap is too large to be filled.
#include <iostream>

#include "Zun/Rtp/Cpp/Rtcp.h"

using namespace zun::rtcp;

// Watches the sequence numbers of one source.
class GapWatch {
 public:
  GapWatch(Ssrc us, Ssrc media, std::uint16_t first) : us_(us), media_(media), next_(first) {}

  // What to send now that this packet came: nothing, most of the time.
  Packet Arrived(std::uint16_t seq) {
    Packet feedback;
    const auto gap = static_cast<std::uint16_t>(seq - next_);
    if (gap >= 0x8000) return feedback;  // late, or sent again
    if (gap > kMostAskedFor) {
      (void)feedback.emplace<Pli>(us_, media_);
    } else if (gap > 0) {
      Nack nack(us_, media_);
      bool ok = true;
      for (std::uint16_t i = 0; i < gap; ++i) ok = ok && nack.add(static_cast<std::uint16_t>(next_ + i));
      if (!ok || !feedback.append(std::move(nack))) return feedback;  // no memory: asked for with the next gap
    }
    next_ = static_cast<std::uint16_t>(seq + 1);
    return feedback;
  }

 private:
  static constexpr std::uint16_t kMostAskedFor = 50;
  Ssrc us_;
  Ssrc media_;
  std::uint16_t next_;
};

int main() {
  GapWatch watch(0x11223344, 0x12345678, 65533);
  for (const std::uint16_t seq : std::initializer_list<std::uint16_t>{65533, 65534, 2, 1, 3, 500, 501}) {
    const Packet feedback = watch.Arrived(seq);
    if (feedback.empty()) continue;
    const auto datagram = feedback.encode();
    if (!datagram) return 1;
    std::cout << "after " << seq << ", " << datagram->size() << " octets: " << feedback << '\n';
  }
}
