#include "tools/zunrtcp/Capture/InputPath.h"

#include <cerrno>
#include <cstdio>
#include <filesystem>
#include <memory>
#include <system_error>

#include "tools/zunrtcp/InputError.h"

namespace zunrtcp {

std::string InputName(const std::string& path) { return path == "-" ? "standard input" : path; }

void CheckReadable(const std::string& path) {
  std::error_code error;
  if (std::filesystem::is_directory(path, error)) throw InputError(path + ": is a directory");
  const std::unique_ptr<std::FILE, int (*)(std::FILE*)> file(std::fopen(path.c_str(), "rb"), std::fclose);
  if (file == nullptr) throw InputError(path + ": " + std::generic_category().message(errno));
}

}  // namespace zunrtcp
