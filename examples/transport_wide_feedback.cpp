// Transport-wide feedback: a receiver tells when packets came, and the sender reads what happened to them.
#include <iostream>

#include "Zun/Rtp/Cpp/Rtcp.h"

using namespace zun::rtcp;
using namespace std::chrono_literals;

// The receiver: records what arrives, and encodes what there is when it is time.
static Result<std::vector<std::byte>, EncodeError> Receive() {
  TransportCc feedback(0x11223344, 0x12345678);
  feedback.packet_count(1);
  bool ok = feedback.record(65534, 640ms);
  ok = ok && feedback.record(65535, 645ms);
  ok = ok && feedback.record(1, 661500us);  // 0 is lost
  ok = ok && feedback.record(2, 661750us);
  Packet packet;
  if (!ok || !packet.append(std::move(feedback))) return EncodeError::no_room(0);
  return packet.encode();
}

// The sender: knows when it sent each packet, and learns when they came, on the receiver's clock.
static void Read(View<TransportCc> feedback) {
  std::optional<std::chrono::nanoseconds> first;
  feedback.for_each_arrival([&](const Arrival& arrival) {
    std::cout << "packet " << arrival.seq;
    if (!arrival.time) {
      std::cout << (arrival.received ? ": arrived\n" : ": lost\n");
      return;
    }
    if (!first) first = arrival.time;
    std::cout << ": after " << std::chrono::duration<double, std::milli>(*arrival.time - *first).count() << " ms\n";
  });
}

int main() {
  const auto datagram = Receive();
  Packet packet;
  if (!datagram || !packet.decode(*datagram)) return 1;
  for (View<Subpacket> subpacket : packet) {
    std::cout << subpacket << '\n';
    visit(subpacket, Overloaded{[](View<TransportCc> feedback) { Read(feedback); },
                                [](const auto&) { std::cout << "something else\n"; }});
  }
}
