// Builds registered forms that no object holds from JSON.
#ifndef TOOLS_ZUNRTCP_ENCODE_FORMS_H
#define TOOLS_ZUNRTCP_ENCODE_FORMS_H

#include <string>

#include "Zun/Rtp/Dialect/ZunRtcpCodec.h"
#include "tools/zunrtcp/Encode/JsonField.h"

namespace zunrtcp {

// The octets of a TMMBR or TMMBN (RFC 5104).
std::string EncodeTmmb(const JsonField& packet, ZunRtcpTmmbType type);

// Constructs an extended report (RFC 3611).
void BuildXr(const JsonField& packet, ZunRtcpSubpacket* object);

}  // namespace zunrtcp

#endif
