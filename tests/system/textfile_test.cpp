#include "qvtools/system/textfile.h"

#include <gtest/gtest.h>

#include <filesystem>

#if !defined(_WIN32)
#include <sys/stat.h>
#endif

#include "qvtools/system/filesystem.h"
#include "qvtools/system/saved_file.h"
#include "support/full_disk.h"
#include "support/temporary_directory.h"

namespace {

using qvtest::TemporaryDirectory;

TEST(OpenText, WritesCrLfAndCountsBytesOnDisk) {
  const TemporaryDirectory directory;
  const std::string path = directory.path("a.txt");
  std::FILE* file = qv::open_text(path.c_str(), "wt");
  ASSERT_TRUE(file);
  std::fputs("one\ntwo\n", file);
  std::fflush(file);
  EXPECT_EQ(std::ftell(file), 10);
  std::fseek(file, 5, SEEK_SET);
  std::fputs("TWO\n", file);
  std::fflush(file);
  EXPECT_EQ(std::ftell(file), 10);
  std::fclose(file);
  file = qv::open_text(path.c_str(), "at");
  std::fputs("3\n", file);
  std::fflush(file);
  EXPECT_EQ(std::ftell(file), 13);
  std::fclose(file);
  EXPECT_EQ(directory.read("a.txt"), "one\r\nTWO\r\n3\r\n");
}

TEST(OpenText, KeepsBytesInBinaryModesAndLongLines) {
  const TemporaryDirectory directory;
  const std::string path = directory.path("b.txt");
  std::FILE* file = qv::open_text(path.c_str(), "wb");
  std::fputs("a\n", file);
  std::fclose(file);
  EXPECT_EQ(directory.read("b.txt"), "a\n");
  file = qv::open_text(path.c_str(), "wt");
  const std::string lines(100000, '\n');
  std::fwrite(lines.data(), 1, lines.size(), file);
  std::fclose(file);
  EXPECT_EQ(directory.read("b.txt").size(), 200000u);
}

TEST(OpenText, RefusesDirectoriesMissingFilesAndUnknownModes) {
  const TemporaryDirectory directory;
  EXPECT_FALSE(qv::open_text(directory.prefix().c_str(), "rt"));
  EXPECT_FALSE(qv::open_text(directory.path("none").c_str(), "rt"));
  EXPECT_FALSE(qv::open_text(directory.path("none").c_str(), "r+t"));
  EXPECT_FALSE(qv::open_text(directory.path("none").c_str(), "x"));
  EXPECT_FALSE(qv::open_text(directory.path("no/such").c_str(), "wt"));
  EXPECT_FALSE(directory.has("none"));
}

TEST(OpenText, GivesPlainLineEndsAndPlacesOnDisk) {
  const TemporaryDirectory directory;
  const std::string text = "a\r\nbc\r\nd\re\n" + std::string(16380, 'x') + "\r\nend";  // over a block's border
  std::FILE* file = qv::open_text_to_read(directory.write("e.txt", text).c_str());
  ASSERT_TRUE(file);
  std::string read;
  long secondLine = 0;
  for (int c; (c = std::getc(file)) != EOF;) {
    read += static_cast<char>(c);
    if (read == "a\n") secondLine = std::ftell(file);
  }
  EXPECT_EQ(read, "a\nbc\nd\re\n" + std::string(16380, 'x') + "\nend");
  EXPECT_EQ(secondLine, 3);
  EXPECT_EQ(std::ftell(file), static_cast<long>(text.size()));
  std::fseek(file, secondLine, SEEK_SET);
  char line[8];
  EXPECT_STREQ(std::fgets(line, sizeof line, file), "bc\n");
  EXPECT_EQ(std::ftell(file), 7);
  std::fseek(file, -3, SEEK_END);
  EXPECT_STREQ(std::fgets(line, sizeof line, file), "end");
  std::fclose(file);
  EXPECT_FALSE(qv::open_text_to_read(directory.prefix().c_str()));
}

TEST(ReadLine, TakesBothLineEnds) {
  const TemporaryDirectory directory;
  std::FILE* file = qv::open_text(directory.write("c.txt", "a\r\nb\nabcd\r\nx\ry").c_str(), "rt");
  char line[6];
  std::string lines;
  while (qv::read_line(line, sizeof line, file)) lines += std::string(line) + '|';
  std::fclose(file);
  // The third line fills the buffer up to its CR.
  EXPECT_EQ(lines, "a\n|b\n|abcd\n|x\ry|");
}

TEST(SavedFile, ReplacesOnlyOnCommit) {
  const TemporaryDirectory directory;
  const std::string path = directory.write("d.txt", "old");
  {
    qv::SavedFile file(path.c_str());
    EXPECT_TRUE(file.write("new", 3));
  }
  EXPECT_EQ(directory.read("d.txt"), "old");
  qv::SavedFile file(path.c_str());
  EXPECT_TRUE(file.write("new", 3));
  EXPECT_EQ(directory.read("d.txt"), "old");
  EXPECT_TRUE(file.commit());
  EXPECT_FALSE(file.commit());
  EXPECT_EQ(directory.read("d.txt"), "new");
  EXPECT_EQ(qv::list_matches(directory.prefix() + "*").size(), 1u);
}

TEST(SavedFile, ReplacesFilesOfTheLongestNamesToo) {
  const TemporaryDirectory directory;
#ifdef _WIN32
  const std::size_t longest = 230 - directory.path("").size();  // paths are short there
#else
  const std::size_t longest = 255;
#endif
  for (const char last : {'a', 'b'}) {
    const std::string name = std::string(longest - 1, 'n') + last;
    directory.write(name, "old");
    {
      qv::SavedFile file(directory.path(name).c_str());
      ASSERT_TRUE(file.write("lost", 4));
    }
    EXPECT_EQ(directory.read(name), "old");
    qv::SavedFile file(directory.path(name).c_str(), qv::SavedFile::Lines::CrLf);
    std::fputs("new\n", file.stream());
    EXPECT_TRUE(file.commit());
    EXPECT_EQ(directory.read(name), "new\r\n");
  }
}

TEST(SavedFile, RemovesWhatAKilledProgramLeftButNothingInUse) {
  const TemporaryDirectory directory;
  const std::string path = directory.path("e.txt");
  for (const char* const left : {"e.txt.qv0.tmp", "e.txt.qv1.tmp", "e.txt.qv2.tmp"}) directory.write(left, "half");
  qv::SavedFile first(path.c_str());
  qv::SavedFile second(path.c_str());
  EXPECT_EQ(qv::list_matches(directory.prefix() + "*").size(), 2u);
  EXPECT_TRUE(first.write("1", 1) && second.write("2", 1));
  EXPECT_TRUE(second.commit());
  EXPECT_TRUE(first.commit());
  EXPECT_EQ(directory.read("e.txt"), "1");
  EXPECT_EQ(qv::list_matches(directory.prefix() + "*").size(), 1u);
}

TEST(SavedFile, FailsWhereNothingCanBeWritten) {
  const TemporaryDirectory directory;
  EXPECT_FALSE(qv::SavedFile(directory.path("no/such").c_str()).is_open());
  EXPECT_FALSE(qv::SavedFile(directory.prefix().c_str()).is_open());
}

#if !defined(_WIN32)
// Windows has no such permissions, and grants links to administrators only.
TEST(SavedFile, KeepsLinksAndPermissions) {
  namespace fs = std::filesystem;
  const TemporaryDirectory directory;
  const std::string path = directory.write("real.txt", "old");
  fs::permissions(path, fs::perms(0640));
  fs::create_symlink("real.txt", directory.path("link.txt"));
  qv::SavedFile file(directory.path("link.txt").c_str());
  file.write("new", 3);
  ASSERT_TRUE(file.commit());
  EXPECT_TRUE(fs::is_symlink(directory.path("link.txt")));
  EXPECT_EQ(directory.read("real.txt"), "new");
  EXPECT_EQ(fs::status(path).permissions(), fs::perms(0640));
  qv::SavedFile other(directory.path("link.txt").c_str(), qv::SavedFile::Lines::AsWritten,
                      qv::SavedFile::Links::Replaced);
  other.write("own", 3);
  ASSERT_TRUE(other.commit());
  EXPECT_FALSE(fs::is_symlink(directory.path("link.txt")));
  EXPECT_EQ(directory.read("real.txt"), "new");
}

TEST(OpenText, ReadsNoDevicesAndPipes) {
  const TemporaryDirectory directory;
  ASSERT_EQ(mkfifo(directory.path("pipe").c_str(), 0600), 0);
  const std::string pipe = directory.path("pipe");
  for (const char* const path : {pipe.c_str(), "/dev/zero"}) {
    EXPECT_FALSE(qv::open_text(path, "rt"));
    EXPECT_FALSE(qv::open_text_to_read(path));
    EXPECT_EQ(qv::path_kind(path), qv::PathKind::Other);
    EXPECT_FALSE(qv::copy_file(path, directory.path("copy").c_str(), true));
  }
}
#endif

TEST(SavedFile, ReportsAFullDisk) {
  QV_NEEDS_FULL_DISK();
  qv::SavedFile few(qvtest::kFullDisk);
  ASSERT_TRUE(few.is_open());
  few.write("x", 1);
  EXPECT_FALSE(few.commit());
  qv::SavedFile many(qvtest::kFullDisk);
  const std::string block(1 << 20, 'x');
  EXPECT_FALSE(many.write(block.data(), block.size()));
  EXPECT_FALSE(many.write("x", 1));
  EXPECT_FALSE(many.commit());
}

TEST(Filesystem, MatchesPatterns) {
  const struct {
    const char *name, *pattern;
    bool matches;
  } cases[] = {
      {"a.dxf", "*.dxf", true},
      {"A.DXF", "*.dxf", true},
      {"adxf", "*.dxf", false},
      {"noext", "*.*", true},
      {"noext", "*.", false},
      {"ab", "?", false},
      {"ab", "a?", true},
      {"aXbXc", "a*X?", true},
      {"aaab", "*aab", true},
      {"", "*", true},
      {"a", "", false},
      {"abc", "a*c*", true},
      {"\xD6\xD0.x", "?.x", true},
      {"\xB0\x61", "\xB0\x41", false},
  };
  for (const auto& c : cases)
    EXPECT_EQ(qv::matches_pattern(c.name, c.pattern), c.matches) << c.name << ' ' << c.pattern;
}

TEST(Filesystem, CopiesRenamesAndRemovesFilesOnly) {
  const TemporaryDirectory directory;
  const std::string a = directory.write("a", "1"), b = directory.write("b", "2"), c = directory.path("c");
  const std::string folder = directory.path("folder");
  EXPECT_FALSE(qv::copy_file(a.c_str(), b.c_str(), false));
  EXPECT_FALSE(qv::copy_file(a.c_str(), a.c_str(), true));
  EXPECT_FALSE(qv::copy_file(c.c_str(), b.c_str(), true));
  EXPECT_EQ(directory.read("b"), "2");
  EXPECT_TRUE(qv::copy_file(a.c_str(), b.c_str(), true));
  EXPECT_EQ(directory.read("b"), "1");
  EXPECT_FALSE(qv::rename_file(a.c_str(), b.c_str()));
  EXPECT_TRUE(qv::rename_file(a.c_str(), c.c_str()));
  EXPECT_TRUE(qv::create_directory(folder.c_str()));
  EXPECT_FALSE(qv::remove_file(folder.c_str()));
  EXPECT_FALSE(qv::copy_file(c.c_str(), folder.c_str(), true));
  EXPECT_EQ(qv::path_kind(folder.c_str()), qv::PathKind::Directory);
  EXPECT_EQ(qv::list_matches(directory.prefix() + "*.*"), (std::vector<std::string>{"b", "c", "folder"}));
}

TEST(SplitPath, TakesBothSeparatorsAndADrive) {
  const struct {
    const char *path, *drive, *directory, *base, *extension;
  } cases[] = {
      {"c:\\a\\b.dxf", "c:", "\\a\\", "b", ".dxf"},
      {"/a.b/c", "", "/a.b/", "c", ""},
      {"a/b\\c.d.e", "", "a/b\\", "c.d", ".e"},
      {"c:x", "c:", "", "x", ""},
      {"\x81\\b.c", "", "", "\x81\\b", ".c"},
      {"", "", "", "", ""},
      {"dir/", "", "dir/", "", ""},
  };
  for (const auto& c : cases) {
    const qv::PathParts parts = qv::split_path(c.path);
    EXPECT_EQ(parts.drive, c.drive) << c.path;
    EXPECT_EQ(parts.directory, c.directory) << c.path;
    EXPECT_EQ(parts.base, c.base) << c.path;
    EXPECT_EQ(parts.extension, c.extension) << c.path;
  }
}

}  // namespace
