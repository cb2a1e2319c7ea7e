// Reads datagrams from text: one on a line, or as hex dumps.
#ifndef TOOLS_ZUNRTCP_CAPTURE_HEXREADER_H
#define TOOLS_ZUNRTCP_CAPTURE_HEXREADER_H

#include <fstream>
#include <istream>
#include <optional>
#include <string>

#include "tools/zunrtcp/Capture/DatagramSource.h"

namespace zunrtcp {

// A line of hex digits is a datagram. A line with offset 0 begins a dump, which goes on as long as each line has the
// offset that the bytes before it add up to. A dump of a whole frame or IP packet gives the RTCP in it. Empty lines,
// comments ("#") and the headings that capture tools print above a dump are passed over.
class HexReader : public DatagramSource {
 public:
  // Opens the file; "-" is standard input. InputError when there is none.
  explicit HexReader(const std::string& path);

  std::optional<RtcpDatagram> Next() override;
  FrameCounts counts() const override { return counts_; }
  const std::string& path() const override { return path_; }
  std::string NothingFound() const override;

 private:
  bool ReadLine();
  void UnreadLine() { has_line_ = true; }
  // The rest of the dump that begins with these bytes.
  std::string ReadDump(std::string bytes);
  RtcpDatagram Found(std::string bytes, std::size_t line);

  std::string path_;
  std::ifstream file_;
  std::istream* in_;
  std::string line_;
  bool has_line_ = false;  // it is to be read once more
  FrameCounts counts_;
  std::size_t found_ = 0;
};

}  // namespace zunrtcp

#endif
