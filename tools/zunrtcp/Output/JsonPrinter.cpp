#include <nlohmann/json.hpp>

#include "tools/zunrtcp/Output/Printer.h"
#include "tools/zunrtcp/Text.h"

namespace zunrtcp {

namespace {

using Json = nlohmann::ordered_json;

bool IsRegistered(Dialect dialect) { return dialect == Dialect::registered; }

// The outcomes that there are in a dialect.
std::vector<Outcome> OutcomesIn(Dialect dialect) {
  if (IsRegistered(dialect)) return {Outcome::Read, Outcome::RefusedUnexplained, Outcome::CutOff};
  return {Outcome::Identical,     Outcome::Explained,          Outcome::Unexplained,
          Outcome::RefusedByRule, Outcome::RefusedUnexplained, Outcome::CutOff};
}

void PrintLine(std::ostream* out, const Json& value) { *out << value.dump() << '\n'; }

Json EndpointValue(const Endpoint& endpoint) { return {{"address", endpoint.address}, {"port", endpoint.port}}; }

Json PlaceValue(const RtcpDatagram& datagram) {
  Json value{{"datagram", datagram.number}};
  if (datagram.line > 0) {
    value["line"] = datagram.line;
  } else {
    value["record"] = datagram.record_number;
    value["recordOffset"] = datagram.record_offset;
    value["time"] = Printed("%lld.%06u", static_cast<long long>(datagram.seconds), datagram.microseconds);
  }
  if (datagram.source.address.empty()) return value;
  value["source"] = EndpointValue(datagram.source);
  value["destination"] = EndpointValue(datagram.destination);
  return value;
}

Json FoundAmong(const FrameCounts& frames, const std::string& path) {
  if (frames.lines > 0) return {{"text", path}, {"lines", frames.lines}};
  Json value{{"capture", path}, {"records", frames.records}, {"udp", frames.udp}};
  if (frames.rtp > 0) value["rtp"] = frames.rtp;
  value["fragments"] = frames.fragments;
  return value;
}

Json RefusalValue(const Refusal& refusal) {
  return {{"reason", refusal.reason},
          {"offset", refusal.offset},
          {"stoppedAt", refusal.stopped_at},
          {"bytesOffset", refusal.bytes_offset},
          {"bytes", HexDigits(refusal.bytes)}};
}

Json SubpacketValue(const DecodedSubpacket& subpacket) {
  Json value{{"kind", subpacket.kind},          {"type", subpacket.view.type()},
             {"count", subpacket.view.count()}, {"padded", subpacket.view.padded()},
             {"offset", subpacket.view.offset}, {"length", subpacket.view.bytes.size()}};
  if (subpacket.padding > 0) value["paddingLength"] = subpacket.padding;
  value.update(subpacket.description.ToValue());
  if (subpacket.refusal) value["refused"] = RefusalValue(*subpacket.refusal);
  if (!subpacket.remark.empty()) value["remark"] = subpacket.remark;
  return value;
}

Json VerdictValue(const Verdict& verdict) {
  Json value{{"outcome", OutcomeName(verdict.outcome)}, {"rules", Json::array()}, {"remarks", verdict.remarks}};
  for (const Rule rule : verdict.rules) value["rules"].push_back(Sentence(rule));
  return value;
}

}  // namespace

void JsonPrinter::Print(const DecodedDatagram& decoded) {
  const RtcpDatagram& datagram = decoded.datagram;
  Json value = PlaceValue(datagram);
  value["length"] = datagram.payload.size();
  if (IsRegistered(decoded.dialect)) value["dialect"] = "registered";
  value["subpackets"] = Json::array();
  for (const DecodedSubpacket& subpacket : decoded.subpackets) value["subpackets"].push_back(SubpacketValue(subpacket));
  if (decoded.fault) value["refused"] = RefusalValue(*decoded.fault);
  if (decoded.srtcp) {
    value["srtcp"] = {{"sender", decoded.srtcp->sender},
                      {"encrypted", decoded.srtcp->is_encrypted},
                      {"index", decoded.srtcp->index},
                      {"trailerLength", decoded.srtcp->trailer}};
  }
  value["log"] = decoded.messages;
  value["verdict"] = VerdictValue(decoded.verdict);
  PrintLine(out_, value);
}

void JsonPrinter::Print(const Totals& totals, const FrameCounts& frames, const std::string& path) {
  Json kinds = Json::object();
  for (const auto& [kind, count] : totals.kinds()) kinds[kind.second] = count;
  Json outcomes = Json::object();
  for (const Outcome outcome : OutcomesIn(dialect_)) {
    outcomes[OutcomeName(outcome)] = totals.Count(outcome);
  }
  if (const std::size_t srtcp = totals.Count(Outcome::Protected); srtcp > 0) {
    outcomes[OutcomeName(Outcome::Protected)] = srtcp;
  }
  Json rules = Json::object();
  for (const auto& [rule, count] : totals.rules()) rules[Sentence(rule)] = count;
  Json value = FoundAmong(frames, path);
  value["datagrams"] = totals.datagrams();
  if (totals.filtered() > 0) value["passedOver"] = totals.filtered();
  value["subpackets"] = totals.subpackets();
  value["kinds"] = kinds;
  value["outcomes"] = outcomes;
  value["rules"] = rules;
  if (IsRegistered(dialect_)) value["refusals"] = totals.refusals();
  PrintLine(out_, {{"totals", value}});
}

}  // namespace zunrtcp
