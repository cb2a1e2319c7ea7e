#include "Zun/Rtp/Reports/ZunRtcpSdesItemPriv.h"

namespace {

constexpr ZunSizeT kPrefixLengthSize = 1;
constexpr ZunSizeT kMinTextSize = 2;  // callers rely on a lone prefix length being no private extension

}  // namespace

ZunRtcpSdesItemPriv* ZunRtcpSdesItemPrivConstructDefault(ZunRtcpSdesItemPriv* priv, ZunAllocator* a) {
  priv->prefix_len = 0;
  ZunStringConstructDefault(&priv->prefix, a);
  ZunStringConstructDefault(&priv->text, a);
  return priv;
}

ZunRtcpSdesItemPriv* ZunRtcpSdesItemPrivConstructItem(ZunRtcpSdesItemPriv* priv, const ZunRtcpSdesItem* itm) {
  const ZunString* const value = &itm->text;
  if (value->size < kMinTextSize) return nullptr;
  const ZunUint8 prefix_len = static_cast<ZunUint8>(ZunStringAtConst(value, 0));
  const ZunSizeT text_begin = kPrefixLengthSize + prefix_len;
  if (text_begin > value->size) return nullptr;
  ZunRtcpSdesItemPrivConstructDefault(priv, value->allocator);
  if (ZunStringAssignSubstring(&priv->prefix, value, kPrefixLengthSize, prefix_len) == nullptr ||
      ZunStringAssignSubstring(&priv->text, value, text_begin, value->size - text_begin) == nullptr) {
    ZunRtcpSdesItemPrivDestruct(priv);
    return nullptr;
  }
  priv->prefix_len = prefix_len;
  return priv;
}

void ZunRtcpSdesItemPrivDestruct(ZunRtcpSdesItemPriv* priv) {
  ZunStringDestruct(&priv->prefix);
  ZunStringDestruct(&priv->text);
}

ZunBool ZunRtcpSdesItemPrivSetPrefix(ZunRtcpSdesItemPriv* priv, const ZunString* prefix) {
  return ZunStringAssign(&priv->prefix, prefix) != nullptr;
}

ZunBool ZunRtcpSdesItemPrivSetPrefixCStr(ZunRtcpSdesItemPriv* priv, const char* prefix) {
  return ZunStringAssignCStr(&priv->prefix, prefix) != nullptr;
}

ZunBool ZunRtcpSdesItemPrivSetText(ZunRtcpSdesItemPriv* priv, const ZunString* text) {
  return ZunStringAssign(&priv->text, text) != nullptr;
}

ZunBool ZunRtcpSdesItemPrivSetTextCStr(ZunRtcpSdesItemPriv* priv, const char* text) {
  return ZunStringAssignCStr(&priv->text, text) != nullptr;
}

ZunBool ZunRtcpSdesItemPrivWriteToItem(const ZunRtcpSdesItemPriv* priv, ZunRtcpSdesItem* itm) {
  if (priv->prefix_len > priv->prefix.size) return 0;
  ZunString* const value = &itm->text;
  ZunStringClear(value);
  return ZunStringAppendChar(value, static_cast<char>(priv->prefix_len)) != nullptr &&
         ZunStringAppendSubstring(value, &priv->prefix, 0, priv->prefix_len) != nullptr &&
         ZunStringAppend(value, &priv->text) != nullptr;
}
