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
  ZunRtcpSubpacketType type; /* as on the wire, of no kind that is modelled; 0 after default construction */
  ZunUint8 subtype;          /* the 5-bit field of the header's first byte, 0..31 */
  ZunString data;            /* every byte after the header; a multiple of 4; owns the object's allocator */
};

/* Type 0, subtype 0, no data. */
ZunRtcpUnknown* ZunRtcpUnknownConstructDefault(ZunRtcpUnknown* p, ZunAllocator* a);

/*
 * All fields; the data is copied into storage from `a`. NULL when the type is a modelled one, the size of
 * `data` is no multiple of 4 or `subtype` exceeds 31 (checked in this order, each logged as an error in
 * category "rtcp").
 */
ZunRtcpUnknown* ZunRtcpUnknownConstructFull(ZunRtcpUnknown* p, ZunRtcpSubpacketType type, ZunUint8 subtype,
                                            const ZunString* data, ZunAllocator* a);

/* Lifecycle (ZunConventions.h). */
ZunRtcpUnknown* ZunRtcpUnknownConstructCopy(ZunRtcpUnknown* p, const ZunRtcpUnknown* o);
ZunRtcpUnknown* ZunRtcpUnknownAssign(ZunRtcpUnknown* p, const ZunRtcpUnknown* o);
void ZunRtcpUnknownDestruct(ZunRtcpUnknown* p);

/* False, `p` unchanged, when `subtype` exceeds 31 (logged as an error). */
ZunBool ZunRtcpUnknownSetSubtype(ZunRtcpUnknown* p, ZunUint8 subtype);

/* Copies `data`. False, `p` unchanged, when its size is no multiple of 4 (logged as an error). */
ZunBool ZunRtcpUnknownSetData(ZunRtcpUnknown* p, const ZunString* data);

/* The row operations. Reading checks neither type nor length; writing adds no padding. */
ZUN_RTCP_ROW_DECLARE(ZunRtcpUnknown)

/* The allocator of the data. */
ZUN_INLINE ZunAllocator* ZunRtcpUnknownGetAllocator(ZunRtcpUnknown* p) { return p->data.allocator; }
/* The 5-bit field of the header, 0..31. */
ZUN_INLINE ZunUint8 ZunRtcpUnknownGetSubtype(const ZunRtcpUnknown* p) { return p->subtype; }
/* The data itself. */
ZUN_INLINE const ZunString* ZunRtcpUnknownGetData(const ZunRtcpUnknown* p) { return &p->data; }

ZUN_EXTERN_C_END

#endif
