// Puts the fragments of IP packets together.
#ifndef TOOLS_ZUNRTCP_CAPTURE_REASSEMBLER_H
#define TOOLS_ZUNRTCP_CAPTURE_REASSEMBLER_H

#include <cstddef>
#include <deque>
#include <map>
#include <optional>
#include <string>

namespace zunrtcp {

struct Fragment {
  std::string packet;      // what the fragments of one packet share: addresses, protocol, identification
  std::size_t offset = 0;  // in the payload of the packet
  bool is_last = false;
  bool is_whole = true;  // the capture holds all of it
  std::string bytes;
};

class Reassembler {
 public:
  // The payload of the packet, when this fragment completes it. Fragments come in any order and more than once; a
  // packet whose fragments overlap otherwise is given up. So is the oldest of too many packets that never become whole.
  std::optional<std::string> Add(Fragment fragment);

  // How many of the fragments added are of no packet that became whole.
  std::size_t left() const { return left_; }

 private:
  struct Packet {
    std::map<std::size_t, std::string> pieces;  // by offset
    std::optional<std::size_t> size;            // known from the last fragment
    std::size_t fragments = 0;                  // that came, repeated ones too
    bool is_given_up = false;
  };

  void MakeRoom();
  static void AddPiece(Fragment&& fragment, Packet* packet);
  static std::optional<std::string> PayloadOf(const Packet& packet);

  std::map<std::string, Packet> packets_;
  std::deque<std::string> oldest_;  // keys of packets, in the order in which they began
  std::size_t left_ = 0;
};

}  // namespace zunrtcp

#endif
