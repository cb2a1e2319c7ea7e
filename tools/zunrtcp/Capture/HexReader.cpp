#include "tools/zunrtcp/Capture/HexReader.h"

#include <pcap/dlt.h>

#include <iostream>
#include <utility>

#include "tools/zunrtcp/Capture/HexText.h"
#include "tools/zunrtcp/Capture/InputPath.h"
#include "tools/zunrtcp/Capture/RtcpFinder.h"
#include "tools/zunrtcp/InputError.h"
#include "tools/zunrtcp/Text.h"

namespace zunrtcp {

namespace {

// What a dump of a whole frame may begin with.
constexpr int kLinkTypes[] = {DLT_EN10MB, DLT_RAW, DLT_LINUX_SLL2, DLT_LINUX_SLL, DLT_NULL};

// Empty, a comment, or the line that a capture tool prints above a dump.
bool IsPassedOver(std::string_view line) {
  const std::size_t begin = line.find_first_not_of(" \t\r");
  if (begin == std::string_view::npos || line[begin] == '#') return true;
  return line.substr(begin).starts_with("Frame ") || line.find(" IP ") != std::string_view::npos ||
         line.find(" IP6 ") != std::string_view::npos;
}

// Bytes that are no RTCP may be a frame that holds some.
void TakeFromFrame(RtcpDatagram* datagram) {
  for (const int link_type : kLinkTypes) {
    Frame frame = ReadFrame(link_type, datagram->payload);
    if (frame.content != FrameContent::Udp || !LooksLikeRtcp(frame.datagram.payload)) continue;
    datagram->source = std::move(frame.datagram.source);
    datagram->destination = std::move(frame.datagram.destination);
    datagram->missing = frame.datagram.missing;
    datagram->payload = std::move(frame.datagram.payload);
    return;
  }
}

}  // namespace

HexReader::HexReader(const std::string& path) : path_(InputName(path)), in_(&file_) {
  if (path == "-") {
    in_ = &std::cin;
    return;
  }
  CheckReadable(path);
  file_.open(path, std::ios::binary);
}

bool HexReader::ReadLine() {
  if (std::exchange(has_line_, false)) return true;
  if (!std::getline(*in_, line_)) return false;
  ++counts_.lines;
  return true;
}

std::string HexReader::ReadDump(std::string bytes) {
  while (ReadLine()) {
    const std::optional<HexDumpLine> more = ReadHexDumpLine(line_);
    if (!more || more->offset != bytes.size() || more->offset == 0) {
      UnreadLine();
      break;
    }
    bytes += more->bytes;
  }
  return bytes;
}

RtcpDatagram HexReader::Found(std::string bytes, std::size_t line) {
  RtcpDatagram datagram;
  datagram.number = ++found_;
  datagram.line = line;
  datagram.payload = std::move(bytes);
  if (!LooksLikeRtcp(datagram.payload)) TakeFromFrame(&datagram);
  return datagram;
}

std::optional<RtcpDatagram> HexReader::Next() {
  while (ReadLine()) {
    const std::size_t number = counts_.lines;
    if (const std::optional<HexDumpLine> dump = ReadHexDumpLine(line_); dump && dump->offset == 0) {
      std::string bytes = ReadDump(dump->bytes);
      if (!bytes.empty()) return Found(std::move(bytes), number);
    } else if (const std::optional<std::string> bytes = ReadHexDigits(line_); bytes && !bytes->empty()) {
      return Found(*bytes, number);
    } else if (!IsPassedOver(line_)) {
      throw InputError(path_ + Printed(": line %zu is not hex: ", number) + Quoted(line_.substr(0, 40)));
    }
  }
  return std::nullopt;
}

std::string HexReader::NothingFound() const {
  return path_ + ": no datagram in it (" + Counted(counts_.lines, "line") + ")";
}

}  // namespace zunrtcp
