#include "tools/zunrtcp/Capture/CaptureReader.h"

#include <pcap/pcap.h>

#include <array>
#include <cstdio>

#include "tools/zunrtcp/Capture/InputPath.h"
#include "tools/zunrtcp/Capture/Interrupt.h"
#include "tools/zunrtcp/InputError.h"
#include "tools/zunrtcp/Text.h"

namespace zunrtcp {

namespace {

constexpr int kLargestFrame = 262144;

}  // namespace

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

CaptureReader CaptureReader::OnInterface(const std::string& name) {
  CaptureReader reader;
  reader.path_ = name;
  std::array<char, PCAP_ERRBUF_SIZE> reason{};
  reader.capture_.reset(pcap_create(name.c_str(), reason.data()));
  pcap* capture = reader.capture_.get();
  if (capture == nullptr) throw InputError(name + ": cannot be watched (" + reason.data() + ")");
  pcap_set_snaplen(capture, kLargestFrame);
  pcap_set_immediate_mode(capture, 1);
  if (const int error = pcap_activate(capture); error < 0) {
    const std::string words = pcap_geterr(capture);
    throw InputError(name + ": cannot be watched (" + (words.empty() ? pcap_statustostr(error) : words) + ")");
  }
  pcap_setnonblock(capture, 1, reason.data());
  reader.descriptor_ = pcap_get_selectable_fd(capture);
  if (reader.descriptor_ < 0) throw InputError(name + ": cannot be watched");
  return reader;
}

int CaptureReader::Read(pcap_pkthdr** header, const unsigned char** bytes) {
  int result = pcap_next_ex(capture_.get(), header, bytes);
  while (live() && result == 0) {
    if (!WaitToRead(descriptor_)) return PCAP_ERROR_BREAK;
    result = pcap_next_ex(capture_.get(), header, bytes);
  }
  return result;
}

std::int64_t CaptureReader::Offset() const {
  std::FILE* file = pcap_file(capture_.get());
  return file == nullptr ? -1 : std::ftell(file);
}

std::optional<Record> CaptureReader::Next() {
  const std::int64_t offset = Offset();
  pcap_pkthdr* header = nullptr;
  const u_char* bytes = nullptr;
  const int result = Read(&header, &bytes);
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
