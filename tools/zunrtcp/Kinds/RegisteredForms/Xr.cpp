#include "tools/zunrtcp/Kinds/RegisteredForms/RegisteredForm.h"
#include "tools/zunrtcp/Kinds/RegisteredForms/XrBlocks.h"
#include "tools/zunrtcp/Text.h"

namespace zunrtcp {

namespace {

constexpr std::size_t kBlocksOffset = kHeaderSize + kSourceSize;  // after the sender

const XrBlockRow* FindRow(const ZunRtcpXrBlock& block) {
  if (!block.isKnown) return nullptr;
  for (const XrBlockRow& row : XrBlockRows()) {
    if (row.type == block.type) return &row;
  }
  return nullptr;
}

void DescribeBlock(const ZunRtcpXrBlock& block, std::size_t* packets_left, Description* description) {
  const XrBlockRow* row = FindRow(block);
  const std::string name = row != nullptr ? row->name : "block of type " + std::to_string(block.type);
  description->AddValue("type", block.type);
  description->AddValue("name", name);
  description->AddValue("typeSpecific", block.typeSpecific);
  description->AddWords(name);
  if (row != nullptr) return row->describe(block, packets_left, description);
  if (block.typeSpecific != 0) description->AddWords(Printed("type specific 0x%02x", block.typeSpecific));
  description->AddBytes("data", "data", {reinterpret_cast<const char*>(block.octets), block.size});
}

}  // namespace

FormFault DescribeXr(const FormBytes& form, Description* description) {
  if (form.object == nullptr) return {};
  ZunRtcpXrReader reader;
  if (ZunRtcpXrReaderConstruct(&reader, form.object) == nullptr) {
    return {ZunRtcpDecodeReasonGetText(reader.reason), kHeaderSize};
  }
  description->AddSource("sender", "sender", reader.sender);
  description->AddList("blocks");
  ZunRtcpXrBlock block;
  while (ZunRtcpXrReaderNext(&reader, &block)) DescribeBlock(block, form.packets_left, &description->AddItem("blocks"));
  if (reader.reason == ZUN_RTCP_DECODE_REASON_NONE) return {};
  return {"a block passes the end of the report", kBlocksOffset + reader.position};
}

}  // namespace zunrtcp
