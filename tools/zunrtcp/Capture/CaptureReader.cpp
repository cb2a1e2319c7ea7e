#include "tools/zunrtcp/Capture/CaptureReader.h"

#include <pcap/pcap.h>

#include <array>
#include <cstdio>
#include <filesystem>
#include <system_error>

#include "tools/zunrtcp/InputError.h"
#include "tools/zunrtcp/Text.h"

namespace zunrtcp {

namespace {

// What the operating system says about a file that cannot be read; empty when it can.
std::string CannotRead(const std::string& path) {
  std::error_code error;
  if (std::filesystem::is_directory(path, error)) return "is a directory";
  std::unique_ptr<std::FILE, int (*)(std::FILE*)> file(std::fopen(path.c_str(), "rb"), std::fclose);
  if (file != nullptr) return {};
  return std::generic_category().message(errno);
}

}  // namespace

void CaptureReader::Close::operator()(pcap* capture) const { pcap_close(capture); }

CaptureReader::CaptureReader(const std::string& path) : path_(path == "-" ? "standard input" : path) {
  if (path != "-") {
    const std::string reason = CannotRead(path);
    if (!reason.empty()) throw InputError(path + ": " + reason);
  }
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
