/*
 * Which rooms of kinds this library has. A room can be left out when the library is built (the CMake options ZUNRTCP_
 * of the same names); its kinds are then unknown ones, whose octets are kept and written back, and nothing of it is
 * declared. This header is installed with the values of the library beside it, so that whoever includes the library's
 * headers sees the library's rooms, whatever builds his program.
 */
#ifndef ZUN_RTP_CORE_ZUNRTCPROOMS_H
#define ZUN_RTP_CORE_ZUNRTCPROOMS_H

/* SR, RR, SDES, BYE, APP, and what a compound packet should be made of (ZunRtcpComposition.h). */
#ifndef ZUN_RTCP_HAS_REPORTS
#define ZUN_RTCP_HAS_REPORTS 1
#endif

/* Transport-layer feedback: NACK, TMMBR, TMMBN, TransportCC, CCFB, ABAFB, and ZunRtcpTmmb.h. */
#ifndef ZUN_RTCP_HAS_TRANSPORT_FEEDBACK
#define ZUN_RTCP_HAS_TRANSPORT_FEEDBACK 1
#endif

/* Payload-specific feedback: PLI, SLI, RPSI, FIR, TSTR, TSTA. */
#ifndef ZUN_RTCP_HAS_PAYLOAD_FEEDBACK
#define ZUN_RTCP_HAS_PAYLOAD_FEEDBACK 1
#endif

/* Application-layer feedback, inside the envelope of payload-specific: REMB and the house messages. */
#ifndef ZUN_RTCP_HAS_APPLICATION_FEEDBACK
#define ZUN_RTCP_HAS_APPLICATION_FEEDBACK 1
#endif

/* The blocks of extended reports (ZunRtcpXr.h); the packet type itself is an unknown one in any case. */
#ifndef ZUN_RTCP_HAS_EXTENDED_REPORTS
#define ZUN_RTCP_HAS_EXTENDED_REPORTS 1
#endif

#if ZUN_RTCP_HAS_APPLICATION_FEEDBACK && !ZUN_RTCP_HAS_PAYLOAD_FEEDBACK
#error "application-layer feedback stands in the envelope of payload-specific feedback, which is left out"
#endif

#endif
