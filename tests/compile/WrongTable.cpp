// A dispatch table with one thing wrong in it, chosen by WRONG; 0 is right. The compiler must refuse all but that.
#include "Zun/Rtp/Core/Table.h"
#include "Zun/Rtp/ZunRtcpSubpacket.h"

ZUN_RTCPRTPFB_KINDS(ZUN_RTCP_LISTED_ROW_INTERNALS_DECLARE)

// A kind whose media source does not stand where every message has it.
struct Shifted {
  ZunRtcpSubpacketType type;
  ZunRtcpRtpfbType fmt;
  ZunRtpSourceId sender;
  ZunUint32 something;
  ZunRtpSourceId source;
};
union WithShifted {
  Shifted shifted;
};
const Shifted* GetShifted(const WithShifted*);

constexpr RtcpSubpacketFunctions kNack = ZUN_RTCP_ROW(ZUN_RTCPRTPFB_TYPE_NACK, ZunRtcpRtpfbNack);
constexpr RtcpSubpacketFunctions kTmmbr = ZUN_RTCP_ROW(ZUN_RTCPRTPFB_TYPE_TMMBR, ZunRtcpRtpfbTmmbr);

template <class Kind, class Member, class View>
constexpr RtcpSubpacketFunctions Checked(Member ZunRtcpRtpfb::*member, View (*getter)(const ZunRtcpRtpfb*)) {
  return zun::CheckedRow<ZunRtcpRtpfb, ZunRtcpRtpfbUnknown, Kind>(member, getter, kNack);
}

#if WRONG == 0
constexpr zun::Table<1, 2> kTable = {kTmmbr, Checked<ZunRtcpRtpfbNack>(&ZunRtcpRtpfb::nack, ZunRtcpRtpfbGetNack)};
static_assert(zun::PredicateAgrees([](ZunInt32 fmt) { return kTable.Has(fmt); },
                                   [](ZunInt32 fmt) -> ZunBool { return fmt != 1 && fmt != 2; }, -1, 40));
#elif WRONG == 1  // the same value twice: TwoRowsServeTheSameValue
constexpr zun::Table<1, 2> kTable = {kNack, kTmmbr, kNack};
#elif WRONG == 2  // a value that the table has no place for: ARowStandsOutsideItsTable
constexpr zun::Table<2, 3> kTable = {kTmmbr, kNack};
#elif WRONG == 3  // a row without a value: ARowServesNoValue
constexpr zun::Table<1, 2> kTable = {kNack, RtcpSubpacketFunctions{}};
#elif WRONG == 4  // the member of another kind: the member of the union is of another kind than the row
constexpr auto kRow = Checked<ZunRtcpRtpfbNack>(&ZunRtcpRtpfb::tmmbr, ZunRtcpRtpfbGetNack);
#elif WRONG == 5  // the getter of another kind: the getter of the union gives another kind than the row's
constexpr auto kRow = Checked<ZunRtcpRtpfbNack>(&ZunRtcpRtpfb::nack, ZunRtcpRtpfbGetTmmbr);
#elif WRONG == 6  // a head of its own: the kind does not begin with the fields of its level
constexpr auto kRow =
    zun::CheckedRow<WithShifted, ZunRtcpRtpfbUnknown, Shifted>(&WithShifted::shifted, GetShifted, kNack);
#elif WRONG == 7  // a predicate of its own: the predicate says something else
constexpr zun::Table<1, 2> kTable = {kNack, kTmmbr};
static_assert(zun::PredicateAgrees([](ZunInt32 fmt) { return kTable.Has(fmt); },
                                   [](ZunInt32 fmt) -> ZunBool { return fmt != 1; }, -1, 40),
              "the predicate says something else");
#endif

int main() { return 0; }
