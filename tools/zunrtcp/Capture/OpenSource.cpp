#include "tools/zunrtcp/Capture/OpenSource.h"

#include "tools/zunrtcp/Capture/HexReader.h"
#include "tools/zunrtcp/Capture/RtcpFinder.h"

namespace zunrtcp {

std::unique_ptr<DatagramSource> OpenSource(const InputOptions& options) {
  if (options.hex) return std::make_unique<HexReader>(options.path);
  return std::make_unique<RtcpFinder>(options.path, options.ports);
}

}  // namespace zunrtcp
