#include "Zun/Rtp/Core/ZunRtcpReason.h"

const char* ZunRtcpDecodeReasonGetText(ZunRtcpDecodeReason reason) {
  switch (reason) {
    case ZUN_RTCP_DECODE_REASON_NONE:
      return "not refused";
    case ZUN_RTCP_DECODE_REASON_EMPTY:
      return "the datagram is empty";
    case ZUN_RTCP_DECODE_REASON_HEADER_CUT_OFF:
      return "fewer than 4 octets are left for a header";
    case ZUN_RTCP_DECODE_REASON_VERSION:
      return "the version is not 2";
    case ZUN_RTCP_DECODE_REASON_LENGTH:
      return "the length passes the end of the datagram";
    case ZUN_RTCP_DECODE_REASON_PADDING:
      return "the padding count is 0 or more than the body has";
    case ZUN_RTCP_DECODE_REASON_TOO_SHORT:
      return "the body is too short";
    case ZUN_RTCP_DECODE_REASON_LEFT_OVER:
      return "octets are left over after the last field";
    case ZUN_RTCP_DECODE_REASON_NO_ENTRIES:
      return "there is no entry where there must be one";
    case ZUN_RTCP_DECODE_REASON_VALUE:
      return "a field has a value that it must not have";
    case ZUN_RTCP_DECODE_REASON_NO_OBJECT:
      return "there is no object for this form in this dialect";
    case ZUN_RTCP_DECODE_REASON_LIMIT:
      return "it holds more than the limits allow";
    case ZUN_RTCP_DECODE_REASON_ALLOCATION:
      return "memory was refused";
    default:
      return "unknown reason";
  }
}

const char* ZunRtcpEncodeReasonGetText(ZunRtcpEncodeReason reason) {
  switch (reason) {
    case ZUN_RTCP_ENCODE_REASON_NONE:
      return "not refused";
    case ZUN_RTCP_ENCODE_REASON_EMPTY:
      return "the packet is empty";
    case ZUN_RTCP_ENCODE_REASON_NO_ENTRIES:
      return "there is no entry where there must be one";
    case ZUN_RTCP_ENCODE_REASON_TOO_MANY:
      return "there are more entries than their count can say";
    case ZUN_RTCP_ENCODE_REASON_TEXT_TOO_LONG:
      return "a text has more than 255 bytes";
    case ZUN_RTCP_ENCODE_REASON_TOO_LONG:
      return "it takes more than 262144 bytes";
    case ZUN_RTCP_ENCODE_REASON_ITEM_TYPE:
      return "an SDES item has type 0";
    case ZUN_RTCP_ENCODE_REASON_NAME:
      return "the name has not 4 bytes";
    case ZUN_RTCP_ENCODE_REASON_VALUE:
      return "a number is too large for its field";
    case ZUN_RTCP_ENCODE_REASON_NOT_WHOLE_WORDS:
      return "data is no multiple of 4 bytes long";
    case ZUN_RTCP_ENCODE_REASON_NO_FORM:
      return "there is no form for this object in this dialect";
    default:
      return "unknown reason";
  }
}
