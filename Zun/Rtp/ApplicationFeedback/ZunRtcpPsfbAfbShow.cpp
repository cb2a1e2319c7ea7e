#include "Zun/Rtp/ApplicationFeedback/ZunRtcpPsfbAfbShow.h"

#include <bit>

#include "Zun/Rtp/ApplicationFeedback/AfbHeader.h"
#include "Zun/Rtp/Core/Padding.h"
#include "Zun/Rtp/Core/Row.h"

ZUN_VECTOR_USE_PLAIN(ZunRtcpPsfbAfbShowParameter)
ZUN_VECTOR_DEFINE(ZunRtcpPsfbAfbShowParameter)
ZUN_PLAIN_DEFINE(ZunRtcpPsfbAfbShowParameter)

namespace {

using Parameter = ZunRtcpPsfbAfbShowParameter;
using Parameters = zun::VectorOfZunRtcpPsfbAfbShowParameter;

constexpr zun::AfbIdentity kIdentity = zun::IsAfb(ZUN_RTCPPSFBAFB_TYPE_SHOW);

constexpr ZunSizeT kFixedSize = zun::kAfbHeaderSize + 1;
constexpr ZunUint64 kMaxPreference = 15;
constexpr ZunUint64 kMinPacketSize = 12;

// The descriptor of a parameter: its type above the number of its value octets less one.
constexpr int kTypeShift = 3;
constexpr ZunUint8 kWidthMask = 7;
constexpr ZunRtcpPsfbAfbShowParameterType kMaxType = 31;
// No parameter has type 0 and one octet for its value: zeros are padding.
constexpr ZunUint8 kPaddingOctet = 0;

bool IsValid(ZunRtcpPsfbAfbShowParameterType type, ZunUint64 value) {
  switch (type) {
    case ZUN_RTCPPSFBAFBSHOWPARAMETER_TYPE_Enable:
      return value <= 1;
    case ZUN_RTCPPSFBAFBSHOWPARAMETER_TYPE_Preference:
      return value <= kMaxPreference;
    case ZUN_RTCPPSFBAFBSHOWPARAMETER_TYPE_Width:
    case ZUN_RTCPPSFBAFBSHOWPARAMETER_TYPE_Height:
    case ZUN_RTCPPSFBAFBSHOWPARAMETER_TYPE_FrameRate:
    case ZUN_RTCPPSFBAFBSHOWPARAMETER_TYPE_PixelRate:
    case ZUN_RTCPPSFBAFBSHOWPARAMETER_TYPE_Bandwidth:
      return value != 0;
    case ZUN_RTCPPSFBAFBSHOWPARAMETER_TYPE_MinWidth:
    case ZUN_RTCPPSFBAFBSHOWPARAMETER_TYPE_MinHeight:
    case ZUN_RTCPPSFBAFBSHOWPARAMETER_TYPE_MinFrameRate:
    case ZUN_RTCPPSFBAFBSHOWPARAMETER_TYPE_MinPixelRate:
    case ZUN_RTCPPSFBAFBSHOWPARAMETER_TYPE_MinBandwidth:
      return true;
    case ZUN_RTCPPSFBAFBSHOWPARAMETER_TYPE_PacketSize:
      return value >= kMinPacketSize;
    default:
      return false;
  }
}

// As few octets as hold the value, but one for 0.
ZunUint32 ValueWidth(ZunUint64 value) { return static_cast<ZunUint32>(std::bit_width(value | 1) + 7) / 8; }

ZunUint8 Descriptor(const Parameter& parameter) {
  const ZunUint32 type = static_cast<ZunUint32>(parameter.type);
  return static_cast<ZunUint8>((type << kTypeShift | (ValueWidth(parameter.value) - 1)) & 0xFF);
}

ZunUint8 WidthOf(ZunUint8 descriptor) { return static_cast<ZunUint8>((descriptor & kWidthMask) + 1); }

ZunSizeT UnpaddedLength(const ZunRtcpPsfbAfbShow& p) {
  ZunSizeT length = kFixedSize;
  for (const Parameter* x = p.parameters.begin; x != p.parameters.end; ++x) length += 1 + ValueWidth(x->value);
  return length;
}

// The append of the descriptor is not checked: only a value octet that cannot be appended stops the message.
bool WriteParameter(zun::BodyWriter& w, const Parameter& parameter) {
  (void)w.U8(Descriptor(parameter));
  return w.Number(parameter.value, ValueWidth(parameter.value));
}

ZunSizeT CountParameters(zun::BodyReader r) {
  ZunSizeT count = 0;
  for (ZunUint8 descriptor; r.U8(&descriptor) && descriptor != kPaddingOctet && r.SkipReadable(WidthOf(descriptor));)
    ++count;
  return count;
}

bool ReadPadding(zun::BodyReader& r) {
  while (!r.AtEnd()) {
    ZunUint8 octet;
    if (!r.U8(&octet) || !r.NeedValue(octet == kPaddingOctet)) return false;
  }
  return true;
}

// Room for one more parameter: a full list grows once, for all that are left; where that is refused, as far as smaller
// blocks go.
bool MakeRoom(ZunVector_ZunRtcpPsfbAfbShowParameter* list, const zun::BodyReader& rest) {
  if (list->end != list->endBuf) return true;
  Parameters::ReserveGrown(list, Parameters::Size(list) + 1 + CountParameters(rest.LookAhead()));
  return Parameters::GrowIfFull(list) || rest.RefuseAllocation();
}

bool ReadParameters(zun::BodyReader& r, ZunVector_ZunRtcpPsfbAfbShowParameter* list) {
  Parameters::Clear(list);
  while (!r.AtEnd()) {
    ZunUint8 descriptor;
    if (!r.U8(&descriptor)) return false;
    if (descriptor == kPaddingOctet) return ReadPadding(r);
    const ZunUint8 width = WidthOf(descriptor);
    const ZunUint8* const octets = r.Take(width);
    if (octets == nullptr || !r.MayHoldEntries(1) || !MakeRoom(list, r)) return false;
    ZunUint64 value = 0;
    for (ZunUint8 i = 0; i < width; ++i) value = value << 8 | octets[i];
    Parameter* const fresh = list->end++;
    fresh->type = descriptor >> kTypeShift;
    fresh->value = value;
  }
  return true;
}

struct Wire {
  static ZunSizeT Length(const ZunRtcpPsfbAfbShow& p) {
    const ZunSizeT length = UnpaddedLength(p);
    return length + zun::PaddingAfter(length);
  }

  // The zeros align the end of the whole output.
  static ZunSizeT EncodedLength(const ZunRtcpPsfbAfbShow& p, ZunSizeT begin, ZunRtcpDialect) {
    const ZunSizeT length = UnpaddedLength(p);
    return length + zun::PaddingAfter(begin + length);
  }

  static ZunRtcpEncodeReason FindUnencodable(const ZunRtcpPsfbAfbShow& p, ZunRtcpDialect) {
    for (const Parameter* x = p.parameters.begin; x != p.parameters.end; ++x) {
      if (x->type < 0 || x->type > kMaxType || Descriptor(*x) == kPaddingOctet) return ZUN_RTCP_ENCODE_REASON_VALUE;
    }
    return ZUN_RTCP_ENCODE_REASON_NONE;
  }

  static bool Write(const ZunRtcpPsfbAfbShow& p, zun::Output& out, bool pad) {
    const ZunSizeT unpadded = UnpaddedLength(p);
    zun::BodyWriter w(out, unpadded + zun::PaddingAfter(out.Size() + unpadded));
    if (!zun::WriteNorviHead(w, pad, kIdentity, p, unpadded + zun::PaddingAfter(unpadded)) || !w.U8(p.seqno)) {
      return false;
    }
    for (const Parameter* x = p.parameters.begin; x != p.parameters.end; ++x) {
      if (!WriteParameter(w, *x)) return false;
    }
    return w.Zeros(zun::PaddingAfter(w.Size()));
  }

  // The types of the object stay as they are: it is a SHOW already.
  static bool Read(ZunRtcpPsfbAfbShow* p, zun::BodyReader& r, const zun::Body&) {
    return zun::ReadNorviHead(r, p) && r.U8(&p->seqno) && ReadParameters(r, &p->parameters);
  }
};

}  // namespace

ZunRtcpPsfbAfbShowParameter* ZunRtcpPsfbAfbShowParameterConstruct(ZunRtcpPsfbAfbShowParameter* p,
                                                                  ZunRtcpPsfbAfbShowParameterType type,
                                                                  ZunUint64 value) {
  if (!IsValid(type, value)) return nullptr;
  *p = {type, value};
  return p;
}

ZunRtcpPsfbAfbShow* ZunRtcpPsfbAfbShowConstructDefault(ZunRtcpPsfbAfbShow* p, ZunAllocator* a) {
  zun::SetFeedbackHead(p, kIdentity, 0, 0);
  p->seqno = 0;
  ZunVector_ZunRtcpPsfbAfbShowParameterConstructDefault(&p->parameters, a);
  return p;
}

ZunRtcpPsfbAfbShow* ZunRtcpPsfbAfbShowConstructFull(ZunRtcpPsfbAfbShow* p, ZunRtpSourceId sender, ZunRtpSourceId source,
                                                    ZunUint8 seq, const ZunVector_ZunRtcpPsfbAfbShowParameter* params) {
  if (ZunVector_ZunRtcpPsfbAfbShowParameterConstructCopy(&p->parameters, params) == nullptr) return nullptr;
  zun::SetFeedbackHead(p, kIdentity, sender, source);
  p->seqno = seq;
  return p;
}

ZUN_RTCP_OWNING_KIND_DEFINE(ZunRtcpPsfbAfbShow, kIdentity, &ZunRtcpPsfbAfbShow::parameters)
ZUN_RTCP_ROW_DEFINE(ZunRtcpPsfbAfbShow, Wire)
