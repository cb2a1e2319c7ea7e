#include "tools/zunrtcp/Capture/CaptureReader.h"

#include <pcap/pcap.h>

#include <array>
#include <cstdio>

#include "tools/zunrtcp/Capture/InputPath.h"
#include "tools/zunrtcp/InputError.h"
#include "tools/zunrtcp/Text.h"

namespace zunrtcp {

void CaptureReader::Close::operator()(pcap* capture) const { pcap_close(capture); }

CaptureReader::CaptureReader(const std::string& path) : path_(InputName(path)) {
  if (path != "-") CheckReadable(path);
  std::array<char, PCAP_ERRBUF_SIZE> reason{};
  capture_.reset(pcap_open_offline(path.c_str(), reason.data()));
  if (capture_ != nullptr) return;

  std::string words = reason.data();
  if (words.rfind(path + ": ", 0) == 0) words.erase(0, path.size() + 2);
  throw InputError(path_ + ": not a capture file that can be read (" + words + ")");
}

std::int64_t CaptureReader::Offset() const {
  std::FILE* file = pcap_file(capture_.get());
  return file == nullptr ? -1 : std::ftell(file);
}

std::optional<Record> CaptureReader::Next() {
  const std::int64_t offset = Offset();
  pcap_pkthdr* header = nullptr;
  const u_char* bytes = nullptr;
  const int result = pcap_next_ex(capture_.get(), &header, &bytes);
  if (result == PCAP_ERROR_BREAK) return std::nullopt;
  ++records_;
  if (result != 1) {
    throw InputError(path_ + ": cut off or damaged in record " + std::to_string(records_) +
                     (offset < 0 ? std::string() : ", which begins at byte offset " + std::to_string(offset)) + " (" +
                     pcap_geterr(capture_.get()) + ")");
  }
  return Record{.number = records_,
                .offset = offset,
                .seconds = header->ts.tv_sec,
                .microseconds = static_cast<std::uint32_t>(header->ts.tv_usec),
                .bytes = {reinterpret_cast<const char*>(bytes), header->caplen},
                .original_size = header->len};
}

int CaptureReader::LinkType() const { return pcap_datalink(capture_.get()); }

}  // namespace zunrtcp
