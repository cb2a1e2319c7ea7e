#include "tools/zunrtcp/WriteBack/Rewrite.h"

#include "tools/zunrtcp/Packet/KindName.h"

namespace zunrtcp {

void Rewrite::Put(std::size_t offset, std::size_t size, std::uint64_t value, Rule rule) {
  std::string field;
  AppendNumber(&field, value, size);
  if (BytesAt(bytes, offset, size) == field) return;
  bytes.replace(offset, size, field);
  rules.insert(rule);
}

void Rewrite::PutRest(std::size_t offset, const std::string& rest, Rule rule) {
  if (BytesAt(bytes, offset, bytes.size() - offset) == rest) return;
  bytes.replace(offset, bytes.size() - offset, rest);
  rules.insert(rule);
}

void Rewrite::PutLength(std::size_t size) {
  const std::size_t words = size / 4 - 1;
  bytes[2] = static_cast<char>(words >> 8 & 0xff);
  bytes[3] = static_cast<char>(words & 0xff);
}

void RewriteSubpacket(const SubpacketView& received, std::string* written, std::set<Rule>* rules) {
  Rewrite rewrite;
  rewrite.bytes = received.bytes;
  rewrite.base = written->size();
  rewrite.Put(0, 1, U8At(received.bytes, 0) & 0xdfU, Rule::PaddingBit);
  RewriteReports(received, &rewrite);
  RewriteTransportFeedback(received, &rewrite);
  RewritePayloadFeedback(received, &rewrite);
  RewriteApplicationFeedback(received, &rewrite);
  *written += rewrite.bytes;
  rules->merge(rewrite.rules);
}

}  // namespace zunrtcp
