// What the tests of transport-wide feedback share: its packet infos in short, and its wire form made in another way.
#ifndef TESTS_ZUN_RTP_TRANSPORTFEEDBACK_TRANSPORTCCTESTS_H
#define TESTS_ZUN_RTP_TRANSPORTFEEDBACK_TRANSPORTCCTESTS_H

#include <gtest/gtest.h>

#include <cstddef>
#include <string>
#include <tuple>
#include <vector>

#include "tests/support/Samples.h"

namespace test {

using TransportCc = TEST_OBJECT(ZunRtcpRtpfbTransportCc);
using Info = ZunRtcpRtpfbTransportCcPacketInfo;
using Infos = std::vector<std::tuple<int, int, int>>;  // received, haveDelta, delta

inline constexpr ZunTime kNoTime = ZUN_RTCPRTPFB_TRANSPORTCC_NO_TIME;
inline constexpr ZunTime kMillisecond = 1000000;
inline constexpr ZunTime kSecond = 1000 * kMillisecond;

inline Infos InfosOf(const ZunRtcpRtpfbTransportCc* p) {
  Infos infos;
  for (const Info* i = p->packetInfo.begin; i != p->packetInfo.end; ++i) {
    infos.emplace_back(i->received, i->haveDelta, i->delta);
  }
  return infos;
}

// The packet infos that are read of statuses alone.
inline Infos Untimed(const std::string& statuses) {
  Infos infos;
  for (const char status : statuses) infos.emplace_back(status != '0', 0, 0);
  return infos;
}

inline bool Add(ZunRtcpRtpfbTransportCc* p, bool received, ZunTime ts, ZunUint16 seq = 1) {
  return ZunRtcpRtpfbTransportCcAddPacket(p, received, seq, ts) != 0;
}

inline void Push(ZunRtcpRtpfbTransportCc* p, const Info& info) {
  ASSERT_TRUE(ZunVector_ZunRtcpRtpfbTransportCcPacketInfoPushBack(&p->packetInfo, &info));
}

// Adds a packet info for each status: small deltas count up, large ones are negative and positive in turn.
inline void PushStatuses(ZunRtcpRtpfbTransportCc* p, const std::string& statuses) {
  int n = 0;
  for (const char status : statuses) {
    ++n;
    switch (status) {
      case '0':
        Push(p, {0, 0, 0});
        break;
      case '1':
        Push(p, {1, 1, static_cast<ZunInt16>(n % 256)});
        break;
      case '2':
        Push(p, {1, 1, static_cast<ZunInt16>(n % 2 == 0 ? -n % 32768 - 1 : 256 + n * 7 % 32512)});
        break;
      default:
        Push(p, {1, 0, 0});
        break;
    }
  }
}

// The wire form, made by the book: bits as text, and every rule put as a question about what is taken so far.
class ByTheBook {
 public:
  explicit ByTheBook(const ZunRtcpRtpfbTransportCc* p) : p_(p) {
    for (const Info* i = p->packetInfo.begin; i != p->packetInfo.end; ++i) statuses_ += StatusOf(*i);
    for (std::size_t at = 0; at < statuses_.size();) {
      std::string taken(1, statuses_[at++]);
      while (at < statuses_.size() && MayTake(taken, statuses_[at])) taken += statuses_[at++];
      chunks_ += ToWord(BitsOf(taken));
      if (!AllTheSame(taken) && !HasWide(taken) && taken.size() < 14 && at < statuses_.size()) ++early_vectors_;
    }
  }

  const std::string& statuses() const { return statuses_; }
  std::size_t chunk_bytes() const { return chunks_.size(); }
  // Whether a reader that takes every vector to be full understands it.
  bool reads_back() const { return early_vectors_ == 0; }
  // One-bit vectors that end early although more packets follow.
  std::size_t early_vectors() const { return early_vectors_; }

  std::string bytes() const {
    std::string body = Number(p_->sender, 4) + Number(p_->source, 4) + Number(p_->baseSeq, 2) +
                       Number(static_cast<long long>(statuses_.size() % 65536), 2) + Number(p_->refTime, 3) +
                       Number(p_->packetCount, 1) + chunks_;
    for (std::size_t i = 0; i < statuses_.size(); ++i) {
      if (statuses_[i] == '1') body += Number(p_->packetInfo.begin[i].delta, 1);
      if (statuses_[i] == '2') body += Number(p_->packetInfo.begin[i].delta, 2);
    }
    while (body.size() % 4 != 0) body += '\0';
    return std::string("\x8F\xCD") + Number(static_cast<long long>(body.size() / 4 % 65536), 2) + body;
  }

  // What reading it back gives: a large delta is not read as it was written when its low byte is 0x80 or more.
  Infos read() const {
    Infos infos;
    for (std::size_t i = 0; i < statuses_.size(); ++i) {
      int delta = statuses_[i] == '1' || statuses_[i] == '2' ? p_->packetInfo.begin[i].delta : 0;
      if (statuses_[i] == '2' && (delta & 0xFF) >= 128) delta = (delta & 0xFF) - 256;
      infos.emplace_back(statuses_[i] != '0', statuses_[i] == '1' || statuses_[i] == '2', delta);
    }
    return infos;
  }

 private:
  static char StatusOf(const Info& info) {
    if (info.received == 0) return '0';
    if (info.haveDelta == 0) return '3';
    return info.delta >= 0 && info.delta <= 255 ? '1' : '2';
  }
  static bool IsWide(char status) { return status == '2' || status == '3'; }
  static bool HasWide(const std::string& taken) { return taken.find_first_of("23") != std::string::npos; }
  static bool AllTheSame(const std::string& taken) { return taken.find_first_not_of(taken[0]) == std::string::npos; }

  static bool MayTake(const std::string& taken, char next) {
    const bool for_any = taken.size() < 7;
    const bool for_bits = taken.size() < 14 && !IsWide(next) && !HasWide(taken);
    return for_any || for_bits || (taken.size() < 8191 && next == taken[0] && AllTheSame(taken));
  }

  static std::string BitsOf(const std::string& taken) {
    const auto binary = [](std::size_t value, std::size_t width) {
      std::string bits;
      for (; width > 0; --width) bits += (value >> (width - 1)) % 2 == 1 ? '1' : '0';
      return bits;
    };
    if (AllTheSame(taken)) return "0" + binary(static_cast<std::size_t>(taken[0] - '0'), 2) + binary(taken.size(), 13);
    std::string bits = HasWide(taken) ? "11" : "10";
    for (const char status : taken) bits += binary(static_cast<std::size_t>(status - '0'), HasWide(taken) ? 2 : 1);
    return bits;
  }
  static std::string ToWord(std::string bits) {
    bits.resize(16, '0');
    return Number(std::stoi(bits, nullptr, 2), 2);
  }
  static std::string Number(long long value, int width) {
    std::string bytes;
    for (; width > 0; --width, value >>= 8) bytes.insert(bytes.begin(), static_cast<char>(value));
    return bytes;
  }

  const ZunRtcpRtpfbTransportCc* p_;
  std::string statuses_;
  std::string chunks_;
  std::size_t early_vectors_ = 0;
};

// Writes `p` and compares with the naive wire form; reads it back where that can be.
inline void ExpectWrittenByTheBook(const TransportCc& p) {
  const ByTheBook naive(p.get());
  const std::string bytes = p.bytes();
  ASSERT_EQ(ToHex(bytes), ToHex(naive.bytes())) << naive.statuses();
  ASSERT_EQ(ZunRtcpRtpfbTransportCcGetPacketLength(p.sp()), bytes.size());
  ASSERT_EQ(ZunRtcpRtpfbTransportCcGetPacketLength_(p.get()), bytes.size());
  if (!naive.reads_back() || naive.statuses().size() > 65535) return;
  TransportCc back;
  ASSERT_TRUE(back.Read(bytes));
  ASSERT_EQ(InfosOf(back), naive.read()) << naive.statuses();
  ASSERT_EQ(back->baseSeq, p.get()->baseSeq);
  ASSERT_EQ(back->packetCount, p.get()->packetCount);
}

// The beginning of a message with so many statuses.
inline std::string Head(const std::string& count) { return "8FCD0000 00000001 00000002 0003" + count + "00000405"; }

// The sample with chunks and deltas of all kinds: where its deltas begin and end, and its packet infos.
inline constexpr std::size_t kMixedDeltas = 26;  // where they begin
inline constexpr std::size_t kMixedZeros = 46;   // and end

inline Infos MixedInfos() {
  Infos infos;
  for (int i = 1; i <= 13; ++i) infos.emplace_back(1, 1, i);
  for (const int delta : {255, 300, 17, -1, 18}) infos.emplace_back(1, 1, delta);
  for (int i = 0; i < 11; ++i) infos.emplace_back(0, 0, 0);
  return infos;
}

}  // namespace test

#endif
