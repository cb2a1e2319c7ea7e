#include "Zun/Rtp/Reports/ZunRtcpApp.h"

#include "Zun/Os/Log.h"
#include "Zun/Rtp/Core/Padding.h"
#include "Zun/Rtp/Core/Row.h"

namespace {

constexpr zun::SubpacketIdentity kIdentity = zun::IsSubpacket(ZUN_RTCPSUBPACKET_TYPE_APP);
using Strings = zun::Owned<&ZunRtcpApp::name, &ZunRtcpApp::data>;

constexpr ZunSizeT kNameSize = 4;
constexpr ZunSizeT kSourceSize = 4;
constexpr ZunUint8 kSubtype = 0;

struct Wire {
  static ZunSizeT Length(const ZunRtcpApp& p) {
    const ZunSizeT strings = p.name.size + p.data.size;
    return zun::kSubpacketHeaderSize + kSourceSize + strings + zun::PaddingAfter(strings);
  }

  // The zeros complete the data, while the length completes name and data: the same for every name of whole words.
  static ZunSizeT EncodedLength(const ZunRtcpApp& p, ZunSizeT, ZunRtcpDialect) {
    return zun::kSubpacketHeaderSize + kSourceSize + p.name.size + p.data.size + zun::PaddingAfter(p.data.size);
  }

  static ZunRtcpEncodeReason FindUnencodable(const ZunRtcpApp& p, ZunRtcpDialect) {
    return p.name.size == kNameSize ? ZUN_RTCP_ENCODE_REASON_NONE : ZUN_RTCP_ENCODE_REASON_NAME;
  }

  static bool Write(const ZunRtcpApp& p, zun::Output& out, bool pad) {
    const ZunSizeT zeros = zun::PaddingAfter(p.data.size);
    zun::BodyWriter w(out, EncodedLength(p, 0, out.dialect()));
    if (!zun::WriteSubpacketHeader(w, pad, kSubtype, p.type, Length(p)) || !w.U32(p.source) || !w.String(p.name) ||
        !w.String(p.data)) {
      return false;
    }
    w.OptionalZeros(zeros);
    return true;
  }

  // Where it is parsed, only what does not fit the body is refused: a string that cannot grow keeps its old bytes.
  static bool Read(ZunRtcpApp* p, zun::BodyReader& r, const zun::Body&) {
    if (!r.U32(&p->source)) return false;
    const ZunUint8* const name = r.Take(kNameSize);
    if (name == nullptr) return false;
    const bool named = zun::AssignStringBytes(&p->name, reinterpret_cast<const char*>(name), kNameSize);
    if (r.BytesBeforeEnd() % 4 != 0) {
      ZUN_LOG_ERROR_(ZunLogRtcp_, "ZunRtcpAppAssignFromBuffer",
                     "Length of application data is not a multiple of 4 octets");
      return r.Refuse(ZUN_RTCP_DECODE_REASON_LEFT_OVER);
    }
    if (!r.NeedReadable(r.BytesBeforeEnd())) return false;
    const bool is_whole = r.StringToEnd(&p->data) && named;
    return is_whole || !r.IsDecoded() || r.RefuseAllocation();
  }
};

}  // namespace

ZunRtcpApp* ZunRtcpAppConstructDefault(ZunRtcpApp* p, ZunAllocator* a) {
  p->source = 0;
  Strings::ConstructDefault(p, a);
  return kIdentity.Mark(p);
}

ZunRtcpApp* ZunRtcpAppConstructFull(ZunRtcpApp* p, ZunRtpSourceId source, const ZunString* name, const ZunString* data,
                                    ZunAllocator* a) {
  p->source = source;
  Strings::ConstructDefault(p, a);
  if (name->size != kNameSize) {
    ZUN_LOG_ERROR_(ZunLogRtcp_, "ZunRtcpAppConstructFull", "Length of application name is not equal to 4");
    return nullptr;
  }
  if (ZunStringAssign(&p->name, name) == nullptr || ZunStringAssign(&p->data, data) == nullptr) {
    ZunRtcpAppDestruct(p);
  }
  // Null after success too: no caller has ever been given an APP by this constructor, and none expects one.
  return nullptr;
}

ZUN_RTCP_OWNING_KIND_DEFINE(ZunRtcpApp, kIdentity, &ZunRtcpApp::name, &ZunRtcpApp::data)

ZunBool ZunRtcpAppSetName(ZunRtcpApp* p, const ZunString* name) {
  return name->size == kNameSize && ZunStringAssign(&p->name, name) != nullptr;
}

ZunBool ZunRtcpAppSetData(ZunRtcpApp* p, const ZunString* data) { return ZunStringAssign(&p->data, data) != nullptr; }

ZUN_RTCP_ROW_DEFINE(ZunRtcpApp, Wire)
