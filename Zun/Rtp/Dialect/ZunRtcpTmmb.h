/*
 * Temporary maximum media stream bit rate request and notification as registered (RFC 5104, sections 4.2.1 and 4.2.2):
 * transport-layer feedback of FMT 3 and 4. The house gives the first number to a message of another form, and the
 * second to none, so no object of a packet holds these; here they are read from octets and written to octets.
 *
 *     0                   1                   2                   3
 *     0 1 2 3 4 5 6 7 8 9 0 1 2 3 4 5 6 7 8 9 0 1 2 3 4 5 6 7 8 9 0 1
 *    +-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+
 *  0 |V=2|P| FMT 3, 4|    PT=205     |            length             |
 *    +-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+
 *  4 |                    SSRC of packet sender                      |
 *    +-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+
 *  8 |              SSRC of media source: not used, 0                |
 *    +=+=+=+=+=+=+=+=+=+=+=+=+=+=+=+=+=+=+=+=+=+=+=+=+=+=+=+=+=+=+=+=+
 * 12 |                             SSRC                              |
 *    +-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+
 *    | MxTBR Exp |         MxTBR Mantissa          |Measured Overhead|
 *    +-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+
 *    |  ... further entries                                          |
 */
#ifndef ZUN_RTP_DIALECT_ZUNRTCPTMMB_H
#define ZUN_RTP_DIALECT_ZUNRTCPTMMB_H

#include "Zun/Rtp/Core/ZunRtcpReason.h"
#include "Zun/Rtp/ZunRtcpSubpacket.h"
#include "Zun/Rtp/ZunRtpHeader.h"

ZUN_EXTERN_C_BEGIN

/* The two messages, by their FMT. */
typedef ZunInt32 ZunRtcpTmmbType;
enum { ZUN_RTCP_TMMB_TYPE_TMMBR = 3, ZUN_RTCP_TMMB_TYPE_TMMBN = 4 };

/* The bit rate that one media stream must not exceed, mantissa * 2^exponent bit/s. */
typedef struct ZunRtcpTmmbEntry ZunRtcpTmmbEntry;
struct ZunRtcpTmmbEntry {
  ZunRtpSourceId ssrc; /* TMMBR: the media sender that is asked; TMMBN: who asked for it */
  ZunUint8 exponent;   /* 0..63 */
  ZunUint32 mantissa;  /* 0..131071 */
  ZunUint16 overhead;  /* measured average per packet, in octets, 0..511 */
};

/* A message that was read: a view of its octets, good as long as these are. */
typedef struct ZunRtcpTmmb ZunRtcpTmmb;
struct ZunRtcpTmmb {
  ZunRtcpTmmbType type;
  ZunRtpSourceId sender;   /* SSRC of the packet sender */
  ZunSizeT count;          /* of entries */
  const ZunUint8* entries; /* 8 octets each; ZunRtcpTmmbGetEntry reads them */
};

/*
 * Reads the message that octets[0, size) is, its header included: the octets of a subpacket as a refusal of
 * ZunRtcpPacketDecode tells them. Stores why it is refused in `*reason` (may be NULL), with a false result: it is not
 * one of the two, its octets are not `size`, its padding is malformed, an entry is cut off, or a TMMBR has none.
 */
ZunBool ZunRtcpTmmbRead(ZunRtcpTmmb* p, const void* octets, ZunSizeT size, ZunRtcpDecodeReason* reason);

/* The same of a TMMBN in a packet, where it is an unknown message of FMT 4. False when `sp` is something else. */
ZunBool ZunRtcpTmmbReadSubpacket(ZunRtcpTmmb* p, const ZunRtcpSubpacket* sp, ZunRtcpDecodeReason* reason);

/* Entry `n`. False, nothing stored, when there is none. */
ZunBool ZunRtcpTmmbGetEntry(const ZunRtcpTmmb* p, ZunSizeT n, ZunRtcpTmmbEntry* entry);

/*
 * Writes a message to octets[0, capacity) and stores in `*size` how many octets it took. False when they do not fit,
 * with the size that is needed; false with 0 when it cannot be written at all: another type, a TMMBR without entries,
 * an entry beyond its ranges, more entries than a length can say (32,766).
 */
ZunBool ZunRtcpTmmbWrite(ZunRtcpTmmbType type, ZunRtpSourceId sender, const ZunRtcpTmmbEntry* entries, ZunSizeT count,
                         void* octets, ZunSizeT capacity, ZunSizeT* size);

/* In bit/s. Exact, and up to 1.2e24, so no integer holds all. */
double ZunRtcpTmmbEntryGetBitrate(const ZunRtcpTmmbEntry* p);

/* Sets mantissa and exponent to the largest bit rate that is not above `bitrate`. False, `p` unchanged, for a negative
 * one, one that is not a number, or one of 2^80 and more. */
ZunBool ZunRtcpTmmbEntrySetBitrate(ZunRtcpTmmbEntry* p, double bitrate);

ZUN_EXTERN_C_END

#endif
