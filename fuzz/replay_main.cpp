// Feeds every file of the first folder named to the fuzz target that this is linked with, cut and with a byte changed
// at a few places, and those of further folders as they are.

#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size);

namespace {

void feed(const std::string& bytes) {
  LLVMFuzzerTestOneInput(reinterpret_cast<const std::uint8_t*>(bytes.data()), bytes.size());
}

void feed_changed(const std::string& bytes) {
  const std::size_t step = bytes.size() / 64 + 1;
  for (std::size_t cut = 0; cut < bytes.size(); cut += step) {
    feed(bytes.substr(0, bytes.size() - cut));
    std::string changed = bytes;
    changed[cut] = static_cast<char>(changed[cut] ^ 0x15);
    feed(changed);
  }
}

}  // namespace

int main(int argc, char** argv) {
  int files = 0;
  for (int i = 1; i < argc; ++i) {
    for (const auto& entry : std::filesystem::directory_iterator(argv[i])) {
      if (!entry.is_regular_file()) continue;
      std::ifstream file(entry.path(), std::ios::binary);
      (i == 1 ? feed_changed : feed)({std::istreambuf_iterator<char>(file), {}});
      ++files;
    }
  }
  std::printf("%d files\n", files);
  return files > 0 ? 0 : 1;
}
