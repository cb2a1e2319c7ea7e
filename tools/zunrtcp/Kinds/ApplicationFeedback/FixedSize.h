// What the messages of a fixed size share: ABAFB, ALBR and SHOWACK.
#ifndef TOOLS_ZUNRTCP_KINDS_APPLICATIONFEEDBACK_FIXEDSIZE_H
#define TOOLS_ZUNRTCP_KINDS_APPLICATIONFEEDBACK_FIXEDSIZE_H

#include "tools/zunrtcp/Kinds/FeedbackLayout.h"
#include "tools/zunrtcp/Kinds/Rewrite.h"

namespace zunrtcp {

// What stands after the fields, which take `kFieldsSize` bytes, is not kept.
template <std::size_t kFieldsSize>
void RewriteFixedSize(Rewrite* rewrite) {
  constexpr std::size_t kSize = kAfbBodyOffset + kFieldsSize;
  rewrite->PutRest(kSize, "", Rule::BytesAfterFields);
  rewrite->PutLength(kSize);
}

}  // namespace zunrtcp

#endif
