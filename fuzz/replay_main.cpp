// Feeds every file of the named folder to the fuzz target that this is linked with, and each file cut, and with a byte
// changed, at a few places.

#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size);

int main(int argc, char** argv) {
  int files = 0;
  for (const auto& entry : std::filesystem::directory_iterator(argc > 1 ? argv[1] : ".")) {
    std::ifstream file(entry.path(), std::ios::binary);
    const std::string bytes{std::istreambuf_iterator<char>(file), {}};
    const std::size_t step = bytes.size() / 64 + 1;
    for (std::size_t cut = 0; cut < bytes.size(); cut += step) {
      LLVMFuzzerTestOneInput(reinterpret_cast<const std::uint8_t*>(bytes.data()), bytes.size() - cut);
      std::string changed = bytes;
      changed[cut] = static_cast<char>(changed[cut] ^ 0x15);
      LLVMFuzzerTestOneInput(reinterpret_cast<const std::uint8_t*>(changed.data()), changed.size());
    }
    ++files;
  }
  std::printf("%d files\n", files);
  return files > 0 ? 0 : 1;
}
