#include "Zun/Rtp/Reports/ZunRtcpApp.h"

#include "Zun/Os/Log.h"
#include "Zun/Rtp/Core/Padding.h"
#include "Zun/Rtp/Core/Row.h"
#include "Zun/Rtp/Reports/OwnedPair.h"

namespace {

using Owned = zun::OwnedPair<ZUN_RTCPSUBPACKET_TYPE_APP, zun::StringMember<&ZunRtcpApp::name>,
                             zun::StringMember<&ZunRtcpApp::data>>;

constexpr ZunSizeT kNameSize = 4;
constexpr ZunSizeT kSourceSize = 4;
constexpr ZunUint8 kSubtype = 0;

void ConstructStrings(ZunRtcpApp* p, ZunAllocator* a) {
  ZunStringConstructDefault(&p->name, a);
  ZunStringConstructDefault(&p->data, a);
}

struct Wire {
  static ZunSizeT Length(const ZunRtcpApp& p) {
    const ZunSizeT strings = p.name.size + p.data.size;
    return zun::kSubpacketHeaderSize + kSourceSize + strings + zun::PaddingBehind(strings);
  }

  // The zeros complete the data, and the length completes name and data: the same for every name of whole words.
  static bool Write(const ZunRtcpApp& p, ZunString* b, bool pad) {
    const ZunSizeT zeros = zun::PaddingBehind(p.data.size);
    zun::BodyWriter w(b, zun::kSubpacketHeaderSize + kSourceSize + p.name.size + p.data.size + zeros);
    if (!zun::WriteSubpacketHeader(w, pad, kSubtype, p.type, Length(p)) || !w.U32(p.source) || !w.String(p.name) ||
        !w.String(p.data)) {
      return false;
    }
    w.Padding(zeros);
    return true;
  }

  // Only what does not fit the body is refused: a string that cannot grow keeps its old bytes.
  static bool Read(ZunRtcpApp* p, zun::BodyReader& r, zun::SubpacketHeader) {
    if (!r.U32(&p->source) || r.Take(kNameSize) == nullptr) return false;
    ZunStringAssignSubstring(&p->name, r.Buffer(), r.Position() - kNameSize, kNameSize);
    if (r.Remaining() % 4 != 0) {
      LOG_ERROR(ZunLogRtcp_, "ZunRtcpAppAssignFromBuffer", "Length of application data is not a multiple of 4 octets");
      return false;
    }
    if (!r.Has(r.Remaining())) return false;
    (void)r.Rest(&p->data);
    return true;
  }
};

}  // namespace

ZunRtcpApp* ZunRtcpAppConstructDefault(ZunRtcpApp* p, ZunAllocator* a) {
  p->type = ZUN_RTCPSUBPACKET_TYPE_APP;
  p->source = 0;
  ConstructStrings(p, a);
  return p;
}

ZunRtcpApp* ZunRtcpAppConstructFull(ZunRtcpApp* p, ZunRtpSourceId source, const ZunString* name, const ZunString* data,
                                    ZunAllocator* a) {
  p->source = source;
  ConstructStrings(p, a);
  if (name->size != kNameSize) {
    LOG_ERROR(ZunLogRtcp_, "ZunRtcpAppConstructFull", "Length of application name is not equal to 4");
    return nullptr;
  }
  if (ZunStringAssign(&p->name, name) == nullptr || ZunStringAssign(&p->data, data) == nullptr) {
    ZunRtcpAppDestruct(p);
  }
  // Null after success too: no caller has ever been given an APP by this constructor, and none expects one.
  return nullptr;
}

ZunRtcpApp* ZunRtcpAppConstructCopy(ZunRtcpApp* p, const ZunRtcpApp* o) { return Owned::ConstructCopy(p, o); }

ZunRtcpApp* ZunRtcpAppAssign(ZunRtcpApp* p, const ZunRtcpApp* o) { return Owned::Assign(p, o); }

void ZunRtcpAppDestruct(ZunRtcpApp* p) { Owned::Destruct(p); }

ZunBool ZunRtcpAppSetName(ZunRtcpApp* p, const ZunString* name) {
  return name->size == kNameSize && ZunStringAssign(&p->name, name) != nullptr;
}

ZunBool ZunRtcpAppSetData(ZunRtcpApp* p, const ZunString* data) { return ZunStringAssign(&p->data, data) != nullptr; }

ZUN_RTCP_ROW_DEFINE(ZunRtcpApp, Wire)
