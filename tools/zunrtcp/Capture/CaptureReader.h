// Reads the records of a capture file (pcap or pcapng) one by one.
#ifndef TOOLS_ZUNRTCP_CAPTURE_CAPTUREREADER_H
#define TOOLS_ZUNRTCP_CAPTURE_CAPTUREREADER_H

#include <cstddef>
#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <string_view>

struct pcap;
struct pcap_pkthdr;

namespace zunrtcp {

// One captured frame.
struct Record {
  std::size_t number = 0;    // counted from 1, as other tools count frames
  std::int64_t offset = 0;   // where it begins in the file; -1 when the file cannot tell (a pipe)
  std::int64_t seconds = 0;  // since 1970
  std::uint32_t microseconds = 0;
  std::string_view bytes;         // what was captured; valid until the next read
  std::size_t original_size = 0;  // what was on the wire; more than `bytes` when the capture cut it off
};

class CaptureReader {
 public:
  // Opens the file; "-" is standard input. InputError when there is no such file or it is not a capture.
  explicit CaptureReader(const std::string& path);

  // Watches a network interface, "any" for all. InputError when there is none of that name, or it may not be watched.
  static CaptureReader OnInterface(const std::string& name);

  // The next record; none at the end of the file, or of an interface after an interrupt (CatchInterrupts). InputError
  // when the file ends within a record or is damaged: everything before has been read then.
  std::optional<Record> Next();

  // The link layer of all records, a DLT_ number of libpcap.
  int LinkType() const;

  const std::string& path() const { return path_; }
  bool live() const { return descriptor_ >= 0; }

 private:
  CaptureReader() = default;
  struct Close {
    void operator()(pcap* capture) const;
  };

  std::int64_t Offset() const;
  // As pcap_next_ex, but for an interface it waits until there is something or an interrupt.
  int Read(pcap_pkthdr** header, const unsigned char** bytes);

  std::string path_;
  std::unique_ptr<pcap, Close> capture_;
  int descriptor_ = -1;  // of an interface
  std::size_t records_ = 0;
};

}  // namespace zunrtcp

#endif
