/*
 * House message 3: asks a media sender to show a stream under a set of typed parameters. The library carries them;
 * the units of rates and bandwidths are up to the peers.
 *
 *    0                   1                   2                   3
 *    0 1 2 3 4 5 6 7 8 9 0 1 2 3 4 5 6 7 8 9 0 1 2 3 4 5 6 7 8 9 0 1
 *   +=+=+=+=+=+=+=+=+=+=+=+=+=+=+=+=+=+=+=+=+=+=+=+=+=+=+=+=+=+=+=+=+
 * 12|      'N'      |      'r'      |               3               |
 *   +-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+
 * 16|     seqno     |  type   | n-1 | value, n = 1 to 8 octets, ... |
 *   +-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+
 *   |  ... further parameters, then zeros up to a multiple of 4     |
 *   +-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+
 */
#ifndef ZUN_RTP_APPLICATIONFEEDBACK_ZUNRTCPPSFBAFBSHOW_H
#define ZUN_RTP_APPLICATIONFEEDBACK_ZUNRTCPPSFBAFBSHOW_H

#include "Zun/Rtp/Core/ZunRtcpPsfbAfbType.h"
#include "Zun/Rtp/Core/ZunRtcpPsfbType.h"
#include "Zun/Rtp/Core/ZunRtcpRow.h"
#include "Zun/Rtp/ZunRtpHeader.h"

ZUN_EXTERN_C_BEGIN

/* What a parameter is about, with the values that ZunRtcpPsfbAfbShowParameterConstruct accepts. The wire carries 0 to
 * 31; a received parameter of any other type is kept as it is. */
typedef ZunInt32 ZunRtcpPsfbAfbShowParameterType;
enum {
  ZUN_RTCPPSFBAFBSHOWPARAMETER_TYPE_Enable = 1,        /* 0 or 1 */
  ZUN_RTCPPSFBAFBSHOWPARAMETER_TYPE_Preference = 2,    /* 0 to 15 */
  ZUN_RTCPPSFBAFBSHOWPARAMETER_TYPE_Width = 3,         /* not 0 */
  ZUN_RTCPPSFBAFBSHOWPARAMETER_TYPE_Height = 4,        /* not 0 */
  ZUN_RTCPPSFBAFBSHOWPARAMETER_TYPE_FrameRate = 5,     /* not 0 */
  ZUN_RTCPPSFBAFBSHOWPARAMETER_TYPE_PixelRate = 6,     /* not 0 */
  ZUN_RTCPPSFBAFBSHOWPARAMETER_TYPE_Bandwidth = 7,     /* not 0 */
  ZUN_RTCPPSFBAFBSHOWPARAMETER_TYPE_MinWidth = 8,      /* any */
  ZUN_RTCPPSFBAFBSHOWPARAMETER_TYPE_MinHeight = 9,     /* any */
  ZUN_RTCPPSFBAFBSHOWPARAMETER_TYPE_MinFrameRate = 10, /* any */
  ZUN_RTCPPSFBAFBSHOWPARAMETER_TYPE_MinPixelRate = 11, /* any */
  ZUN_RTCPPSFBAFBSHOWPARAMETER_TYPE_MinBandwidth = 12, /* any */
  ZUN_RTCPPSFBAFBSHOWPARAMETER_TYPE_PacketSize = 13    /* 12 or more */
};

/* One parameter; a plain value. */
typedef struct ZunRtcpPsfbAfbShowParameter ZunRtcpPsfbAfbShowParameter;
struct ZunRtcpPsfbAfbShowParameter {
  ZunRtcpPsfbAfbShowParameterType type;
  ZunUint64 value;
};

/* NULL, `p` unchanged, when `type` is none of the above or `value` is not one that it accepts. */
ZunRtcpPsfbAfbShowParameter* ZunRtcpPsfbAfbShowParameterConstruct(ZunRtcpPsfbAfbShowParameter* p,
                                                                  ZunRtcpPsfbAfbShowParameterType type,
                                                                  ZunUint64 value);

/* Lifecycle of a plain value (ZunConventions.h). */
ZunRtcpPsfbAfbShowParameter* ZunRtcpPsfbAfbShowParameterConstructCopy(ZunRtcpPsfbAfbShowParameter* p,
                                                                      const ZunRtcpPsfbAfbShowParameter* o);
ZunRtcpPsfbAfbShowParameter* ZunRtcpPsfbAfbShowParameterAssign(ZunRtcpPsfbAfbShowParameter* p,
                                                               const ZunRtcpPsfbAfbShowParameter* o);
void ZunRtcpPsfbAfbShowParameterDestruct(ZunRtcpPsfbAfbShowParameter* p);

/* The fields; their units and ranges stand with them above. */
ZUN_INLINE ZunRtcpPsfbAfbShowParameterType ZunRtcpPsfbAfbShowParameterGetType(const ZunRtcpPsfbAfbShowParameter* p) {
  return p->type;
}
ZUN_INLINE ZunUint64 ZunRtcpPsfbAfbShowParameterGetValue(const ZunRtcpPsfbAfbShowParameter* p) { return p->value; }

ZUN_EXTERN_C_END

ZUN_VECTOR_DECLARE(ZunRtcpPsfbAfbShowParameter)

ZUN_EXTERN_C_BEGIN

typedef struct ZunRtcpPsfbAfbShow ZunRtcpPsfbAfbShow;
struct ZunRtcpPsfbAfbShow {
  ZunRtcpSubpacketType type;                        /* 206 */
  ZunRtcpPsfbType fmt;                              /* 15 */
  ZunRtpSourceId sender;                            /* SSRC of the packet sender */
  ZunRtpSourceId source;                            /* SSRC of the media source, which is asked to show */
  ZunRtcpPsfbAfbType afbType;                       /* 3 */
  ZunUint8 seqno;                                   /* sequence number, which the acknowledgement repeats */
  ZunVector_ZunRtcpPsfbAfbShowParameter parameters; /* in wire order; owns the object's allocator */
};

/* Both SSRCs and the sequence number 0, no parameters. */
ZunRtcpPsfbAfbShow* ZunRtcpPsfbAfbShowConstructDefault(ZunRtcpPsfbAfbShow* p, ZunAllocator* a);

/*
 * All fields. The copy of the parameters takes the allocator of `params`; they are not checked. NULL, `p` owning
 * nothing, when an allocation is refused.
 */
ZunRtcpPsfbAfbShow* ZunRtcpPsfbAfbShowConstructFull(ZunRtcpPsfbAfbShow* p, ZunRtpSourceId sender, ZunRtpSourceId source,
                                                    ZunUint8 seq, const ZunVector_ZunRtcpPsfbAfbShowParameter* params);

/* Lifecycle (ZunConventions.h). */
ZunRtcpPsfbAfbShow* ZunRtcpPsfbAfbShowConstructCopy(ZunRtcpPsfbAfbShow* p, const ZunRtcpPsfbAfbShow* o);
ZunRtcpPsfbAfbShow* ZunRtcpPsfbAfbShowAssign(ZunRtcpPsfbAfbShow* p, const ZunRtcpPsfbAfbShow* o);
void ZunRtcpPsfbAfbShowDestruct(ZunRtcpPsfbAfbShow* p);

/*
 * The row operations. A value is written in as few octets as it needs. The zeros after the parameters align the
 * whole string that is written to; the announced length is right when the message begins at a multiple of 4 in it.
 * Reading keeps parameters of any type and value (do not write one of type 0 and one octet: it would begin the
 * padding); the first zero in place of a parameter begins the padding, all of
 * which must be zero. The parameters in front of a failure are kept.
 */
ZUN_RTCP_ROW_DECLARE(ZunRtcpPsfbAfbShow)

/* The allocator of the parameters. */
ZUN_INLINE ZunAllocator* ZunRtcpPsfbAfbShowGetAllocator(ZunRtcpPsfbAfbShow* p) { return p->parameters.allocator; }
ZUN_INLINE ZunUint8 ZunRtcpPsfbAfbShowGetSequenceNumber(const ZunRtcpPsfbAfbShow* p) { return p->seqno; }
/* The parameters themselves. */
ZUN_INLINE const ZunVector_ZunRtcpPsfbAfbShowParameter* ZunRtcpPsfbAfbShowGetParameters(const ZunRtcpPsfbAfbShow* p) {
  return &p->parameters;
}

ZUN_EXTERN_C_END

#endif
