// Opens what datagrams are read from, whatever it is.
#ifndef TOOLS_ZUNRTCP_CAPTURE_OPENSOURCE_H
#define TOOLS_ZUNRTCP_CAPTURE_OPENSOURCE_H

#include <cstdint>
#include <memory>
#include <set>
#include <string>

#include "tools/zunrtcp/Capture/DatagramSource.h"

namespace zunrtcp {

struct InputOptions {
  std::string path;               // "-" is standard input
  bool hex = false;               // it is text, and no capture
  std::set<std::uint16_t> ports;  // of a capture; empty: all
};

// InputError when it cannot be opened.
std::unique_ptr<DatagramSource> OpenSource(const InputOptions& options);

}  // namespace zunrtcp

#endif
