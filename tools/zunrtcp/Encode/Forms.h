// Builds registered forms that no object holds from JSON.
#ifndef TOOLS_ZUNRTCP_ENCODE_FORMS_H
#define TOOLS_ZUNRTCP_ENCODE_FORMS_H

#include <string>

#include "Zun/Rtp/Cpp/Packet.h"
#include "Zun/Rtp/Cpp/Tmmb.h"
#include "tools/zunrtcp/Encode/JsonField.h"

namespace zunrtcp {

// The octets of a TMMBR or TMMBN (RFC 5104).
std::string EncodeTmmb(const JsonField& packet, ZunRtcpTmmbType type);

// Appends an extended report (RFC 3611).
void AppendXr(const JsonField& field, zun::rtcp::Packet* packet);

}  // namespace zunrtcp

#endif
