// Words: those of the C++ face, and a few of the tool's own.
#ifndef TOOLS_ZUNRTCP_TEXT_H
#define TOOLS_ZUNRTCP_TEXT_H

#include <cstddef>
#include <cstdint>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "Zun/Rtp/Cpp/Words.h"

namespace zunrtcp {

using zun::rtcp::words::Counted;
using zun::rtcp::words::HexDigits;
using zun::rtcp::words::NtpWords;
using zun::rtcp::words::Printed;
using zun::rtcp::words::Quoted;
using zun::rtcp::words::SourceName;
using zun::rtcp::words::SourceNames;
using zun::rtcp::words::UtcTime;

// The words with `separator` between them.
std::string Joined(const std::vector<std::string>& words, std::string_view separator);

// The bytes as hex digits.
inline std::string HexDigits(std::string_view bytes) { return HexDigits(zun::rtcp::octets_of(bytes)); }

}  // namespace zunrtcp

#endif
