/*
 * A subpacket of a packet type that the library does not model, carried through parse and write unchanged.
 *
 *    0                   1                   2                   3
 *    0 1 2 3 4 5 6 7 8 9 0 1 2 3 4 5 6 7 8 9 0 1 2 3 4 5 6 7 8 9 0 1
 *   +-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+
 * 0 |V=2|P| subtype |     type      |            length             |
 *   +=+=+=+=+=+=+=+=+=+=+=+=+=+=+=+=+=+=+=+=+=+=+=+=+=+=+=+=+=+=+=+=+
 * 4 |                  data, padding octets included ...            |
 *   +-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+
 */
#ifndef ZUN_RTP_ZUNRTCPUNKNOWN_H
#define ZUN_RTP_ZUNRTCPUNKNOWN_H

#include "Zun/Rtp/Core/ZunRtcpRow.h"
#include "Zun/Utils/ZunString.h"

ZUN_EXTERN_C_BEGIN

typedef struct ZunRtcpUnknown ZunRtcpUnknown;
struct ZunRtcpUnknown {
  ZunRtcpSubpacketType type; /* as on the wire, outside 200..206; 0 after default construction */
  ZunUint8 subtype;          /* the 5-bit field of the header's first byte, 0..31 */
  ZunString data;            /* every byte behind the header; a multiple of 4; owns the object's allocator */
};

/* Type 0, subtype 0, no data, with allocator `a`. Returns `p`; cannot fail. */
ZunRtcpUnknown* ZunRtcpUnknownConstructDefault(ZunRtcpUnknown* p, ZunAllocator* a);

/*
 * All fields; the data is copied into storage from `a`. NULL, with nothing constructed, when the type is 200
 * to 206, the size of `data` is no multiple of 4 or `subtype` exceeds 31 (checked in this order, each logged
 * as an error in category "rtcp"), or when an allocation is refused.
 */
ZunRtcpUnknown* ZunRtcpUnknownConstructFull(ZunRtcpUnknown* p, ZunRtcpSubpacketType type, ZunUint8 subtype,
                                            const ZunString* data, ZunAllocator* a);

/* A copy with the allocator of `o`. NULL, `p` owning nothing, when an allocation is refused. */
ZunRtcpUnknown* ZunRtcpUnknownConstructCopy(ZunRtcpUnknown* p, const ZunRtcpUnknown* o);

/* Makes `p` a copy of `o`; `p` keeps its allocator. NULL, `p` unchanged, when an allocation is refused. */
ZunRtcpUnknown* ZunRtcpUnknownAssign(ZunRtcpUnknown* p, const ZunRtcpUnknown* o);

/* Releases the data and leaves `p` empty; destructing it once more does nothing. */
void ZunRtcpUnknownDestruct(ZunRtcpUnknown* p);

/* False, `p` unchanged, when `subtype` exceeds 31 (logged as an error). */
ZunBool ZunRtcpUnknownSetSubtype(ZunRtcpUnknown* p, ZunUint8 subtype);

/*
 * Copies `data`. False, `p` unchanged, when its size is no multiple of 4 (logged as an error) or an allocation
 * is refused.
 */
ZunBool ZunRtcpUnknownSetData(ZunRtcpUnknown* p, const ZunString* data);

/* The row operations. Reading checks neither type nor length; writing adds no padding. */
ZUN_RTCP_ROW_DECLARE(ZunRtcpUnknown)

/* The allocator of the data. */
ZUN_INLINE ZunAllocator* ZunRtcpUnknownGetAllocator(ZunRtcpUnknown* p) { return p->data.allocator; }
/* The 5-bit field of the header, 0..31. */
ZUN_INLINE ZunUint8 ZunRtcpUnknownGetSubtype(const ZunRtcpUnknown* p) { return p->subtype; }
/* The data itself, valid as long as `p` is neither changed nor destructed. */
ZUN_INLINE const ZunString* ZunRtcpUnknownGetData(const ZunRtcpUnknown* p) { return &p->data; }

ZUN_EXTERN_C_END

#endif
