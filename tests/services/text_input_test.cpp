#include "qvtools/services/text_input.h"

#include <gtest/gtest.h>

#include <climits>
#include <string>
#include <vector>

#include "qvtools/system/textfile.h"
#include "support/recording_host.h"
#include "support/temporary_directory.h"

namespace {

using qvtest::RecordingHost;

/// A stream on a text.
class Input {
 public:
  explicit Input(std::string_view text) : file_(qv::open_text(directory_.write("input", text).c_str(), "rt")) {}
  ~Input() { std::fclose(file_); }
  operator std::FILE*() const { return file_; }

 private:
  qvtest::TemporaryDirectory directory_;
  std::FILE* file_;
};

std::string next_line(std::FILE* file, int size = 290) {
  char line[290];
  fgets_skip_comment(line, size, file);
  return line;
}

std::string next_unit(std::FILE* file) {
  char unit[101];
  read_one_unit(unit, file);
  return unit;
}

std::vector<int> parsed_list(const char* text) {
  CArray<int, int> numbers;
  FenXi_String1(text, &numbers);
  return {numbers.begin(), numbers.end()};
}

TEST(FgetsSkipComment, SkipsLinesThatBeginWithTwoSigns) {
  const Input input("## a\r\n# b\r\n\n##\nlast");
  EXPECT_EQ(next_line(input), "# b\n");
  EXPECT_EQ(next_line(input), "\n");
  EXPECT_EQ(next_line(input), "last");
  EXPECT_EQ(next_line(input), "");
}

TEST(FgetsSkipComment, LeavesACommentThatEndsTheFile) {
  EXPECT_EQ(next_line(Input("## only")), "## only");
  EXPECT_EQ(next_line(Input("")), "");
  EXPECT_EQ(next_line(Input("abcdefgh\n"), 4), "abc");
}

TEST(ReadOneUnit, StopsAtTheSeparatorWithoutTakingIt) {
  const Input input("  abc,def\t1\r\n ,\n" + std::string(150, 'w') + "\r\nend\r");
  EXPECT_EQ(next_unit(input), "abc");
  EXPECT_EQ(std::ftell(input), 5);
  EXPECT_EQ(next_unit(input), "def\t1");
  EXPECT_EQ(next_unit(input), std::string(100, 'w'));
  EXPECT_EQ(next_unit(input), std::string(50, 'w'));
  EXPECT_FALSE(std::feof(input));
  EXPECT_EQ(next_unit(input), "end\r");
  EXPECT_TRUE(std::feof(input));
  EXPECT_EQ(next_unit(input), "");
}

TEST(ReadOneUnitFromString, TakesTheSeparatorAndDropsThe101stByte) {
  const std::string text = " ,ab,c " + std::string(101, 'x') + "yz";
  std::vector<std::pair<std::string, int>> units;
  char unit[101];
  for (int position = 0, i = 0; i < 5; ++i) {
    read_one_unit_from_string(unit, text.c_str(), &position);
    units.emplace_back(unit, position);
  }
  EXPECT_EQ(units, (std::vector<std::pair<std::string, int>>{
                       {"ab", 5}, {"c", 7}, {std::string(100, 'x'), 108}, {"yz", 110}, {"", 110}}));
  for (int outside : {111, -1}) {
    read_one_unit_from_string(unit, text.c_str(), &outside);
    EXPECT_STREQ(unit, "");
  }
}

TEST(SscanfNext, ReadsFieldByField) {
  RecordingHost host;
  const char* const text = "12,,7";
  std::vector<int> seen;
  int value = -1;
  sscanf_next_begin();
  while (sscanf_next(text, "%d", &value)) seen.push_back(value);
  EXPECT_EQ(seen, (std::vector<int>{12, 0, 7}));
  EXPECT_EQ(value, 0);
  char word[100] = "before";
  EXPECT_EQ(sscanf_next(text, "%s", word), 0);
  EXPECT_STREQ(word, "\n");
  sscanf_next_begin();
  EXPECT_EQ(sscanf_next(nullptr, "%d", &value), 0);
  EXPECT_EQ(sscanf_next("5 6", "%*", nullptr), 1);
  EXPECT_EQ(sscanf_next("5 6", "%x", nullptr), 1);
  EXPECT_EQ(host.box(), "ssanf_next not support this type in This Version !");
  const std::string shorter = "1";
  sscanf_next_begin();
  for (int i = 0; i < 3; ++i) sscanf_next("first line of many", "%s", word);
  EXPECT_EQ(sscanf_next(shorter.c_str(), "%s", word), 0) << "the position lies behind its end";
}

TEST(Vsscanf, LetsTheLastLetterDecide) {
  RecordingHost host;
  int i = 0;
  long l = 0;
  float f = 0;
  double d = 0;
  char s[100] = "";
  EXPECT_EQ(qv::vsscanf(" 1\t2,3.5  4.25,word tail", "%ld,%l,%lf,%lg,%s", &i, &l, &f, &d, s), 5);
  EXPECT_EQ(i, 1);
  EXPECT_EQ(l, 2L);
  EXPECT_EQ(f, 3.5f);
  EXPECT_EQ(d, 4.25);
  EXPECT_STREQ(s, "word");
  EXPECT_TRUE(host.boxes.empty());
}

TEST(Vsscanf, ClearsWhatTheTextLacks) {
  RecordingHost host;
  int a = 9, b = 9;
  float f = 9;
  char s[100] = "before";
  EXPECT_EQ(qv::vsscanf("1,2,3\n4", "%d,%*,%d,%f,%s", &a, &b, &f, s), 2);
  EXPECT_EQ(a, 1);
  EXPECT_EQ(b, 3);
  EXPECT_EQ(f, 0.0f);
  EXPECT_STREQ(s, "");
  EXPECT_EQ(qv::vsscanf(nullptr, "%d", &a), 0);
  EXPECT_EQ(a, 0);
  EXPECT_EQ(qv::vsscanf("1,2", "%x,%d\n%d", &b), 1);
  EXPECT_EQ(b, 2);
  EXPECT_EQ(host.box(), "vssanf not support this type in This Version !");
}

TEST(Vsscanf, CutsAFieldAt99Bytes) {
  char s[100];
  int i = 0;
  EXPECT_EQ(qv::vsscanf((std::string(500, 'a') + ",7").c_str(), "%s,%d", s, &i), 2);
  EXPECT_EQ(s, std::string(99, 'a'));
  EXPECT_EQ(i, 7);
}

TEST(FenXiString1, ReadsNumbersAndRanges) {
  EXPECT_EQ(parsed_list("1 3~5,8"), (std::vector<int>{1, 3, 4, 5, 8}));
  EXPECT_EQ(parsed_list("5~3 9"), (std::vector<int>{3, 4, 5, 9}));
  EXPECT_EQ(parsed_list("-2~0,x,~2"), (std::vector<int>{-2, -1, 0, 0, 0, 1, 2}));
  EXPECT_EQ(parsed_list(""), std::vector<int>{});
}

TEST(FenXiString1, StopsAtAMillionNumbers) {
  RecordingHost host;
  EXPECT_EQ(parsed_list("1~1000000").size(), 1000000u);
  EXPECT_EQ(QV_ERROR_CODE, 0);
  const auto numbers = parsed_list("7,-2147483648~2147483647,5");
  EXPECT_EQ(numbers.size(), 1000000u);
  EXPECT_EQ(numbers[1], INT_MIN);
  EXPECT_EQ(QV_ERROR_CODE, 301);
  EXPECT_EQ(host.boxes.size(), 1u);
}

TEST(PinMianChaZhi, InterpolatesThePlane) {
  const float x[] = {0, 10, 0}, y[] = {0, 0, 10}, z[] = {1, 2, 3};
  EXPECT_FLOAT_EQ(PinMianChaZhi(x, y, z, 10, 10), 4.0f);
  EXPECT_FLOAT_EQ(PinMianChaZhi(x, y, z, 0, 0), 1.0f);
  // Points on a line: the determinant counts as 1e-5.
  const float line[] = {0, 1, 2}, bent[] = {0, 0, 1};
  EXPECT_FLOAT_EQ(PinMianChaZhi(line, line, bent, 1, 0), -1e5f);
}

}  // namespace
