// Registered forms that no object of the library holds, read by the library's functions of their own.
#ifndef TOOLS_ZUNRTCP_KINDS_REGISTEREDFORMS_REGISTEREDFORM_H
#define TOOLS_ZUNRTCP_KINDS_REGISTEREDFORMS_REGISTEREDFORM_H

#include <cstddef>
#include <optional>

#include "tools/zunrtcp/Kinds/Description.h"
#include "tools/zunrtcp/Kinds/Rewrite.h"
#include "tools/zunrtcp/Packet/LibraryPacket.h"
#include "tools/zunrtcp/Packet/SubpacketWalk.h"

namespace zunrtcp {

struct FormBytes {
  const SubpacketView& view;
  const std::optional<ObjectView>& object;  // that keeps the body, when the library has one
  std::size_t* packets_left;  // how many packets may still be told of one by one; a few octets may stand for many
};

// What is wrong with a form.
struct FormFault {
  const char* reason = nullptr;  // in words; null when nothing is
  std::size_t position = 0;      // in the subpacket, where reading stopped
};

// Tells the fields of a form, those in front of a fault included.
using DescribeForm = FormFault (*)(const FormBytes& form, Description* description);

// What the library's functions for the form write of what they have read; nothing when they read or write none.
using WriteForm = std::optional<std::string> (*)(const SubpacketView& view);

FormFault DescribeXr(const FormBytes& form, Description* description);    // extended reports, RFC 3611
FormFault DescribeTmmb(const FormBytes& form, Description* description);  // TMMBR and TMMBN, RFC 5104, section 4.2
std::optional<std::string> WriteTmmb(const SubpacketView& view);
void RewriteTmmb(Rewrite* rewrite);

}  // namespace zunrtcp

#endif
