// The dialects, and what they are called in options and in JSON.
#ifndef TOOLS_ZUNRTCP_DIALECT_H
#define TOOLS_ZUNRTCP_DIALECT_H

#include <string_view>

#include "Zun/Rtp/Cpp/Dialect.h"

namespace zunrtcp {

using zun::rtcp::Dialect;

// That of all other names is the registered one.
inline Dialect DialectNamed(std::string_view name) { return name == "house" ? Dialect::house : Dialect::registered; }

}  // namespace zunrtcp

#endif
