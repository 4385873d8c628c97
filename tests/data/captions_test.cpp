#include "data/captions.h"

#include <gtest/gtest.h>

#include <cstring>
#include <fstream>
#include <map>
#include <string>

#if defined(_WIN32)
#include <windows.h>
#else
#include <iconv.h>
#endif

namespace {

#define CAPTION(name) \
  { #name, qv::captions::name }
const std::map<std::string, std::string> kCaptions = {
    CAPTION(kCannotOpenFile),
    CAPTION(kCannotMakeFile),
    CAPTION(kCalculationMessages),
    CAPTION(kRombergIterations),
    CAPTION(kInterpolationPoints),
    CAPTION(kReadingTables),
    CAPTION(kNoEntitySection),
    CAPTION(kTooManyNumbers),
    CAPTION(kUserConcrete),
    CAPTION(kUserReinforcement),
    CAPTION(kQueryContent),
    CAPTION(kWrongContent),
    CAPTION(kProfessionLead),
    CAPTION(kDesign),
    CAPTION(kReview),
    CAPTION(kDrawingNumber),
    CAPTION(kProjectLead),
    CAPTION(kCheck),
    CAPTION(kApprove),
    CAPTION(kDate),
    CAPTION(kProjectName),
    CAPTION(kDrawingName),
};

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

// The header writes each caption as: inline constexpr char NAME[] =  // READABLE TEXT
TEST(Captions, SayWhatTheirCommentsSay) {
  std::ifstream header(QV_TEST_DATA "/../../src/data/captions.h");
  ASSERT_TRUE(header);
  const std::string begin = "inline constexpr char ";
  const std::string middle = "[] =  // ";
  std::size_t seen = 0;
  for (std::string line; std::getline(header, line);) {
    if (line.rfind(begin, 0) != 0) continue;
    const std::size_t at = line.find(middle);
    ASSERT_NE(at, std::string::npos) << line;
    const auto caption = kCaptions.find(line.substr(begin.size(), at - begin.size()));
    ASSERT_NE(caption, kCaptions.end()) << "not in this test's table: " << line;
    EXPECT_EQ(to_utf8(caption->second), line.substr(at + middle.size()));
    ++seen;
  }
  EXPECT_EQ(seen, kCaptions.size());
}

}  // namespace
