// The tool's reader of captures: any file gives datagrams or one complaint.
#include "fuzz/File.h"
#include "tools/zunrtcp/Capture/RtcpFinder.h"
#include "tools/zunrtcp/InputError.h"

namespace {

void ReadAll(const fuzz::File& file, std::size_t size) {
  zunrtcp::RtcpFinder finder(file.path(), {});
  while (const auto found = finder.Next()) {
    fuzz::Check(found->payload.size() <= size, "a payload lies in the file");
    fuzz::Check(zunrtcp::LooksLikeRtcp(found->payload), "what is found looks like RTCP");
  }
  const zunrtcp::FrameCounts counts = finder.counts();
  fuzz::Check(counts.udp >= counts.rtp, "RTP is a part of what is counted as UDP");
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* octets, std::size_t size) {
  const fuzz::File file(octets, size);
  try {
    ReadAll(file, size);
  } catch (const zunrtcp::InputError& complaint) {
    fuzz::Check(*complaint.what() != '\0', "a complaint says something");
  }
  return 0;
}
