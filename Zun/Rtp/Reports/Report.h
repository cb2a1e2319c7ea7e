// What sender and receiver reports have in common: the fields that own memory, and all of the wire form but the
// fields in front of the report blocks.
#ifndef ZUN_RTP_REPORTS_REPORT_H
#define ZUN_RTP_REPORTS_REPORT_H

#include "Zun/Rtp/Core/Row.h"
#include "Zun/Rtp/Reports/ReportBlocks.h"

namespace zun {

// Fields gives what stands between the common header and the report blocks:
//   static constexpr ZunRtcpSubpacketType kType;             the kind's packet type
//   static constexpr ZunSizeT kSize;                         of the fields on the wire
//   static void Write(FieldWriter& f, const Kind& p);
//   static bool Read(auto& reader, Kind* p);                 as BodyReader::Fields takes it
template <class Kind, class Fields>
struct Report {
  using Blocks = VectorOfZunRtcpReportBlock;
  using Owned = zun::Owned<&Kind::report_blocks, &Kind::profile_specific_ext>;

  static Kind* ConstructDefault(Kind* p, ZunAllocator* a) {
    *p = Kind{};
    Owned::ConstructDefault(p, a);
    return IsSubpacket(Fields::kType).Mark(p);
  }

  static bool SetReportBlocks(Kind* p, const ZunVector_ZunRtcpReportBlock* blocks) {
    return Blocks::Assign(&p->report_blocks, blocks) != nullptr;
  }

  // An extension is a whole number of words (RFC 3550, section 6.4.3).
  static bool SetProfileSpecificExt(Kind* p, const ZunString* ext) {
    return ext->size % 4 == 0 && ZunStringAssign(&p->profile_specific_ext, ext) != nullptr;
  }

  static ZunSizeT Length(const Kind& p) {
    return kSubpacketHeaderSize + Fields::kSize + ReportBlocksLength(p.report_blocks) + p.profile_specific_ext.size;
  }

  static constexpr bool kLooksWhileItWrites = true;
  static ZunRtcpEncodeReason FindUnencodable(const Kind& p, ZunRtcpDialect) {
    const ZunRtcpEncodeReason reason = FindUnencodableSize(p);
    if (reason != ZUN_RTCP_ENCODE_REASON_NONE) return reason;
    ZunUint32 excess = 0;
    for (const ZunRtcpReportBlock* x = p.report_blocks.begin; x != p.report_blocks.end; ++x) excess |= ExcessOf(*x);
    return excess != 0 ? ZUN_RTCP_ENCODE_REASON_VALUE : ZUN_RTCP_ENCODE_REASON_NONE;
  }

  // Any number of blocks is written, and its low 8 bits are the count: above 31 it spills out of the count field.
  template <class Writer>
  static bool Write(const Kind& p, Writer& w, bool pad) {
    if (w.out().IsBlock() && FindUnencodableSize(p) != ZUN_RTCP_ENCODE_REASON_NONE) return false;
    const ZunSizeT length = Length(p);
    const ZunUint8 count = static_cast<ZunUint8>(Blocks::Size(&p.report_blocks) & 0xFF);
    const ZunUint32 word = SubpacketHeaderWord(pad, count, p.type, length);
    return w.template Fields<kSubpacketHeaderSize + Fields::kSize>([word, &p](FieldWriter& f) {
      f.U32(word);
      Fields::Write(f, p);
    }) && (w.out().IsBlock() ? WriteReportBlocksThatFit(w, p.report_blocks) : WriteReportBlocks(w, p.report_blocks)) &&
           w.String(p.profile_specific_ext);
  }

  template <class Reader>
  static bool Read(Kind* p, Reader& r, const Body& body) {
    return r.template Fields<Fields::kSize>([p](auto& f) { return Fields::Read(f, p); }) &&
           ReadReportBlocks(r, body.header.count, &p->report_blocks) && r.StringToEnd(&p->profile_specific_ext);
  }

  // Where only the extension is refused by `a`, a copy with the allocator of `o` is better than none.
  static Kind* CopyWithAllocator(Kind* p, const Kind* o, ZunAllocator* a) {
    ConstructDefault(p, a);
    if (Blocks::Assign(&p->report_blocks, &o->report_blocks) == nullptr) return nullptr;
    if (ZunStringAssign(&p->profile_specific_ext, &o->profile_specific_ext) == nullptr) {
      Owned::Destruct(p);
      return IsSubpacket(Fields::kType).Mark(Owned::ConstructCopy(p, o));
    }
    Owned::AssignPlainFields(p, o);
    return IsSubpacket(Fields::kType).Mark(p);
  }

 private:
  static ZunRtcpEncodeReason FindUnencodableSize(const Kind& p) {
    if (Blocks::Size(&p.report_blocks) > kMaxReportBlocks) return ZUN_RTCP_ENCODE_REASON_TOO_MANY;
    return p.profile_specific_ext.size % 4 != 0 ? ZUN_RTCP_ENCODE_REASON_NOT_WHOLE_WORDS : ZUN_RTCP_ENCODE_REASON_NONE;
  }
};

}  // namespace zun

// All functions of a report that its fields make no difference to. Wire is the kind's Report.
#define ZUN_RTCP_REPORT_DEFINE(Kind, Wire)                                                                           \
  Kind* Kind##ConstructDefault(Kind* p, ZunAllocator* a) { return Wire::ConstructDefault(p, a); }                    \
  ZunBool Kind##SetReportBlocks(Kind* p, const ZunVector_ZunRtcpReportBlock* blocks) {                               \
    return Wire::SetReportBlocks(p, blocks);                                                                         \
  }                                                                                                                  \
  ZunBool Kind##SetProfileSpecificExt(Kind* p, const ZunString* ext) { return Wire::SetProfileSpecificExt(p, ext); } \
  ZUN_RTCP_OWNING_KIND_DEFINE(Kind, kIdentity, &Kind::report_blocks, &Kind::profile_specific_ext)                    \
  ZUN_RTCP_ROW_DEFINE(Kind, Wire)

#endif
