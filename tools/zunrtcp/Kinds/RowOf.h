// Ties a row to the library's list of kinds, so that it can neither be of a kind that the library does not have, nor
// see an object of another kind than its own.
#ifndef TOOLS_ZUNRTCP_KINDS_ROWOF_H
#define TOOLS_ZUNRTCP_KINDS_ROWOF_H

#include <type_traits>

#include "Zun/Rtp/Cpp/Subpacket.h"
#include "tools/zunrtcp/Kinds/KindRow.h"

namespace zunrtcp {

// The kind with this value in the library's list of the level, its type, and where a subpacket has an object of it. Not
// defined for a value that is not in the list.
template <const KindLevel& level, ZunInt32 value>
struct Listed;

#define ZUNRTCP_LISTED_(list_level, value, Kind, object)                           \
  template <>                                                                      \
  struct Listed<list_level, value> {                                               \
    static constexpr const KindLevel* kLevel = &(list_level);                      \
    static constexpr ZunInt32 kValue = value;                                      \
    using Type = Kind;                                                             \
    static const Kind& In(const ZunRtcpSubpacket& subpacket) { return *(object); } \
  };
#define ZUNRTCP_LISTED_TYPE_(value, Kind, member, Getter) \
  ZUNRTCP_LISTED_(subpacket_level, value, Kind, Getter(&subpacket))
#define ZUNRTCP_LISTED_RTPFB_(value, Kind, member, Getter) \
  ZUNRTCP_LISTED_(rtpfb_level, value, Kind, Getter(ZunRtcpSubpacketGetRtpfb(&subpacket)))
#define ZUNRTCP_LISTED_PSFB_(value, Kind, member, Getter) \
  ZUNRTCP_LISTED_(psfb_level, value, Kind, Getter(ZunRtcpSubpacketGetPsfb(&subpacket)))
#define ZUNRTCP_LISTED_AFB_(value, Kind, member, Getter) \
  ZUNRTCP_LISTED_(afb_level, value, Kind, Getter(ZunRtcpPsfbGetAfb(ZunRtcpSubpacketGetPsfb(&subpacket))))

ZUN_RTCPSUBPACKET_KINDS(ZUNRTCP_LISTED_TYPE_)
ZUN_RTCPRTPFB_KINDS(ZUNRTCP_LISTED_RTPFB_)
ZUN_RTCPPSFB_KINDS(ZUNRTCP_LISTED_PSFB_)
ZUN_RTCPPSFBAFB_KINDS(ZUNRTCP_LISTED_AFB_)

#undef ZUNRTCP_LISTED_AFB_
#undef ZUNRTCP_LISTED_PSFB_
#undef ZUNRTCP_LISTED_RTPFB_
#undef ZUNRTCP_LISTED_TYPE_
#undef ZUNRTCP_LISTED_

// What an object of the kind is described as: a View of it, or for a kind that holds others, as feedback does, the
// object of the library itself.
template <class Type, bool = zun::rtcp::HasFace<Type>>
struct Described {
  using As = zun::rtcp::LookingAt<const Type>;
};
template <class Type>
struct Described<Type, false> {
  using As = const Type&;
};

// The row of a kind with the columns given. `kDescribe` tells the fields of an object; those of the kinds that hold it,
// such as the sender of feedback, are told before.
template <class Kind, void (*kDescribe)(typename Described<typename Kind::Type>::As object, Description* description)>
constexpr KindRow RowOf(KindRow columns) noexcept {
  columns.level = Kind::kLevel;
  columns.value = Kind::kValue;
  columns.describe = [](ObjectView object, Description* description) {
    kDescribe(Kind::In(*object.get()), description);
  };
  return columns;
}

}  // namespace zunrtcp

#endif
