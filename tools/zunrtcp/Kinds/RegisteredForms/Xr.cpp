#include "tools/zunrtcp/Kinds/RegisteredForms/RegisteredForm.h"
#include "tools/zunrtcp/Kinds/RegisteredForms/XrBlocks.h"
#include "tools/zunrtcp/Text.h"

namespace zunrtcp {

using zun::rtcp::XrBlock;
using zun::rtcp::XrReport;

namespace {

constexpr std::size_t kBlocksOffset = kHeaderSize + kSourceSize;  // after the sender

const XrBlockRow* FindRow(const XrBlock& block) {
  if (!block.is_known()) return nullptr;
  for (const XrBlockRow& row : XrBlockRows()) {
    if (row.type == block.type()) return &row;
  }
  return nullptr;
}

void DescribeBlock(const XrBlock& block, std::size_t* packets_left, Description* description) {
  const XrBlockRow* row = FindRow(block);
  const std::string name = row != nullptr ? row->name : "block of type " + std::to_string(block.type());
  description->AddValue("type", block.type());
  description->AddValue("name", name);
  description->AddValue("typeSpecific", block.type_specific());
  description->AddWords(name);
  if (row != nullptr) return row->describe(block, packets_left, description);
  if (block.type_specific() != 0) description->AddWords(Printed("type specific 0x%02x", block.type_specific()));
  description->AddBytes("data", "data", block.octets());
}

}  // namespace

FormFault DescribeXr(const FormBytes& form, Description* description) {
  if (!form.object) return {};
  XrReport report(*form.object);
  if (!report) return {ZunRtcpDecodeReasonGetText(report.reason()), kHeaderSize};
  description->AddSource("sender", "sender", report.sender());
  description->AddList("blocks");
  for (const XrBlock& block : report) DescribeBlock(block, form.packets_left, &description->AddItem("blocks"));
  if (report.reason() == ZUN_RTCP_DECODE_REASON_NONE) return {};
  return {"a block passes the end of the report", kBlocksOffset + report.position()};
}

}  // namespace zunrtcp
