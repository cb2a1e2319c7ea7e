// What sender and receiver reports have in common: the members that own memory, and all of the wire form but the
// fields in front of the report blocks.
#ifndef ZUN_RTP_REPORTS_REPORT_H
#define ZUN_RTP_REPORTS_REPORT_H

#include "Zun/Rtp/Core/Row.h"
#include "Zun/Rtp/Reports/OwnedPair.h"
#include "Zun/Rtp/Reports/ReportBlocks.h"

namespace zun {

// Fields gives what stands between the common header and the report blocks:
//   static constexpr ZunRtcpSubpacketType kType;             the kind's packet type
//   static constexpr ZunSizeT kSize;                         of the fields on the wire
//   static bool Write(BodyWriter& w, const Kind& p);
//   static bool Read(BodyReader& r, Kind* p);
template <class Kind, class Fields>
struct Report {
  using Blocks = VectorOfZunRtcpReportBlock;
  using Owned =
      OwnedPair<Fields::kType, VectorMember<&Kind::report_blocks, Blocks>, StringMember<&Kind::profile_specific_ext>>;

  static Kind* ConstructDefault(Kind* p, ZunAllocator* a) {
    *p = Kind{};
    p->type = Fields::kType;
    Blocks::ConstructDefault(&p->report_blocks, a);
    ZunStringConstructDefault(&p->profile_specific_ext, a);
    return p;
  }

  // An extension is a whole number of words (RFC 3550, section 6.4.3).
  static bool SetProfileSpecificExt(Kind* p, const ZunString* ext) {
    return ext->size % 4 == 0 && ZunStringAssign(&p->profile_specific_ext, ext) != nullptr;
  }

  static ZunSizeT Length(const Kind& p) {
    return kSubpacketHeaderSize + Fields::kSize + ReportBlocksLength(p.report_blocks) + p.profile_specific_ext.size;
  }

  // Any number of blocks is written, and its low 8 bits are the count: above 31 it spills out of the count field.
  static bool Write(const Kind& p, ZunString* b, bool pad) {
    const ZunSizeT length = Length(p);
    const ZunUint8 count = static_cast<ZunUint8>(Blocks::Size(&p.report_blocks) & 0xFF);
    BodyWriter w(b, length);
    return WriteSubpacketHeader(w, pad, count, p.type, length) && Fields::Write(w, p) &&
           WriteReportBlocks(w, p.report_blocks) && w.String(p.profile_specific_ext);
  }

  static bool Read(Kind* p, BodyReader& r, SubpacketHeader header) {
    return Fields::Read(r, p) && ReadReportBlocks(r, header.count, &p->report_blocks) &&
           r.Rest(&p->profile_specific_ext);
  }

  // Where only the extension is refused by `a`, a copy with the allocator of `o` is better than none.
  static Kind* CopyWithAllocator(Kind* p, const Kind* o, ZunAllocator* a) {
    ConstructDefault(p, a);
    if (Blocks::Assign(&p->report_blocks, &o->report_blocks) == nullptr) return nullptr;
    if (ZunStringAssign(&p->profile_specific_ext, &o->profile_specific_ext) == nullptr) {
      Owned::Destruct(p);
      return Owned::ConstructCopy(p, o);
    }
    Owned::AssignPlainFields(p, o);
    return p;
  }
};

}  // namespace zun

#endif
