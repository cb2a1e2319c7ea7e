// Makes bytes of what decode --json prints.
#ifndef TOOLS_ZUNRTCP_ENCODE_ENCODER_H
#define TOOLS_ZUNRTCP_ENCODE_ENCODER_H

#include <string>

#include "Zun/Rtp/Core/ZunRtcpDialect.h"
#include "tools/zunrtcp/Encode/JsonField.h"

namespace zunrtcp {

// The bytes of a datagram. InputError, with the path of the field, when it cannot be written.
std::string EncodeDatagram(const JsonField& datagram, ZunRtcpDialect dialect);

}  // namespace zunrtcp

#endif
