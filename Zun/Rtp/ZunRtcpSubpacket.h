/*
 * One RTCP packet of any kind (RFC 3550, section 6): a tagged value, so that a compound packet can hold a
 * vector of them. Every member begins with its `type`, which may be read through any of them.
 */
#ifndef ZUN_RTP_ZUNRTCPSUBPACKET_H
#define ZUN_RTP_ZUNRTCPSUBPACKET_H

#include "Zun/Rtp/Core/ZunRtcpPsfbAfbType.h"
#include "Zun/Rtp/Core/ZunRtcpPsfbType.h"
#include "Zun/Rtp/Core/ZunRtcpRtpfbType.h"
#include "Zun/Rtp/ZunRtcpUnknown.h"
#include "Zun/Utils/ZunVector.h"
#if ZUN_RTCP_HAS_REPORTS
#include "Zun/Rtp/Reports/ZunRtcpApp.h"
#include "Zun/Rtp/Reports/ZunRtcpBye.h"
#include "Zun/Rtp/Reports/ZunRtcpRr.h"
#include "Zun/Rtp/Reports/ZunRtcpSdes.h"
#include "Zun/Rtp/Reports/ZunRtcpSdesItemPriv.h"
#include "Zun/Rtp/Reports/ZunRtcpSr.h"
#endif
#if ZUN_RTCP_HAS_TRANSPORT_FEEDBACK
#include "Zun/Rtp/TransportFeedback/ZunRtcpRtpfb.h"
#endif
#if ZUN_RTCP_HAS_PAYLOAD_FEEDBACK
#include "Zun/Rtp/PayloadFeedback/ZunRtcpPsfb.h"
#endif

ZUN_EXTERN_C_BEGIN

/* As large as the largest kind, a sender report: a subpacket has one size, whichever rooms are left out. */
typedef struct ZunRtcpSubpacketStorage_ {
  ZunUint32 type_and_source[2];
  ZunUint64 timestamp;
  ZunUint32 counts[3];
  ZunVoidPtr list_and_octets[8];
} ZunRtcpSubpacketStorage_;

/* A subpacket of one kind is built with that kind's constructors, called on its member. */
union ZunRtcpSubpacket {
  ZunRtcpUnknown unk; /* any type outside 200..206, and those of the rooms that are left out */
  ZunRtcpSubpacketStorage_ storage_;
#if ZUN_RTCP_HAS_REPORTS
  ZunRtcpSr sr;     /* 200 */
  ZunRtcpRr rr;     /* 201 */
  ZunRtcpSdes sdes; /* 202 */
  ZunRtcpBye bye;   /* 203 */
  ZunRtcpApp app;   /* 204 */
#endif
#if ZUN_RTCP_HAS_TRANSPORT_FEEDBACK
  ZunRtcpRtpfb rtpfb; /* 205 */
#endif
#if ZUN_RTCP_HAS_PAYLOAD_FEEDBACK
  ZunRtcpPsfb psfb; /* 206 */
#endif
};

/* Lifecycle of a tagged union (ZunConventions.h). */
ZunRtcpSubpacket* ZunRtcpSubpacketConstructCopy(ZunRtcpSubpacket* p, const ZunRtcpSubpacket* o);
ZunRtcpSubpacket* ZunRtcpSubpacketAssign(ZunRtcpSubpacket* p, const ZunRtcpSubpacket* o);
void ZunRtcpSubpacketDestruct(ZunRtcpSubpacket* p);

/* The wire size of `p` in bytes, header included; 0 for a BYE that cannot be written. */
ZunSizeT ZunRtcpSubpacketGetNetworkPacketLength(const ZunRtcpSubpacket* p);

/* The packet type. ZunRtcpSubpacketTypeIsUnknown tells whether the object is an unknown one. */
ZUN_INLINE ZunRtcpSubpacketType ZunRtcpSubpacketGetType(const ZunRtcpSubpacket* p) { return p->unk.type; }

/* The member of that kind. The type is not checked: look at ZunRtcpSubpacketGetType first. */
ZUN_INLINE const ZunRtcpUnknown* ZunRtcpSubpacketGetUnknown(const ZunRtcpSubpacket* p) { return &p->unk; }
#if ZUN_RTCP_HAS_REPORTS
ZUN_INLINE const ZunRtcpSr* ZunRtcpSubpacketGetSr(const ZunRtcpSubpacket* p) { return &p->sr; }
ZUN_INLINE const ZunRtcpRr* ZunRtcpSubpacketGetRr(const ZunRtcpSubpacket* p) { return &p->rr; }
ZUN_INLINE const ZunRtcpSdes* ZunRtcpSubpacketGetSdes(const ZunRtcpSubpacket* p) { return &p->sdes; }
ZUN_INLINE const ZunRtcpBye* ZunRtcpSubpacketGetBye(const ZunRtcpSubpacket* p) { return &p->bye; }
ZUN_INLINE const ZunRtcpApp* ZunRtcpSubpacketGetApp(const ZunRtcpSubpacket* p) { return &p->app; }
#endif
#if ZUN_RTCP_HAS_TRANSPORT_FEEDBACK
ZUN_INLINE const ZunRtcpRtpfb* ZunRtcpSubpacketGetRtpfb(const ZunRtcpSubpacket* p) { return &p->rtpfb; }
#endif
#if ZUN_RTCP_HAS_PAYLOAD_FEEDBACK
ZUN_INLINE const ZunRtcpPsfb* ZunRtcpSubpacketGetPsfb(const ZunRtcpSubpacket* p) { return &p->psfb; }
#endif

ZUN_EXTERN_C_END

/* Elements are copied with the allocators of their sources. */
ZUN_VECTOR_DECLARE(ZunRtcpSubpacket)

#endif
