// Makes bytes of what decode --json prints.
#ifndef TOOLS_ZUNRTCP_ENCODE_ENCODER_H
#define TOOLS_ZUNRTCP_ENCODE_ENCODER_H

#include <optional>
#include <string>

#include "tools/zunrtcp/Dialect.h"
#include "tools/zunrtcp/Encode/JsonField.h"

namespace zunrtcp {

// The bytes of a datagram. InputError, with the path of the field, when it cannot be written.
std::string EncodeDatagram(const JsonField& datagram, Dialect dialect);

// The dialect of a datagram: the one that is given, else the one that it names, else the registered one.
Dialect DialectOf(const JsonField& datagram, std::optional<Dialect> given);

}  // namespace zunrtcp

#endif
