// Emits every inline function of the public headers as a symbol of the library.
#define ZUN_EMIT_INLINE_SYMBOLS
#include "Zun/Rtp/Dialect/ZunRtcpCodec.h"
