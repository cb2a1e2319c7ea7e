#include "tools/zunrtcp/Capture/Reassembler.h"

#include <utility>

namespace zunrtcp {

namespace {

constexpr std::size_t kMostPackets = 256;  // of 64 KB at most, so 16 MB
constexpr std::size_t kMostBytes = 65535;

}  // namespace

std::optional<std::string> Reassembler::Add(Fragment fragment) {
  ++left_;
  const std::string key = fragment.packet;
  if (!packets_.contains(key)) {
    MakeRoom();
    oldest_.push_back(key);
  }
  Packet& packet = packets_[key];
  ++packet.fragments;
  AddPiece(std::move(fragment), &packet);
  std::optional<std::string> payload = PayloadOf(packet);
  if (!payload) return std::nullopt;
  left_ -= packet.fragments;
  packets_.erase(key);
  std::erase(oldest_, key);
  return payload;
}

void Reassembler::MakeRoom() {
  if (packets_.size() < kMostPackets) return;
  packets_.erase(oldest_.front());
  oldest_.pop_front();
}

void Reassembler::AddPiece(Fragment&& fragment, Packet* packet) {
  const std::size_t end = fragment.offset + fragment.bytes.size();
  if (!fragment.is_whole || end > kMostBytes) packet->is_given_up = true;
  if (fragment.is_last && packet->size && *packet->size != end) packet->is_given_up = true;
  if (packet->is_given_up) return packet->pieces.clear();
  if (fragment.is_last) packet->size = end;
  const auto [piece, is_new] = packet->pieces.try_emplace(fragment.offset, std::move(fragment.bytes));
  if (is_new || piece->first + piece->second.size() == end) return;
  packet->is_given_up = true;
  packet->pieces.clear();
}

std::optional<std::string> Reassembler::PayloadOf(const Packet& packet) {
  if (!packet.size) return std::nullopt;
  std::string payload;
  for (const auto& [offset, bytes] : packet.pieces) {
    if (offset != payload.size()) return std::nullopt;
    payload += bytes;
  }
  if (payload.size() != *packet.size) return std::nullopt;
  return payload;
}

}  // namespace zunrtcp
