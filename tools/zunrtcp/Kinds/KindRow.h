// All that the tool knows of one kind: a row, with a column for each thing that is done with kinds.
#ifndef TOOLS_ZUNRTCP_KINDS_KINDROW_H
#define TOOLS_ZUNRTCP_KINDS_KINDROW_H

#include <optional>
#include <string>

#include "tools/zunrtcp/Kinds/Description.h"
#include "tools/zunrtcp/Kinds/KindLevel.h"
#include "tools/zunrtcp/Kinds/Rewrite.h"
#include "tools/zunrtcp/Kinds/Rule.h"

namespace zunrtcp {

struct KindRow {
  // The kind, as the library lists it, and what tells the fields of an object of it. RowOf fills these in.
  const KindLevel* level = nullptr;
  ZunInt32 value = 0;
  void (*describe)(ObjectView object, Description* description) = nullptr;

  const char* name = nullptr;        // "NACK"
  const char* house_name = nullptr;  // where the registered dialect means another form by `name`; null when it does not
  const char* counted = nullptr;     // what the header counts, "chunk"; null when it counts nothing

  // Makes the bytes received those that the library is to write; null when they are the same but for the padding bit.
  void (*rewrite)(Rewrite* rewrite) = nullptr;
  // The rule by which the library refuses a body of this kind, or reads but does not write it; null when it never does.
  std::optional<Rule> (*why_refused)(const SubpacketView& subpacket) = nullptr;
  std::optional<Rule> (*why_unwritten)(const SubpacketView& subpacket) = nullptr;
  // A remark on a body that looks like the registered form of this number; empty for all others.
  std::string (*remark)(const SubpacketView& subpacket) = nullptr;

  const char* NameIn(Dialect dialect) const {
    return dialect == Dialect::registered && house_name != nullptr ? house_name : name;
  }
};

}  // namespace zunrtcp

#endif
