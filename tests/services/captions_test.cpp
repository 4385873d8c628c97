#include <gtest/gtest.h>

#include <cstdlib>
#include <fstream>
#include <string>

#if defined(_WIN32)
#include <windows.h>
#else
#include <iconv.h>
#endif

namespace {

#if defined(_WIN32)
std::string to_utf8(const std::string& gbk) {
  wchar_t wide[256];
  char out[512];
  const int n = MultiByteToWideChar(936, MB_ERR_INVALID_CHARS, gbk.data(), static_cast<int>(gbk.size()), wide, 256);
  const int bytes = WideCharToMultiByte(CP_UTF8, 0, wide, n, out, sizeof out, nullptr, nullptr);
  return n > 0 ? std::string(out, static_cast<std::size_t>(bytes)) : "not GBK";
}
#else
std::string to_utf8(std::string gbk) {
  const iconv_t converter = iconv_open("UTF-8", "GBK");
  char out[512];
  char *from = gbk.data(), *to = out;
  std::size_t left = gbk.size(), room = sizeof out;
  const bool good = iconv(converter, &from, &left, &to, &room) == 0;
  iconv_close(converter);
  return good ? std::string(out, to) : "not GBK";
}
#endif

/// What the string literals of a line say; the only escapes are \xNN.
std::string literals(const std::string& line) {
  std::string bytes;
  bool inside = false;
  for (std::size_t i = 0; i < line.size(); ++i) {
    if (line[i] == '"') {
      inside = !inside;
    } else if (inside && line[i] == '\\') {
      bytes += static_cast<char>(std::strtol(line.substr(i + 2, 2).c_str(), nullptr, 16));
      i += 3;
    } else if (inside) {
      bytes += line[i];
    }
  }
  return bytes;
}

// The headers write each caption as: inline constexpr char NAME[] =  // READABLE TEXT, its bytes on the lines below.
TEST(Captions, SayWhatTheirCommentsSay) {
  const std::string middle = "[] =  // ";
  for (const char* name : {"src/qvtools/services/captions.h"}) {
    std::ifstream header(std::string(QV_SOURCE_DIR "/") + name);
    ASSERT_TRUE(header) << name;
    int seen = 0;
    for (std::string line; std::getline(header, line);) {
      const std::size_t at = line.find(middle);
      if (at == std::string::npos) {
        EXPECT_EQ(line.find("inline constexpr char "), std::string::npos) << "without its readable text: " << line;
        continue;
      }
      std::string bytes;
      for (std::string part; std::getline(header, part);) {
        bytes += literals(part);
        if (part.ends_with(';')) break;
      }
      EXPECT_EQ(to_utf8(bytes), line.substr(at + middle.size())) << name;
      ++seen;
    }
    EXPECT_GT(seen, 15) << name;
  }
}

}  // namespace
