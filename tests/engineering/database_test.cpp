#include <gtest/gtest.h>

#include "qvtools/engineering/database_file.h"
#include "qvtools/text/numbers.h"
#include "support/full_disk.h"
#include "support/recording_host.h"
#include "support/temporary_directory.h"

namespace {

using File = CDataBaseFile;

struct Database : testing::Test {
  Database() { QV_OpenFileNum = 0; }
  ~Database() override { QV_OpenFileNum = 0; }

  void open(const char* name = "db") { ASSERT_EQ(file.Open_File(name, File::IO_READ), 1); }
  void create(const char* name = "db") { ASSERT_EQ(file.Open_File(name, File::IO_WRITE), 1); }
  std::string value(const char* key) {
    char out[File::kValueSize];
    const int found = file.Get_Item(key, out);
    EXPECT_EQ(found, file.Get_Item(key) != nullptr) << key;
    return found ? out : "absent";
  }
  /// A database by hand: the text (with LF line ends) in front of an index with one entry for all of it, named S.
  void write_by_hand(std::string text) {
    std::string bytes;
    for (const char c : text) bytes += c == '\n' ? "\r\n" : std::string(1, c);
    char end[200];
    qv::format_text(end, sizeof end, "[Index]\r\nS = 0 %d\r\nIndexPosition = %12d\r\n", static_cast<int>(bytes.size()),
                    static_cast<int>(bytes.size()));
    work.write("db", bytes + end);
  }

  qvtest::RecordingHost host;
  qvtest::WorkDirectory work;
  File file;
};

TEST_F(Database, HasTheDocumentedBytes) {
  create();
  EXPECT_EQ(QV_OpenFileNum, 1);
  file.Write_FileVersion(File::kVersion);
  file.Begin_Segment("Beam%d", 7);
  file.Add_Item("b", "%d", 250);
  file.Add_Item("a", "%s,%.1f", "x", 0.5);
  file.Add_Item("b", "%d", 999);
  EXPECT_EQ(file.Write_Segment(), 1);
  EXPECT_EQ(file.Write_Line("=%d=", 3), 1);
  file.Begin_Segment("Wall");
  EXPECT_EQ(file.Write_Item("t", "200\n\n\n"), 1);
  EXPECT_EQ(file.Write_Item("four", "1\n\n\n\n"), 1);
  file.End_Segment();
  EXPECT_EQ(file.Close_File(), 1);
  EXPECT_EQ(QV_OpenFileNum, 0);
  EXPECT_EQ(work.read("db"),
            "CDataBaseFile Version 1.00 1998-2-7\r\n"
            "[ Beam7 ]\r\nb = 250\r\na = x,0.5\r\n=3=\r\n"
            "[ Wall ]\r\nt = 200\r\nfour = 1\r\n\r\n"
            "[Index]\r\nBeam7 = 37 68\r\nWall = 73 104\r\n"
            "IndexPosition =          104\r\n");
}

TEST_F(Database, GivesBackWhatWasWritten) {
  create();
  file.Write_FileVersion("Version 7");
  for (int i = 0; i < 500; ++i) {
    file.Begin_Segment("Segment%d", i);
    for (int k = 0; k < 100; ++k) {
      char key[16];
      qv::format_text(key, sizeof key, "key%d", k);
      file.Write_Item(key, "%d", i * k);
    }
    file.End_Segment();
  }
  ASSERT_EQ(file.Close_File(), 1);
  open();
  EXPECT_EQ(file.Check_FileVersion("Version 7"), 1);
  EXPECT_EQ(file.Check_FileVersion("Version 7"), 0) << "the next line";
  ASSERT_EQ(file.Get_SegmentCount(), 500);
  EXPECT_EQ(file.Get_SegmentName(499), "Segment499");
  for (const int i : {499, 0, 250, 251}) {
    ASSERT_EQ(file.Read_Segment("Segment%d", i), 1);
    ASSERT_EQ(file.Get_ItemCount(), 100);
    EXPECT_EQ(file.Get_ItemKey(99), "key99");
    for (const int k : {99, 0, 1, 50, 50, 98, 99}) {
      EXPECT_EQ(value(("key" + std::to_string(k)).c_str()), std::to_string(i * k) + "\n");
    }
  }
  EXPECT_EQ(file.Read_Segment("Segment500"), 0);
  EXPECT_EQ(file.Get_ItemCount(), 0);
  EXPECT_EQ(value("key1"), "absent");
  char out[8] = "before";
  EXPECT_EQ(file.Get_Item("none", out), 0);
  EXPECT_STREQ(out, "");
}

TEST_F(Database, KeepsPercentSigns) {
  const char* const literals[] = {"50%", "%s%n%d", "%%", "100%% %", "%"};
  create();
  file.Begin_Segment("S");
  for (const char* literal : literals) file.Write_Item1(literal, literal);
  file.Write_Item("plain", "%s", "50% %s %n %%");
  file.End_Segment();
  file.Begin_Segment("Kept");
  file.Add_Item("kept", "%d%% %%%%", 50);
  file.Write_Segment();
  EXPECT_EQ(file.Write_Text_Line("5%n %s"), 1);
  EXPECT_EQ(file.Write_Text_Line("two\nlines"), 1);
  file.Begin_Named_Segment("%d%n");
  file.Add_Text_Item("%s", "50%% %n");
  file.Write_Segment();
  file.Close_File();
  EXPECT_NE(work.read("db").find("\r\n5%n %s\r\ntwo\r\nlines\r\n"), std::string::npos);
  open();
  ASSERT_EQ(file.Read_Segment("%s", "%d%n"), 1);
  EXPECT_EQ(value("%s"), "50% %n\n");
  ASSERT_EQ(file.Read_Segment("Kept"), 1);
  EXPECT_EQ(value("kept"), "50% %\n");
  ASSERT_EQ(file.Read_Segment("S"), 1);
  for (const char* literal : literals) EXPECT_EQ(value(literal), std::string(literal) + "\n");
  EXPECT_EQ(value("plain"), "50% %s %n %\n");
}

TEST_F(Database, WritesANameOnceAndOnlyGoodNames) {
  create();
  file.Begin_Segment("A");
  EXPECT_EQ(file.Write_Item("a", "1"), 1);
  file.End_Segment();
  for (const char* name : {"A", "", "a\nb", "## a"}) {
    file.Begin_Segment("%s", name);
    EXPECT_EQ(file.Write_Item("b", "2"), 0) << name;
    EXPECT_EQ(file.Write_Item1("b", "2"), 0);
    EXPECT_EQ(file.Write_Segment(), 0);
    file.End_Segment();
  }
  EXPECT_EQ(file.Close_File(), 1);
  EXPECT_EQ(work.read("db").find("b = 2"), std::string::npos);
  open();
  EXPECT_EQ(file.Get_SegmentCount(), 1);
  EXPECT_EQ(file.Read_Segment("A"), 1);
  EXPECT_EQ(value("a"), "1\n");
}

TEST_F(Database, TakesLongNamesKeysAndValues) {
  const std::string most(999, 'v'), more(3000, 'w'), percents(700, '%');
  const std::string chinese = "x" + std::string("\xB4\xF2").append(more);
  create();
  file.Begin_Segment("%s", more.c_str());
  file.Write_Item1("most", most.c_str());
  file.Write_Item1("more", more.c_str());
  file.Write_Item1("percents", percents.c_str());
  file.Write_Item("free", "%s", more.c_str());
  file.Write_Item(more.c_str(), "%s", more.c_str());
  EXPECT_EQ(file.Write_Line("%s", more.c_str()), 1);
  file.End_Segment();
  ASSERT_EQ(file.Close_File(), 1);
  open();
  ASSERT_EQ(file.Read_Segment("%s", more.c_str()), 1) << "cut in the same way";
  EXPECT_EQ(value("most"), most + "\n");
  EXPECT_EQ(std::string(file.Get_Item("most")), most.substr(0, 299));
  EXPECT_EQ(value("more"), more.substr(0, 999) + "\n");
  EXPECT_EQ(value("percents"), percents.substr(0, 499) + "\n");
  EXPECT_EQ(value("free").size(), 2047u - 7);
  EXPECT_EQ(value(more.substr(0, 999).c_str()).size(), 2047u - 1002);
}

TEST_F(Database, PassesOverCommentsShortAndFreeLines) {
  write_by_hand(
      "[ S ]\n## a = 1\n##\nx =\nk= 2\n\na = 3\n = 4\na = 5\nempty = \n==== 6 ====\nb = 1 = 2\n"
      "## last = 1\n");
  open();
  ASSERT_EQ(file.Read_Segment("S"), 1);
  EXPECT_EQ(file.Get_ItemCount(), 3);
  EXPECT_EQ(value("a"), "3\n");
  EXPECT_EQ(value("empty"), "\n");
  EXPECT_EQ(value("b"), "1 = 2\n");
}

TEST_F(Database, NeverOverrunsAValue) {
  write_by_hand("[ S ]\nk = " + std::string(100000, 'v') + " = 1\nafter = 1\n");
  open();
  ASSERT_EQ(file.Read_Segment("S"), 1);
  EXPECT_EQ(value("k"), std::string(2047 - 4, 'v'));
  EXPECT_EQ(value("after"), "1\n");
}

TEST_F(Database, RefusesFilesWithoutAnIndex) {
  const std::string trailer = "IndexPosition =            0\r\n";
  const std::string good = "[Index]\r\nS = 0 2\r\n" + trailer;
  for (const std::string& bytes :
       {std::string(), std::string("x"), trailer, good.substr(1), good.substr(0, good.size() - 1), good + "x",
        std::string("[Index]\r\nIndexPosition =           99\r\n"),
        std::string("[Index]\r\nIndexPosition =           -1\r\n"),
        std::string("[Index]\r\nIndexPosition =            x\r\n"), std::string("[Indes]\r\n" + trailer)}) {
    work.write("db", bytes);
    EXPECT_EQ(file.Open_File("db", File::IO_READ), 0) << bytes;
    EXPECT_EQ(file.Read_Segment("S"), 0);
    EXPECT_EQ(QV_OpenFileNum, 1) << "open until it is closed";
  }
  file.Close_File();
  work.write("db", good);
  open();
  EXPECT_EQ(file.Read_Segment("S"), 1);
  EXPECT_EQ(file.Open_File("none", File::IO_READ), 0);
  EXPECT_EQ(QV_OpenFileNum, 0);
  EXPECT_TRUE(host.boxes.empty()) << "all of it silent";
}

TEST_F(Database, SurvivesCutsAndChanges) {
  create();
  for (const char* name : {"A", "B"}) {
    file.Begin_Segment("%s", name);
    for (const char* key : {"a", "b", "c"}) file.Write_Item1(key, "50% of 3");
    file.End_Segment();
  }
  file.Close_File();
  const std::string bytes = work.read("db");
  for (std::size_t n = 0; n < bytes.size(); ++n) {
    work.write("db", bytes.substr(0, n));
    EXPECT_EQ(file.Open_File("db", File::IO_READ), 0) << "cut at " << n;
  }
  for (std::size_t at = 0; at < bytes.size(); ++at) {
    for (const char c : {'\0', '\n', '=', '9', ' ', '%'}) {
      std::string altered = bytes;
      altered[at] = c;
      work.write("db", altered);
      if (!file.Open_File("db", File::IO_READ)) continue;
      for (int i = 0; i < file.Get_SegmentCount(); ++i) file.Read_Segment("%s", file.Get_SegmentName(i).str().c_str());
      // A change within one segment leaves the other whole.
      if (at >= bytes.find("[ B ]")) continue;
      ASSERT_EQ(file.Read_Segment("B"), 1);
      EXPECT_EQ(value("c"), "50% of 3\n") << at;
    }
  }
}

TEST_F(Database, SkipsBadIndexEntries) {
  work.write(
      "db",
      "[ A ]\r\na = 1\r\n[Index]\r\nA = 0 14\r\nA = 5 6\r\nB = 9 3\r\nC = 0 999999\r\nD = -1 4\r\nE = x 1\r\nF 1 2\r\n"
      "## G = 0 14\r\nH = 0 99999999999999999999\r\nK = 0 14\r\nIndexPosition =           14\r\n");
  open();
  EXPECT_EQ(file.Get_SegmentCount(), 2);
  for (const char* name : {"A", "K"}) {
    EXPECT_EQ(file.Read_Named_Segment(name), 1);
    EXPECT_EQ(value("a"), "1\n");
  }
}

TEST_F(Database, ClosesOnceAndReopens) {
  EXPECT_EQ(file.Close_File(), 1) << "never open";
  EXPECT_EQ(QV_OpenFileNum, 0);
  create("a");
  create("b");
  EXPECT_EQ(QV_OpenFileNum, 1) << "the first was closed";
  EXPECT_EQ(file.Close_File(), 1);
  file.Close_File();
  EXPECT_EQ(QV_OpenFileNum, 0);
  open("a");
  {
    File other;
    other.Open_File("b", File::IO_READ);
    EXPECT_EQ(QV_OpenFileNum, 2);
  }
  EXPECT_EQ(QV_OpenFileNum, 1) << "closed by the destructor";
  file.Begin_Segment("x");
  EXPECT_EQ(file.Write_Item("a", "1") + file.Write_Line("x") + file.Write_Segment(), 0) << "reading";
}

TEST_F(Database, ReportsWhatCannotBeWritten) {
  EXPECT_EQ(file.Open_File("none/db", File::IO_WRITE), 0);
  EXPECT_EQ(QV_ERROR_CODE, 301);
  EXPECT_EQ(file.Close_File(), 0);
  EXPECT_EQ(QV_OpenFileNum, 0);
}

TEST_F(Database, ReportsAFullDisk) {
  QV_NEEDS_FULL_DISK();
  const CString before = G_strWorkPath;
  G_strWorkPath = qvtest::kDevices;
  ASSERT_EQ(file.Open_File("full", File::IO_WRITE), 1);
  file.Begin_Segment("S");
  int written = 1;
  for (int i = 0; i < 100000 && written; ++i) written = file.Write_Item("key", "%d", i);
  EXPECT_EQ(written, 0) << "a full disk is noticed on the way";
  EXPECT_EQ(file.Close_File(), 0);
  ASSERT_EQ(file.Open_File("full", File::IO_WRITE), 1);
  EXPECT_EQ(file.Close_File(), 0) << "or at the end";
  G_strWorkPath = before;
}

TEST_F(Database, ChecksItself) {
  test_database();
  ASSERT_EQ(host.boxes.size(), 2u);
  EXPECT_EQ(host.boxes[0], std::pair(qv::BoxKind::Plain, std::string("Write OK")));
  EXPECT_EQ(host.boxes[1], std::pair(qv::BoxKind::Plain, std::string("Read Ok")));
  EXPECT_NE(work.read("qvtest.dat").find("[ Item99 ]\r\n1Num_Liang = 99,1,2,3,4\r\n"), std::string::npos);
  EXPECT_EQ(QV_OpenFileNum, 0);
  G_strWorkPath = "/none/";
  host.boxes.clear();
  test_database();
  EXPECT_EQ(host.boxes.back().second, "Write Error !");
}

}  // namespace
