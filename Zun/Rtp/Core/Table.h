// A dispatch table. It places its rows by the values that they serve, and checks itself and them when it is compiled.
#ifndef ZUN_RTP_CORE_TABLE_H
#define ZUN_RTP_CORE_TABLE_H

#include <cstddef>
#include <initializer_list>
#include <type_traits>

#include "Zun/Rtp/Core/RtcpSubpacketFunctions.h"

namespace zun {

// Called where a table is wrong: a constant expression may not call them, so the compiler names the one that it met.
void ARowServesNoValue();
void ARowStandsOutsideItsTable();
void TwoRowsServeTheSameValue();

// Rows for the values kFirst to kLast. A value without a row falls to the row given as `unknown`, so a value that is
// not modelled is normal traffic.
template <ZunInt32 kFirst, ZunInt32 kLast>
class Table {
 public:
  constexpr Table(std::initializer_list<RtcpSubpacketFunctions> rows) : rows_{} {
    for (const RtcpSubpacketFunctions& row : rows) {
      if (row.type == 0) ARowServesNoValue();
      const ZunUint32 index = IndexOf(row.type);
      if (index >= kRows) ARowStandsOutsideItsTable();
      if (rows_[index].type != 0) TwoRowsServeTheSameValue();
      rows_[index] = row;
    }
  }

  constexpr bool Has(ZunInt32 value) const { return IndexOf(value) < kRows && rows_[IndexOf(value)].type != 0; }
  constexpr const RtcpSubpacketFunctions& Find(ZunInt32 value, const RtcpSubpacketFunctions& unknown) const {
    return Has(value) ? rows_[IndexOf(value)] : unknown;
  }

 private:
  static constexpr ZunUint32 kRows = kLast - kFirst + 1;
  static constexpr ZunUint32 IndexOf(ZunInt32 value) {
    return static_cast<ZunUint32>(value) - static_cast<ZunUint32>(kFirst);
  }

  RtcpSubpacketFunctions rows_[kRows];
};

// Whether is_unknown(value), a public predicate, is true for exactly the values without a row, from `first` to `last`.
template <class HasRow>
constexpr bool PredicateAgrees(HasRow has_row, ZunBool (*is_unknown)(ZunInt32), ZunInt32 first, ZunInt32 last) {
  for (ZunInt32 value = first; value <= last; ++value) {
    if ((is_unknown(value) != 0) == has_row(value)) return false;
  }
  return true;
}

// Whether a kind begins with the fields by which any object of its level is told, at the places where `Unknown`, the
// unknown kind of the level, has them.
template <class Kind, class Unknown>
constexpr bool HasHeadOf() {
  bool fits = std::is_standard_layout_v<Kind> && std::is_trivially_copyable_v<Kind> && offsetof(Kind, type) == 0;
  if constexpr (requires(Unknown u) { u.fmt; }) {
    fits = fits && offsetof(Kind, fmt) == offsetof(Unknown, fmt) && offsetof(Kind, sender) == offsetof(Unknown, sender);
  }
  if constexpr (requires(Unknown u, Kind k) { u.source, k.source; }) {
    fits = fits && offsetof(Kind, source) == offsetof(Unknown, source);
  }
  if constexpr (requires(Unknown u) { u.afbType; })
    fits = fits && offsetof(Kind, afbType) == offsetof(Unknown, afbType);
  return fits;
}

// The row of a kind, once its place in the union of its level is what the row takes it for.
template <class Union, class Unknown, class Kind, class Member, class View>
constexpr RtcpSubpacketFunctions CheckedRow(Member Union::*, View (*)(const Union*), RtcpSubpacketFunctions row) {
  static_assert(std::is_same_v<Member, Kind>, "the member of the union is of another kind than the row");
  static_assert(std::is_same_v<View, const Kind*>, "the getter of the union gives another kind than the row's");
  if constexpr (!std::is_union_v<Kind>) {
    static_assert(HasHeadOf<Kind, Unknown>(), "the kind does not begin with the fields of its level");
  }
  return row;
}

}  // namespace zun

#endif
