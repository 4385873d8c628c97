// The shape compiler, run as a program.

#include <gtest/gtest.h>

#include <cstdlib>
#include <filesystem>

#include "qvtools/fonts/shx.h"
#include "support/temporary_directory.h"

#if !defined(_WIN32)
#include <sys/wait.h>
#endif

namespace {

using qvtest::TemporaryDirectory;

struct Result {
  int exitCode;
  std::string errors;
};

Result run(const TemporaryDirectory& directory, const std::string& arguments) {
  const std::string program = '"' + std::filesystem::absolute(QV_SHPC).make_preferred().string() + '"';
  const std::string rest = " && " + program + ' ' + arguments + " 2>errors";
#if defined(_WIN32)
  constexpr int kNotStarted = 9009;  // the shell's own; wine's has told so of a program that is there, under load
  const auto start = [&] { return std::system(("cd /d \"" + directory.prefix() + '"' + rest).c_str()); };
  int code = start();
  if (code == kNotStarted) code = start();
#else
  const int code = WEXITSTATUS(std::system(("cd '" + directory.prefix() + '\'' + rest).c_str()));
#endif
  std::string errors = directory.read("errors");
  std::erase(errors, '\r');
  return {code, errors};
}

Result compile(const TemporaryDirectory& directory, const std::string& source, const std::string& options = "") {
  directory.write("a.shp", source);
  return run(directory, "a.shp a.shx " + options);
}

const std::string kHead = "*0,4,test\n9,2,0,0\n";

TEST(ShapeCompiler, WritesTheTextFontForm) {
  const TemporaryDirectory directory;
  const std::string source = "; a font\r\n" + kHead +
                             "*66,7,ucb ; comment\r\n1,8,(-3,\n 07F),012,\n-01,0\n"
                             "*65,3,UCA\n(1,020),0\n";
  const Result result = compile(directory, source);
  EXPECT_EQ(result.errors, "");
  ASSERT_EQ(result.exitCode, 0);
  using namespace std::string_literals;
  EXPECT_EQ(directory.read("a.shx"),
            "AutoCAD-86 shapes 1.0\r\n\x1a"
            "\0\0\x42\0\x03\0"                    // first and last code, number of entries
            "\0\0\x09\0\x41\0\x07\0\x42\0\x08\0"  // codes and lengths
            "test\0\x09\x02\0\0"
            "UCA\0\x01\x20\0"
            "\0\x01\x08\xFD\x7F\x12\xFF\0"s);
  CShx font;
  EXPECT_EQ(font.SetTxtFont("", directory.path("a.shx").c_str()), 1);
  EXPECT_EQ(font.GetTxtWidth("A", 9, 1), 2.0f);
}

TEST(ShapeCompiler, WritesTheBigFontForm) {
  const TemporaryDirectory directory;
  const std::string shape = "*45217,3,a\n1,040,0\n";
  ASSERT_EQ(compile(directory, "*BIGFONT 2,1,0A1,0FE\n*0,4,big\n16,2,0,0\n" + shape, "--bigfont").exitCode, 0);
  const std::string file = directory.read("a.shx");
  EXPECT_EQ(file.substr(0, 25), "AutoCAD-86 bigfont 1.0\r\n\x1a");
  EXPECT_EQ(file.substr(31, 4), std::string("\xA1\0\xFE\0", 4));
  CShx font;
  ASSERT_EQ(font.SetHzFont("", directory.path("a.shx").c_str()), 1);
  EXPECT_EQ(font.m_fHzHeight, 16.0f);
  EXPECT_EQ(font.m_pHzIndex[0xB0 - 0xA1][0], 0);
  EXPECT_EQ(font.GetHzWidth("\xB0\xA1", 16, 1), 4.0f);
  EXPECT_EQ(compile(directory, "*BIGFONT 2,1,0C0,0FE\n*0,4,big\n16,2,0,0\n" + shape, "--bigfont").errors,
            "a.shp:4: the code's first byte lies outside the big font's range\n");
}

TEST(ShapeCompiler, SaysWhatIsWrongAndWhere) {
  const struct {
    std::string source;
    const char* error;
  } cases[] = {
      {"", "a.shp:1: shape 0, which describes the font, is missing\n"},
      {"1,0\n" + kHead, "a.shp:1: codes stand before the first shape\n"},
      {kHead + "*65,2\n1,0\n", "a.shp:3: a shape begins with *code,bytes,name\n"},
      {kHead + "*65,0,a\n", "a.shp:3: a shape begins with *code,bytes,name\n"},
      {kHead + "*65,3,a\n1,0\n", "a.shp:3: shape 65 states 3 bytes and has 2\n"},
      {kHead + "*65,2,a\n\n1,2\n", "a.shp:3: shape 65 does not end in 0\n"},
      {kHead + "*65,2,a\n300,0\n", "a.shp:4: \"300\" is no code from -128 to 255\n"},
      {kHead + "*65,3,a\n1,,0\n", "a.shp:4: \"\" is no code from -128 to 255\n"},
      {kHead + "*65,2,a\n0x1,0\n", "a.shp:4: \"0x1\" is no code from -128 to 255\n"},
      {kHead + "*65,2,a\n1,0\n*65,2,b\n1,0\n", "a.shp:5: shape 65 stands here a second time\n"},
      {kHead + "*256,2,a\n1,0\n", "a.shp:3: a text font has codes up to 255\n"},
      {"*0,2,a\n1,0\n", "a.shp:1: shape 0 must consist of four bytes: above, below, modes and 0\n"},
      {"*BIGFONT 2,2,1,2\n" + kHead, "a.shp:1: a big font begins with *BIGFONT shapes,1,first,last\n"},
      {kHead + "*65,2,a\nz,0\n*66,3,b\n1,0\n",
       "a.shp:4: \"z\" is no code from -128 to 255\na.shp:5: shape 66 states 3 bytes and has 2\n"},
  };
  for (const auto& c : cases) {
    const TemporaryDirectory directory;
    const Result result = compile(directory, c.source);
    EXPECT_EQ(result.errors, c.error) << c.source;
    EXPECT_EQ(result.exitCode, 1) << c.source;
    EXPECT_FALSE(directory.has("a.shx")) << c.source;
  }
}

TEST(ShapeCompiler, TellsBadUsageFromFailure) {
  const TemporaryDirectory directory;
  EXPECT_EQ(run(directory, "").exitCode, 2);
  EXPECT_EQ(run(directory, "a b c").exitCode, 2);
  EXPECT_EQ(run(directory, "a b --what").exitCode, 2);
  EXPECT_EQ(run(directory, "none.shp b.shx").errors, "shpc: none.shp: cannot be read\n");
#ifndef _WIN32
  EXPECT_EQ(run(directory, "/dev/zero b.shx").errors, "shpc: /dev/zero: cannot be read\n");
#endif
  EXPECT_EQ(run(directory, ". b.shx").exitCode, 1);
  directory.write("a.shp", kHead);
  EXPECT_EQ(run(directory, "a.shp no/b.shx").errors, "shpc: no/b.shx: cannot be written\n");
}

}  // namespace
