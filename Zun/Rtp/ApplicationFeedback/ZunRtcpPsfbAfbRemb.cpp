#include "Zun/Rtp/ApplicationFeedback/ZunRtcpPsfbAfbRemb.h"

#include <bit>

#include "Zun/Rtp/ApplicationFeedback/AfbHeader.h"
#include "Zun/Rtp/Core/EntryList.h"
#include "Zun/Rtp/Core/Row.h"

ZUN_VECTOR_USE_PLAIN(ZunRtpSourceId)

namespace {

using Sources = zun::VectorOfZunRtpSourceId;

constexpr zun::AfbIdentity kIdentity = zun::IsAfb(ZUN_RTCPPSFBAFB_TYPE_REMB);

constexpr ZunSizeT kFixedSize = zun::kAfbHeaderSize + 4;
constexpr ZunSizeT kMaxSources = 255;

constexpr int kMantissaBits = 18;
constexpr int kMaxExponent = 63;
constexpr ZunUint32 kMaxMantissa = (1U << kMantissaBits) - 1;

// An IEEE single: the exponent, 127 above that of the leading bit, and 23 bits after the implied leading bit.
constexpr int kFloatFractionBits = 23;
constexpr int kFloatBias = 127;
constexpr ZunUint32 kFloatFraction = (1U << kFloatFractionBits) - 1;
static_assert(kMantissaBits <= kFloatFractionBits + 1);  // every mantissa is a float

struct WireBitrate {
  ZunUint32 mantissa;
  ZunUint32 exponent;
};

// 2^exponent, for the exponents of normal floats.
constexpr ZunFloat32 PowerOfTwo(int exponent) {
  return std::bit_cast<ZunFloat32>(static_cast<ZunUint32>(exponent + kFloatBias) << kFloatFractionBits);
}

constexpr ZunFloat32 FromWire(WireBitrate wire) {
  return static_cast<ZunFloat32>(wire.mantissa) * PowerOfTwo(static_cast<int>(wire.exponent));  // exact
}

// The largest bitrate of the wire. It can be read, but not set.
constexpr ZunFloat32 kBitrateLimit = FromWire({kMaxMantissa, kMaxExponent});

// NaN compares false with everything.
bool IsValid(ZunFloat32 bitrate) { return bitrate >= 0 && bitrate < kBitrateLimit; }

bool IsValid(const ZunVector_ZunRtpSourceId* sources) {
  return !ZunVector_ZunRtpSourceIdEmpty(sources) && ZunVector_ZunRtpSourceIdSize(sources) <= kMaxSources;
}

// Without rounding: the bits that do not fit are dropped. False when the exponent does not fit.
bool ToWire(ZunFloat32 bitrate, WireBitrate* wire) {
  const ZunUint32 bits = std::bit_cast<ZunUint32>(bitrate);
  // Of the leading bit, as frexp counts it: 2^(exponent - 1) <= bitrate < 2^exponent. Zero has a low one too.
  const int exponent = static_cast<int>(bits >> kFloatFractionBits & 0xFF) - kFloatBias + 1;
  if (exponent <= kMantissaBits) {
    *wire = {static_cast<ZunUint32>(static_cast<ZunInt32>(bitrate)), 0};
    return true;
  }
  const ZunUint32 significand = (bits & kFloatFraction) | (kFloatFraction + 1);
  *wire = {significand >> (kFloatFractionBits + 1 - kMantissaBits), static_cast<ZunUint32>(exponent - kMantissaBits)};
  return wire->exponent <= kMaxExponent;
}

template <class Writer>
bool WriteIdentifierAndCount(Writer& w, const ZunVector_ZunRtpSourceId& sources) {
  return w.template Fields<5>([&sources](zun::FieldWriter& f) {
    f.U32(zun::kRembAfbIdentifier);
    f.U8(static_cast<ZunUint8>(Sources::Size(&sources) & 0xFF));
  });
}

template <class Writer>
bool WriteBitrate(Writer& w, ZunFloat32 bitrate) {
  WireBitrate wire;
  return ToWire(bitrate, &wire) && w.U24(wire.exponent << kMantissaBits | wire.mantissa);
}

template <class Reader>
bool ReadCountAndBitrate(Reader& r, ZunInt8* count, ZunFloat32* bitrate) {
  ZunUint32 word;
  if (!r.U32(&word)) return false;
  *count = static_cast<ZunInt8>(word >> 24);
  *bitrate = FromWire({word & kMaxMantissa, word >> kMantissaBits & kMaxExponent});
  return true;
}

// The sources that are there are kept even where their number, or what follows them, is not acceptable. A number
// with its sign bit set is beyond any message.
template <class Reader>
bool ReadSources(Reader& r, ZunInt8 count, ZunVector_ZunRtpSourceId* sources) {
  const ZunSizeT announced = count < 0 ? SIZE_MAX : static_cast<ZunSizeT>(count);
  return zun::ReadCountedEntries<zun::kSourceIdSize, Sources>(r, sources, announced, zun::DecodeSourceId) &&
         r.NeedEnd();
}

struct Wire {
  static ZunSizeT Length(const ZunRtcpPsfbAfbRemb& p) {
    return kFixedSize + zun::kSourceIdSize * ZunVector_ZunRtpSourceIdSize(&p.sources);
  }

  static ZunRtcpEncodeReason FindUnencodable(const ZunRtcpPsfbAfbRemb& p, ZunRtcpDialect) {
    if (Sources::Size(&p.sources) > kMaxSources) return ZUN_RTCP_ENCODE_REASON_TOO_MANY;
    return IsValid(p.bitrate) || p.bitrate == kBitrateLimit ? ZUN_RTCP_ENCODE_REASON_NONE
                                                            : ZUN_RTCP_ENCODE_REASON_VALUE;
  }

  template <class Writer>
  static bool Write(const ZunRtcpPsfbAfbRemb& p, Writer& w, bool pad) {
    const ZunSizeT length = Length(p);
    return zun::WriteFeedbackHeader(w, pad, kIdentity, p, length) && WriteIdentifierAndCount(w, p.sources) &&
           WriteBitrate(w, p.bitrate) && zun::WriteEntries<zun::kSourceIdSize>(w, p.sources, zun::EncodeSourceId);
  }

  template <class Reader>
  static bool Read(ZunRtcpPsfbAfbRemb* p, Reader& r, const zun::Body&) {
    ZunInt8 count;
    if (!zun::ReadFeedbackSources(r, p) || !zun::ReadRembAfbHeader(r) || !ReadCountAndBitrate(r, &count, &p->bitrate) ||
        !ReadSources(r, count, &p->sources)) {
      return false;
    }
    kIdentity.Mark(p);
    return true;
  }
};

}  // namespace

ZunRtcpPsfbAfbRemb* ZunRtcpPsfbAfbRembConstructDefault(ZunRtcpPsfbAfbRemb* p, ZunAllocator* a) {
  zun::SetFeedbackHead(p, kIdentity, 0, 0);
  p->bitrate = 0;
  ZunVector_ZunRtpSourceIdConstructDefault(&p->sources, a);
  return p;
}

ZunRtcpPsfbAfbRemb* ZunRtcpPsfbAfbRembConstructFull(ZunRtcpPsfbAfbRemb* p, ZunRtpSourceId sender, ZunFloat32 bitrate,
                                                    const ZunVector_ZunRtpSourceId* sources, ZunAllocator*) {
  if (!IsValid(sources) || !IsValid(bitrate)) return nullptr;
  if (ZunVector_ZunRtpSourceIdConstructCopy(&p->sources, sources) == nullptr) return nullptr;
  zun::SetFeedbackHead(p, kIdentity, sender, 0);
  p->bitrate = bitrate;
  return p;
}

ZunBool ZunRtcpPsfbAfbRembSetBitrate(ZunRtcpPsfbAfbRemb* p, ZunFloat32 bitrate) {
  if (!IsValid(bitrate)) return 0;
  p->bitrate = bitrate;
  return 1;
}

ZunBool ZunRtcpPsfbAfbRembSetFeedbackSources(ZunRtcpPsfbAfbRemb* p, const ZunVector_ZunRtpSourceId* sources) {
  return IsValid(sources) && ZunVector_ZunRtpSourceIdAssign(&p->sources, sources) != nullptr;
}

ZUN_RTCP_OWNING_KIND_DEFINE(ZunRtcpPsfbAfbRemb, kIdentity, &ZunRtcpPsfbAfbRemb::sources)
ZUN_RTCP_ROW_DEFINE(ZunRtcpPsfbAfbRemb, Wire)
