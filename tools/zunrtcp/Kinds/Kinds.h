// The kinds that the tool knows, in a table for each level, and what there is to say about a subpacket of any kind.
#ifndef TOOLS_ZUNRTCP_KINDS_KINDS_H
#define TOOLS_ZUNRTCP_KINDS_KINDS_H

#include <array>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "tools/zunrtcp/Kinds/KindRow.h"
#include "tools/zunrtcp/Kinds/RegisteredForms/RegisteredForm.h"

namespace zunrtcp {

// A number that the library keeps as bytes, and of which there is something to say nonetheless.
struct UnmodelledKind {
  ZunInt32 value;
  const char* name;    // null when it is called by its number
  const char* remark;  // null when there is none
  // Reads a registered form that no object holds; null when it is shown as bytes.
  DescribeForm describe = nullptr;
  // Writes it where no object does, and makes the bytes received those that are then to be written; null where the
  // library has an object of its bytes.
  WriteForm write = nullptr;
  void (*rewrite)(Rewrite* rewrite) = nullptr;
};

// The kinds of one level.
struct KindTable {
  const KindLevel* level;
  std::span<const KindRow* const> rows;
  std::span<const UnmodelledKind> unmodelled;

  // Null when there is none. A row of another level is none.
  const KindRow* Find(ZunInt32 value) const;
  const UnmodelledKind* FindUnmodelled(ZunInt32 value) const;
};

extern const KindTable subpacket_kinds;
extern const KindTable rtpfb_kinds;
extern const KindTable psfb_kinds;
extern const KindTable afb_kinds;

// A kind without a row is called by its number, shown as bytes, and expected to be written back as it came; no row ever
// sees an object or bytes of another kind than its own.
class Kinds {
 public:
  Kinds(const KindTable& subpackets, const KindTable& rtpfb, const KindTable& psfb, const KindTable& afb)
      : tables_{subpackets, rtpfb, psfb, afb} {}

  // "SR", "NACK", "REMB"; "RTPFB FMT 11", "XR (type 207)" for what has no row.
  std::string NameOf(const SubpacketView& subpacket) const;
  // What the 5-bit field of the header says: "2 report blocks", "FMT 15", "subtype 3". Empty where the name says it.
  std::string CountWords(const SubpacketView& subpacket) const;
  // Both: "RR, 2 report blocks".
  std::string NameAndCount(const SubpacketView& subpacket) const;
  // A remark on a form whose registered number or layout is another than the library's; empty for all others.
  std::string RemarkOn(const SubpacketView& subpacket) const;

  // Tells the fields of an object that the library has read from the bytes.
  void Describe(ObjectView object, const SubpacketView& bytes, Description* description) const;

  // Tells the fields of a registered form that no object holds, from its bytes or the object that keeps these (none
  // when the library refused it), and what is wrong with it. Nothing when it is not one: Describe is for all others.
  std::optional<FormFault> DescribeRegisteredForm(const std::optional<ObjectView>& object, const SubpacketView& bytes,
                                                  std::size_t* packets_left, Description* description) const;

  // What the library writes of a form that no object holds; nothing when it is malformed, or no such form.
  std::optional<std::string> WriteRegisteredForm(const SubpacketView& bytes) const;

  // Makes the bytes received those that the library is to write; OctetsEnd when a field is not there.
  void Apply(const SubpacketView& received, Rewrite* rewrite) const;
  // The rule by which a body of its kind is not read, or not written.
  std::optional<Rule> WhyRefused(const SubpacketView& subpacket) const;
  std::optional<Rule> WhyUnwritten(const SubpacketView& subpacket) const;

  const std::array<KindTable, 4>& tables() const { return tables_; }

 private:
  struct Path;
  template <class Subpacket>
  Path PathOf(const Subpacket& subpacket) const;
  const KindRow* RowOfBytes(const SubpacketView& subpacket) const;

  std::array<KindTable, 4> tables_;  // each after the one around it
};

// All that the tool knows.
const Kinds& AllKinds();

}  // namespace zunrtcp

#endif
