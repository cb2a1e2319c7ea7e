// Runs a target over files, or all files of folders, without a fuzzer: usage: replay PATH...
#include <algorithm>
#include <cstdint>
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>
#include <vector>

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* octets, std::size_t size);

namespace {

using std::filesystem::path;

std::vector<path> FilesOf(const path& given) {
  if (!std::filesystem::is_directory(given)) return {given};
  std::vector<path> files;
  for (const auto& entry : std::filesystem::recursive_directory_iterator(given)) {
    if (entry.is_regular_file() && entry.path().extension() != ".md") files.push_back(entry.path());
  }
  std::sort(files.begin(), files.end());
  return files;
}

}  // namespace

int main(int argc, char** argv) {
  std::size_t ran = 0;
  for (int i = 1; i < argc; ++i) {
    for (const path& file : FilesOf(argv[i])) {
      std::ifstream in(file, std::ios::binary);
      const std::string bytes((std::istreambuf_iterator<char>(in)), std::istreambuf_iterator<char>());
      if (!in) {
        (void)std::fprintf(stderr, "cannot read %s\n", file.c_str());
        return 2;
      }
      // Told beforehand: a broken promise ends the program, and the last line then names the input.
      std::printf("%s\n", file.c_str());
      (void)std::fflush(stdout);
      (void)LLVMFuzzerTestOneInput(reinterpret_cast<const std::uint8_t*>(bytes.data()), bytes.size());
      ++ran;
    }
  }
  std::printf("%zu inputs kept every promise\n", ran);
  return ran == 0 ? 1 : 0;  // that nothing was found among no inputs means nothing
}
