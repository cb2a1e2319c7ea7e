// Writes datagrams to a capture file (pcap), as IP packets.
#ifndef TOOLS_ZUNRTCP_CAPTURE_CAPTUREWRITER_H
#define TOOLS_ZUNRTCP_CAPTURE_CAPTUREWRITER_H

#include <memory>
#include <string>

#include "tools/zunrtcp/Capture/DatagramSource.h"

struct pcap;
struct pcap_dumper;

namespace zunrtcp {

class CaptureWriter {
 public:
  // InputError when the file cannot be written. "-" is standard output.
  explicit CaptureWriter(const std::string& path);

  // Addresses of either IP version; InputError when the two are not of one, or the payload is longer than UDP allows.
  void Write(const RtcpDatagram& datagram);
  // InputError when not all could be written.
  void Finish();

 private:
  struct Close {
    void operator()(pcap* capture) const;
    void operator()(pcap_dumper* dumper) const;
  };

  std::string path_;
  std::unique_ptr<pcap, Close> capture_;
  std::unique_ptr<pcap_dumper, Close> dumper_;
};

}  // namespace zunrtcp

#endif
