#include "bench/OtherCodecs/OtherCodec.h"

namespace bench {
namespace {

struct OtherCodec {
  const char* name;
  void (*add)(const ComparedDatagram&);  // none where it was not found
};

constexpr OtherCodec kOtherCodecs[] = {
#ifdef BENCH_HAS_GSTREAMER
    {"GStreamer", AddGStreamer},
#else
    {"GStreamer", nullptr},
#endif
#ifdef BENCH_HAS_LIBRE
    {"libre", AddLibre},
#else
    {"libre", nullptr},
#endif
#ifdef BENCH_HAS_ORTP
    {"oRTP", AddOrtp},
#else
    {"oRTP", nullptr},
#endif
};

}  // namespace

void AddOtherCodecs(const ComparedDatagram& compared) {
  for (const OtherCodec& codec : kOtherCodecs) {
    if (codec.add != nullptr) codec.add(compared);
  }
}

void NoteOtherCodecs() {
  for (const OtherCodec& codec : kOtherCodecs) {
    if (codec.add == nullptr) AddNote(std::string(codec.name) + " was not found when this was built: no lines of it.");
  }
}

}  // namespace bench
