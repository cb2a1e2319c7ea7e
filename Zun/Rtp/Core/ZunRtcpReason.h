/* Why a subpacket is refused: when it is decoded, and when it is encoded. */
#ifndef ZUN_RTP_CORE_ZUNRTCPREASON_H
#define ZUN_RTP_CORE_ZUNRTCPREASON_H

#include "Zun/Utils/ZunTypes.h"

ZUN_EXTERN_C_BEGIN

typedef ZunInt32 ZunRtcpDecodeReason;
enum {
  ZUN_RTCP_DECODE_REASON_NONE = 0,           /* it is not refused */
  ZUN_RTCP_DECODE_REASON_EMPTY = 1,          /* there are no octets at all */
  ZUN_RTCP_DECODE_REASON_HEADER_CUT_OFF = 2, /* fewer octets are left than a header has */
  ZUN_RTCP_DECODE_REASON_VERSION = 3,        /* the version is not 2 */
  ZUN_RTCP_DECODE_REASON_LENGTH = 4,         /* the header announces more octets than are left */
  ZUN_RTCP_DECODE_REASON_PADDING = 5,        /* the padding bit is set, but the count is 0 or more than the body has */
  ZUN_RTCP_DECODE_REASON_TOO_SHORT = 6,      /* the body ends inside a field or an entry */
  ZUN_RTCP_DECODE_REASON_LEFT_OVER = 7,      /* octets are left after the last field */
  ZUN_RTCP_DECODE_REASON_NO_ENTRIES = 8,     /* a list that must not be empty is: count 0, or nothing follows */
  ZUN_RTCP_DECODE_REASON_VALUE = 9,          /* a field has a value that it must not have */
  ZUN_RTCP_DECODE_REASON_NO_OBJECT = 10,     /* the dialect knows the form, but no object holds it */
  ZUN_RTCP_DECODE_REASON_LIMIT = 11,         /* more than the options allow */
  ZUN_RTCP_DECODE_REASON_ALLOCATION = 12,    /* the allocator refused */
  ZUN_RTCP_DECODE_REASON_COUNT = 13          /* how many there are */
};

/* What the reason means, as a short English text without a full stop, for example "the body is too short". */
const char* ZunRtcpDecodeReasonGetText(ZunRtcpDecodeReason reason);

typedef ZunInt32 ZunRtcpEncodeReason;
enum {
  ZUN_RTCP_ENCODE_REASON_NONE = 0,            /* it can be encoded */
  ZUN_RTCP_ENCODE_REASON_EMPTY = 1,           /* the packet has no subpackets */
  ZUN_RTCP_ENCODE_REASON_NO_ENTRIES = 2,      /* a list that must not be empty is */
  ZUN_RTCP_ENCODE_REASON_TOO_MANY = 3,        /* more blocks, chunks, sources, statuses than their count can say */
  ZUN_RTCP_ENCODE_REASON_TEXT_TOO_LONG = 4,   /* a text of more than 255 bytes */
  ZUN_RTCP_ENCODE_REASON_TOO_LONG = 5,        /* a subpacket of more than 262,144 bytes */
  ZUN_RTCP_ENCODE_REASON_ITEM_TYPE = 6,       /* an SDES item of type 0, which would end the list */
  ZUN_RTCP_ENCODE_REASON_NAME = 7,            /* an APP whose name has not 4 bytes */
  ZUN_RTCP_ENCODE_REASON_VALUE = 8,           /* a number that its field cannot hold */
  ZUN_RTCP_ENCODE_REASON_NOT_WHOLE_WORDS = 9, /* data that must be a multiple of 4 bytes long and is not */
  ZUN_RTCP_ENCODE_REASON_NO_FORM = 10,        /* the dialect has no form for the object */
  ZUN_RTCP_ENCODE_REASON_COUNT = 11           /* how many there are */
};

/* What the reason means, as a short English text without a full stop. */
const char* ZunRtcpEncodeReasonGetText(ZunRtcpEncodeReason reason);

ZUN_EXTERN_C_END

#endif
