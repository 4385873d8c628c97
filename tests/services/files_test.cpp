#include "qvtools/services/files.h"

#include <gtest/gtest.h>

#include <filesystem>

#include "qvtools/services/captions.h"
#include "support/recording_host.h"
#include "support/temporary_directory.h"

namespace {

using qvtest::RecordingHost;
using qvtest::TemporaryDirectory;
using qvtest::WorkDirectory;

struct Files : testing::Test {
  Files() { QV_OpenFileNum = 0; }
  ~Files() override { QV_OpenFileNum = 0; }
  RecordingHost host;
  WorkDirectory work;
};

TEST_F(Files, OpenInTheWorkDirectoryAndAreCounted) {
  std::FILE* file = open_file("a.txt", "wt");
  ASSERT_TRUE(file);
  std::fputs("x\n", file);
  std::fclose(file);
  EXPECT_EQ(work.read("a.txt"), "x\r\n");
  EXPECT_EQ(QV_OpenFileNum, 1);
  EXPECT_TRUE(host.boxes.empty());
}

TEST_F(Files, ReportTheBareNameOfAMissingOne) {
  EXPECT_FALSE(open_file("none.txt", "rt"));
  EXPECT_EQ(host.box(), std::string("\xB4\xF2\xB2\xBB\xBF\xAA\xCE\xC4\xBC\xFE: none.txt"));
  EXPECT_EQ(QV_ERROR_CODE, 301);
  EXPECT_EQ(QV_OpenFileNum, 0);
  EXPECT_FALSE(open_file_no_comment("none.txt", "rt"));
  EXPECT_EQ(host.boxes.size(), 1u);
}

TEST_F(Files, ReportACounterBelowZeroAndOpen) {
  work.write("a", "");
  QV_OpenFileNum = -2;
  std::FILE* file = open_file_no_comment("a", "rt");
  ASSERT_TRUE(file);
  std::fclose(file);
  EXPECT_EQ(host.box(), "Num File Opend < 0!");
  EXPECT_EQ(QV_OpenFileNum, -1);
}

TEST_F(Files, ExistWhenTheyAreReadableFiles) {
  EXPECT_EQ(if_file_exist(work.write("a", "").c_str()), 1);
  EXPECT_EQ(if_file_exist(work.path("b").c_str()), 0);
  EXPECT_EQ(if_file_exist(work.prefix().c_str()), 0);
  char full[512];
  get_full_path_name("a", full);
  EXPECT_EQ(full, work.path("a"));
}

TEST_F(Files, AreCopiedRemovedAndRenamed) {
  work.write("a", "1");
  work.write("b", "2");
  EXPECT_NE(CopyFile_InWorkPath("a", "b"), 0);
  EXPECT_EQ(work.read("b"), "1");
  EXPECT_EQ(CopyFile_InWorkPath("none", "b"), 0);
  RemoveFile_InWorkPath("b");
  RemoveFile_InWorkPath("b");
  EXPECT_FALSE(work.has("b"));
  RenameFile_InWorkPath("a", "c");
  EXPECT_TRUE(work.has("c"));
  EXPECT_TRUE(host.boxes.empty());
  RenameFile_InWorkPath("a", "d");
  const std::string target = work.path("d");
  EXPECT_EQ(host.box(), "\xC9\xFA\xB3\xC9\xCE\xC4\xBC\xFE" + target + "\xCA\xB1\xB7\xA2\xC9\xFA\xB4\xED\xCE\xF3 !");
}

// Removing acts on the current directory, whatever directory was listed.
TEST_F(Files, AreRemovedByBareNameInTheCurrentDirectory) {
  const TemporaryDirectory listed, current;
  listed.write("a.tmp", "");
  listed.write("b.TMP", "");
  current.write("a.tmp", "");
  current.write("b.TMP", "");
  current.write("c.tmp", "");
  std::filesystem::create_directory(listed.path("d.tmp"));
  std::filesystem::create_directory(current.path("d.tmp"));
  const auto before = std::filesystem::current_path();
  std::filesystem::current_path(current.prefix());
  EXPECT_EQ(remove_files(listed.prefix().c_str(), "*.tmp"), 1);
  EXPECT_EQ(remove_files(listed.prefix().c_str(), "*.none"), 0);
  EXPECT_EQ(remove_files((listed.prefix() + "none/").c_str(), "*"), 0);
  std::filesystem::current_path(before);
  EXPECT_TRUE(listed.has("a.tmp"));
  EXPECT_FALSE(current.has("a.tmp") || current.has("b.TMP"));
  EXPECT_TRUE(current.has("c.tmp") && current.has("d.tmp"));
}

TEST_F(Files, AreCopiedByPatternUnlessTheyExist) {
  const TemporaryDirectory to;
  work.write("a.dat", "new");
  work.write("b.dat", "new");
  work.write("c.txt", "new");
  to.write("a.dat", "old");
  copy_files(work.prefix().c_str(), to.prefix().c_str(), "*.dat");
  EXPECT_EQ(to.read("a.dat"), "old");
  EXPECT_EQ(to.read("b.dat"), "new");
  EXPECT_FALSE(to.has("c.txt"));
}

TEST_F(Files, GetTheirDirectoriesMadeWithAllParents) {
  EXPECT_EQ(MakeDirectory(work.path("a/b/c/").c_str()), 1);
  EXPECT_TRUE(std::filesystem::is_directory(work.path("a/b/c")));
  EXPECT_EQ(MakeDirectory(work.path("a/b/c").c_str()), 1);
  work.write("file", "");
  EXPECT_EQ(MakeDirectory(work.path("file").c_str()), 0);
  EXPECT_EQ(MakeDirectory(work.path("file/x").c_str()), 0);
  EXPECT_EQ(MakeDirectory(work.path("a//d///e//").c_str()), 1);
  EXPECT_TRUE(std::filesystem::is_directory(work.path("a/d/e")));
  EXPECT_EQ(MakeDirectory("c:"), 1);
  EXPECT_EQ(MakeDirectory("/"), 1);
  EXPECT_EQ(MakeDirectory(""), 0);
}

TEST_F(Files, GetTheirExtensionForced) {
  const struct {
    const char *path, *ext, *result;
  } cases[] = {
      {"c:\\dir.x\\name.txt", "dxf", "C:\\DIR.X\\NAME.DXF"},
      {"dir/name", ".dxf", "DIR/NAME.DXF"},
      {"a.b.c", "d", "A.B.D"},
      {"a.b", "", "A"},
      {"\x81\x5C\xB0\x61.t", "x", "\x81\x5C\xB0\x61.X"},
  };
  for (const auto& c : cases) EXPECT_STREQ(ConfirmFileExt(c.path, c.ext), c.result);
}

}  // namespace
