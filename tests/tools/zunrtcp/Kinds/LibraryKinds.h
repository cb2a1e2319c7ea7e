// The kinds that the library lists, of all levels.
#ifndef TESTS_TOOLS_ZUNRTCP_KINDS_LIBRARYKINDS_H
#define TESTS_TOOLS_ZUNRTCP_KINDS_LIBRARYKINDS_H

#include "tools/zunrtcp/Kinds/KindLevel.h"

namespace test {

struct LibraryKind {
  const zunrtcp::KindLevel* level;
  ZunInt32 value;
  const char* name;  // of the value, "ZUN_RTCPRTPFB_TYPE_NACK"
};

#define ON_SUBPACKET_LEVEL(value, Kind, member, Getter) {&zunrtcp::subpacket_level, value, #value},
#define ON_RTPFB_LEVEL(value, Kind, member, Getter) {&zunrtcp::rtpfb_level, value, #value},
#define ON_PSFB_LEVEL(value, Kind, member, Getter) {&zunrtcp::psfb_level, value, #value},
#define ON_AFB_LEVEL(value, Kind, member, Getter) {&zunrtcp::afb_level, value, #value},

// clang-format off
inline const LibraryKind kLibraryKinds[] = {
    ZUN_RTCPSUBPACKET_KINDS(ON_SUBPACKET_LEVEL)
    ZUN_RTCPRTPFB_KINDS(ON_RTPFB_LEVEL)
    ZUN_RTCPPSFB_KINDS(ON_PSFB_LEVEL)
    ZUN_RTCPPSFBAFB_KINDS(ON_AFB_LEVEL)
};
// clang-format on

#undef ON_AFB_LEVEL
#undef ON_PSFB_LEVEL
#undef ON_RTPFB_LEVEL
#undef ON_SUBPACKET_LEVEL

}  // namespace test

#endif
