#include "tools/zunrtcp/Filter.h"

#include <strings.h>

#include <algorithm>
#include <charconv>
#include <cmath>
#include <ctime>

namespace zunrtcp {

namespace {

using Value = Description::Value;

constexpr std::int64_t kMicroseconds = 1000000;
constexpr double kMostSeconds = 1e10;

std::optional<double> ParseNumber(std::string_view text) {
  double number = 0;
  const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), number);
  const bool is_whole = error == std::errc() && end == text.data() + text.size();
  return is_whole && number >= 0 && number <= kMostSeconds ? std::optional(number) : std::nullopt;
}

std::int64_t MicrosecondsOf(double seconds) { return std::llround(seconds * static_cast<double>(kMicroseconds)); }

// Whether an SSRC stands anywhere in what is told of a subpacket.
bool Mentions(const Value& value, const std::set<std::uint32_t>& sources) {
  if (value.is_array()) {
    return std::ranges::any_of(value, [&](const Value& item) { return Mentions(item, sources); });
  }
  if (!value.is_object()) return false;
  for (const auto& [key, inner] : value.items()) {
    if (inner.is_number_unsigned() && (key == "sender" || key == "source")) {
      if (sources.contains(inner.get<std::uint32_t>())) return true;
    } else if (key == "sources" && inner.is_array()) {
      for (const Value& source : inner) {
        if (sources.contains(source.get<std::uint32_t>())) return true;
      }
    } else if (Mentions(inner, sources)) {
      return true;
    }
  }
  return false;
}

bool WasRefused(Outcome outcome) { return outcome == Outcome::RefusedByRule || outcome == Outcome::RefusedUnexplained; }

}  // namespace

std::optional<TimeLimit> ParseTimeLimit(const std::string& text) {
  if (const std::optional<double> seconds = ParseNumber(text)) return TimeLimit{true, MicrosecondsOf(*seconds)};
  std::tm parts{};
  const char* rest = strptime(text.c_str(), "%Y-%m-%d", &parts);
  if (rest == nullptr || (*rest != 'T' && *rest != ' ')) return std::nullopt;
  rest = strptime(rest + 1, "%H:%M:%S", &parts);
  if (rest == nullptr) return std::nullopt;
  const std::string fraction = *rest == '\0' ? "0" : "0" + std::string(rest);
  const std::optional<double> part = *rest == '\0' || *rest == '.' ? ParseNumber(fraction) : std::nullopt;
  if (!part) return std::nullopt;
  return TimeLimit{false, timegm(&parts) * kMicroseconds + MicrosecondsOf(*part)};
}

std::optional<std::uint32_t> ParseSource(const std::string& text) {
  const bool is_hex = text.starts_with("0x") || text.starts_with("0X");
  std::uint32_t source = 0;
  const char* const end = text.data() + text.size();
  const auto [stopped, error] = std::from_chars(text.data() + (is_hex ? 2 : 0), end, source, is_hex ? 16 : 10);
  return error == std::errc() && stopped == end ? std::optional(source) : std::nullopt;
}

bool Filter::Passes(const DecodedDatagram& decoded) const {
  if (!IsInTime(decoded.datagram)) return false;
  if (!AsksForSubpackets()) return true;
  if (decoded.srtcp) return types.empty() && !only_refused && sources.contains(decoded.srtcp->sender);
  if (types.empty() && sources.empty()) return WasRefused(decoded.verdict.outcome);
  return std::ranges::any_of(decoded.subpackets, [&](const DecodedSubpacket& each) { return Passes(each); });
}

bool Filter::IsInTime(const RtcpDatagram& datagram) const {
  const std::int64_t time = datagram.seconds * kMicroseconds + datagram.microseconds;
  const auto time_like = [&](const TimeLimit& limit) { return limit.is_relative ? datagram.since_start : time; };
  return (!from || time_like(*from) >= from->microseconds) && (!to || time_like(*to) <= to->microseconds);
}

bool Filter::Passes(const DecodedSubpacket& subpacket) const {
  return (!only_refused || subpacket.is_refused) && (types.empty() || HasType(subpacket)) &&
         (sources.empty() || HasSource(subpacket));
}

bool Filter::HasSource(const DecodedSubpacket& subpacket) const {
  const bool has_first = subpacket.view.bytes.size() >= kHeaderSize + kSourceSize;
  if (has_first && sources.contains(U32At(subpacket.view.bytes, kHeaderSize))) return true;
  return Mentions(subpacket.description.ToValue(), sources);
}

bool Filter::HasType(const DecodedSubpacket& subpacket) const {
  const std::string type = std::to_string(subpacket.view.type());
  const std::string with_format = type + '/' + std::to_string(subpacket.view.count());
  const std::string word = subpacket.kind.substr(0, subpacket.kind.find(' '));
  return std::ranges::any_of(types, [&](const std::string& wanted) {
    return wanted == type || wanted == with_format || strcasecmp(wanted.c_str(), subpacket.kind.c_str()) == 0 ||
           strcasecmp(wanted.c_str(), word.c_str()) == 0;
  });
}

}  // namespace zunrtcp
