#include "tools/zunrtcp/LiveCommand.h"

#include <cstdio>
#include <memory>

#include "tools/zunrtcp/Capture/CaptureReader.h"
#include "tools/zunrtcp/Capture/Interrupt.h"
#include "tools/zunrtcp/Capture/RtcpFinder.h"
#include "tools/zunrtcp/Capture/UdpListener.h"

namespace zunrtcp {

namespace {

std::unique_ptr<DatagramSource> OpenLive(const LiveOptions& options) {
  if (!options.listen.empty()) return std::make_unique<UdpListener>(options.listen);
  return std::make_unique<RtcpFinder>(CaptureReader::OnInterface(options.interface), options.decode.input.ports);
}

}  // namespace

ExitStatus RunLive(const LiveOptions& options, std::ostream* out) {
  const std::unique_ptr<DatagramSource> source = OpenLive(options);
  CatchInterrupts();
  (void)std::fprintf(stderr, "zunrtcp: %s %s; Ctrl-C ends it\n", options.listen.empty() ? "watching" : "listening on",
                     source->path().c_str());
  return RunDecode(source.get(), options.decode, out);
}

}  // namespace zunrtcp
