#include "qvtools/engineering/internal/file_blocks.h"

#include <gtest/gtest.h>

#include <string>

#include "support/temporary_directory.h"

namespace {

using qv::detail::BlockWriter;
using qv::detail::FileWindow;

#if defined(__linux__)
TEST(BlockWriter, ReportsPositionsBeyondTwelveDigits) {
  const qvtest::TemporaryDirectory directory;
  constexpr long kLast = 999999999999;
  std::FILE* const file = std::fopen(directory.path("sparse").c_str(), "wb");
  ASSERT_EQ(std::fseek(file, kLast - 10, SEEK_SET), 0);
  BlockWriter writer;
  writer.attach(file);
  writer.put("0123456789");
  EXPECT_EQ(writer.position(), kLast);
  EXPECT_TRUE(writer.flush()) << "the last position of 12 digits";
  writer.put("x");
  EXPECT_FALSE(writer.flush());
  writer.put("y");
  EXPECT_FALSE(writer.flush()) << "and from then on";
  writer.attach(file);
  EXPECT_FALSE(writer.flush()) << "begun beyond it";
  std::fclose(file);
}
#endif

TEST(FileWindow, GivesTheBytesOfAnyRange) {
  const qvtest::TemporaryDirectory directory;
  std::string bytes;
  for (int i = 0; bytes.size() < 1000000; ++i) bytes += std::to_string(i);
  BlockWriter writer;
  std::FILE* file = std::fopen(directory.path("blocks").c_str(), "wb");
  writer.attach(file);
  for (std::size_t at = 0, n = 1; at < bytes.size(); at += n, n = n * 7 % 65521)
    writer.put(std::string_view(bytes).substr(at, n));
  EXPECT_EQ(writer.position(), static_cast<std::int64_t>(bytes.size()));
  EXPECT_TRUE(writer.flush());
  std::fclose(file);
  file = std::fopen(directory.path("blocks").c_str(), "rb");
  FileWindow window;
  window.attach(file);
  ASSERT_EQ(window.size(), static_cast<std::int64_t>(bytes.size()));
  std::uint32_t random = 1;
  for (int i = 0; i < 500; ++i) {
    random = random * 1664525 + 1013904223;
    const std::size_t start = random % (bytes.size() + 100), size = (random >> 8) % (i % 10 == 0 ? 600000 : 300);
    const auto end = static_cast<std::int64_t>(start + size);
    // One range in three follows the one before.
    for (int k = 0; k < 1 + (i % 3 == 0); ++k) {
      const std::size_t from = start + static_cast<std::size_t>(k) * size;
      const auto wanted = from < bytes.size() ? bytes.substr(from, size) : std::string();
      EXPECT_TRUE(window.view(static_cast<std::int64_t>(from), end + k * static_cast<std::int64_t>(size)) == wanted);
    }
  }
  EXPECT_EQ(window.view(-1, 5), "");
  EXPECT_EQ(window.view(5, 4), "");
  std::fclose(file);
}

}  // namespace
