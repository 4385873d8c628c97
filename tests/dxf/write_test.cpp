#include <gmock/gmock.h>

#include <cmath>
#include <functional>

#include "dxf/drawings.h"
#include "qvtools/text/gbk_text.h"
#include "support/full_disk.h"
#include "support/recording_host.h"

using qvtest::on_disk;
using qvtest::RecordingHost;
using qvtest::saved;
using qvtest::TemporaryDirectory;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::Not;

namespace {

constexpr char kFreshTables[] =
    "  0\nSECTION\n  2\nHEADER\n  0\nENDSEC\n  0\nSECTION\n  2\nTABLES\n"
    "  0\nTABLE\n  2\nLTYPE\n 70\n1\n  0\nLTYPE\n  2\nCONTINUOUS\n 70\n64\n  3\nSolid Line\n 72\n65\n 73\n0\n "
    "40\n0.00\n"
    "  0\nENDTAB\n"
    "  0\nTABLE\n  2\nLAYER\n 70\n1\n  0\nLAYER\n  2\n0\n 70\n64\n 62\n7\n  6\nCONTINUOUS\n  0\nENDTAB\n"
    "  0\nTABLE\n  2\nSTYLE\n 70\n1\n  0\nSTYLE\n  2\nSTANDARD\n 70\n64\n 40\n0.00\n 41\n0.75\n 50\n0.00\n 71\n0\n"
    " 42\n0.20\n  3\ntxt\n  4\n\n  0\nENDTAB\n  0\nENDSEC\n";

TEST(DxfWriting, TheHeaderNamesTheCodePageOnlyWhenAsked) {
  DXF dxf;
  dxf.New_MemDxf();
  const std::string plain = saved(dxf);
  dxf.m_bCodePageHeader = 1;
  std::string expected = plain;
  expected.insert(on_disk("  0\nSECTION\n  2\nHEADER\n").size(),
                  on_disk("  9\n$ACADVER\n  1\nAC1009\n  9\n$DWGCODEPAGE\n  3\nANSI_936\n"));
  EXPECT_EQ(saved(dxf), expected);
  const TemporaryDirectory directory;
  directory.write("named.dxf", expected);
  DXF again;
  again.New_MemDxf();
  EXPECT_EQ(again.Read_FileDxf_To_Mem(directory.path("named.dxf").c_str()), 1);
  EXPECT_EQ(saved(again), plain);
}

TEST(DxfWriting, AFreshFileHoldsTheDefaultTablesAndWhatIsWritten) {
  const TemporaryDirectory directory;
  DXF dxf;
  ASSERT_EQ(dxf.New(directory.path("a.dxf").c_str()), 1);
  EXPECT_EQ(dxf.Write_Tables(), 1);
  EXPECT_EQ(dxf.Begin_Entity(), 1);
  EXPECT_EQ(dxf.Write_Line(0, 0, 0, 1.005F, 2, 0, "0", "BYLAYER", "BYLAYER"), 1);
  EXPECT_EQ(dxf.End_Entity(), 1);
  EXPECT_EQ(dxf.Close(), 1);
  // 1.005 as a float lies below 1.005. The end stands twice: `Close` writes it again.
  EXPECT_EQ(directory.read("a.dxf"),
            on_disk(std::string(kFreshTables) +
                    "  0\nSECTION\n  2\nENTITIES\n  0\nLINE\n  8\n0\n 10\n0.00\n 20\n0.00\n 30\n0.00\n 11\n1.00\n"
                    " 21\n2.00\n 31\n0.00\n  0\nENDSEC\n  0\nEOF\n  0\nENDSEC\n  0\nEOF\n"));
}

TEST(DxfWriting, EveryKindHasItsGroupsInOrder) {
  DXF dxf;
  dxf.New_MemDxf();
  qvtest::compose_one_of_each(dxf);
  const std::string file = saved(dxf);
  const char* const records[] = {
      "  0\nLTYPE\n  2\nDASHDOT\n 70\n64\n  3\n- . -\n 72\n65\n 73\n4\n 40\n1.00\n 49\n0.50\n 49\n-0.25\n 49\n0.00\n"
      " 49\n-0.25\n  0\nENDTAB\n",
      "  0\nLAYER\n  2\nWALL\n 70\n64\n 62\n3\n  6\nDASHDOT\n",
      "  0\nPOINT\n  8\nWALL\n 10\n1.00\n 20\n2.00\n 30\n3.00\n",
      "  0\nLINE\n  8\nWALL\n  6\nDASHDOT\n 62\n1\n 10\n0.00\n 20\n0.00\n 30\n0.00\n 11\n3.14\n 21\n-2.50\n 31\n1.00\n",
      "  0\nTEXT\n  8\n0\n 10\n4.00\n 20\n5.00\n 30\n0.00\n 40\n2.50\n 11\n0.00\n 21\n0.00\n 31\n0.00\n 41\n0.75\n"
      " 72\n0\n  1\nC20 \xBB\xEC\xC4\xFD\xCD\xC1\n  7\nHZ\n 50\n45.00\n",
      "  0\nCIRCLE\n  8\n0\n 62\n300\n 10\n7.00\n 20\n8.00\n 30\n0.00\n 40\n9.00\n",
      "  0\nARC\n  8\nWALL\n  6\nDASHDOT\n 10\n1.00\n 20\n1.00\n 30\n0.00\n 40\n5.00\n 50\n350.00\n 51\n20.00\n",
      "  0\nPOLYLINE\n  8\nWALL\n 62\n2\n 66\n  1\n 10\n0.00\n 20\n0.00\n 30\n0.00\n 40\n0.50\n 41\n0.50\n 70\n0\n"
      "  0\nVERTEX\n  8\n0\n 10\n0.00\n 20\n0.00\n 30\n0.00\n 70\n0\n 40\n0.50\n 41\n0.50\n 42\n0.00\n"
      "  0\nVERTEX\n  8\n0\n 10\n10.00\n 20\n0.00\n 30\n0.00\n 70\n0\n 40\n0.50\n 41\n0.50\n 42\n0.00\n  0\nSEQEND\n",
      " 70\n1\n  0\nVERTEX\n  8\n0\n 10\n0.00\n 20\n0.00\n 30\n0.00\n 70\n0\n 40\n0.50\n 41\n0.50\n 42\n0.00\n"
      "  0\nVERTEX\n  8\n0\n 10\n10.00\n 20\n5.00\n 30\n0.00\n 70\n0\n 40\n0.25\n 41\n0.25\n 42\n1.00\n",
      "  0\nSOLID\n  8\n0\n 62\n5\n 10\n0.00\n 20\n0.00\n 30\n0.00\n 11\n1.00\n 21\n0.00\n 31\n0.00\n 12\n0.00\n"
      " 22\n1.00\n 32\n0.00\n 13\n1.00\n 23\n1.00\n 33\n0.00\n",
      "  0\n3DFACE\n  8\n0\n 10\n0.00\n 20\n0.00\n 30\n0.00\n 11\n1.00\n 21\n0.00\n 31\n0.00\n 12\n1.00\n 22\n1.00\n"
      " 32\n1.00\n 13\n0.00\n 23\n1.00\n 33\n1.00\n  0\nENDSEC\n  0\nEOF\n",
      "  0\nSECTION\n  2\nBLOCKS\n  0\nENDSEC\n  0\nSECTION\n  2\nENTITIES\n"};
  for (const char* record : records) EXPECT_NE(file.find(on_disk(record)), std::string::npos) << record;
}

TEST(DxfWriting, StreamingAndSavingWriteTheSameEntities) {
  const TemporaryDirectory directory;
  DXF streamed;
  streamed.New(directory.path("a.dxf").c_str());
  DXF memory;
  memory.New_MemDxf();
  qvtest::compose_one_of_each(memory);
  for (DXF* dxf : {&streamed}) {
    const float pattern[] = {0.5F, -0.25F, 0, -0.25F};
    dxf->Add_LType("DASHDOT", "- . -", 4, 1, pattern);
    dxf->Add_Layer("WALL", 3, "DASHDOT");
    dxf->Add_STyle("HZ", "txt", "hztxt");
    dxf->Write_Tables();
    dxf->Begin_AllBlocks();
    dxf->End_AllBlocks();
    dxf->Begin_Entity();
  }
  RecordingHost host;  // the tables are added a second time: reported, and nothing more
  qvtest::compose_one_of_each(streamed);
  streamed.Close();
  EXPECT_EQ(directory.read("a.dxf"), saved(memory));
}

TEST(DxfWriting, ANameThatReadsAsASectionIsReportedOnce) {
  TemporaryDirectory directory;
  RecordingHost host;
  DXF dxf;
  dxf.New_MemDxf();
  dxf.Write_MemDxf_To_File(directory.path("a.dxf").c_str());
  EXPECT_EQ(host.MessageText(), "");
  dxf.Add_Layer("ENTITIES", 1, "CONTINUOUS");
  dxf.Add_STyle("TABLES", "txt", "");
  EXPECT_EQ(dxf.Write_MemDxf_To_File(directory.path("a.dxf").c_str()), 1);
  EXPECT_EQ(host.MessageText(), "A Name Reads As A Section In DXF File !\r\n");
}

// A file without a table cannot be read by most programs: streaming says so. In memory the drawing is saved as it is.
TEST(DxfWriting, AnEmptyTableIsReportedAndLosesNoEntity) {
  const struct {
    int DXF::*count;
    const char* message;
  } kCases[] = {
      {&DXF::m_nLType, "Num_LType <= 0 !"}, {&DXF::m_nLayer, "Num_Layer <= 0 !"}, {&DXF::m_nStyle, "Num_Style <= 0 !"}};
  const TemporaryDirectory directory;
  const std::string path = directory.path("a.dxf");
  for (const auto& c : kCases) {
    RecordingHost host;
    DXF streamed;
    ASSERT_EQ(streamed.New(directory.path("streamed.dxf").c_str()), 1);
    streamed.*c.count = 0;
    EXPECT_EQ(streamed.Write_Tables(), 0);
    EXPECT_EQ(host.box(), c.message);
    DXF memory;
    memory.New_MemDxf();
    memory.Write_Line(1, 2, 0, 3, 4, 0, "0", "1", "BYLAYER");
    memory.*c.count = 0;
    host.boxes.clear();
    EXPECT_EQ(memory.Write_MemDxf_To_File(path.c_str()), 1);
    EXPECT_EQ(host.box(), c.message);
    DXF again;
    again.New_MemDxf();
    EXPECT_EQ(again.Read_FileDxf_To_Mem(path.c_str()), 1);
    ASSERT_EQ(again.m_EntityList.GetCount(), 1) << c.message;
    EXPECT_EQ(static_cast<ACAD_LINE*>(again.m_EntityList.GetHead())->m_End.y, 4);
  }
}

TEST(DxfWriting, BlocksAreWrittenInFilesOnly) {
  const TemporaryDirectory directory;
  DXF dxf;
  dxf.New(directory.path("b.dxf").c_str());
  dxf.Begin_AllBlocks();
  // The seventh argument's own value is what is written.
  dxf.Begin_OneBlock("DOOR", 1, 2, 3, "0", "ignored", reinterpret_cast<const char*>(static_cast<std::intptr_t>(64)));
  dxf.Write_Point(0, 0, 0, "0");
  dxf.End_OneBlock();
  dxf.End_AllBlocks();
  dxf.Close();
  EXPECT_THAT(
      directory.read("b.dxf"),
      HasSubstr(on_disk("  0\nSECTION\n  2\nBLOCKS\n  0\nBLOCK\n  8\n0\n  2\nDOOR\n 70\n64\n 10\n1.00\n 20\n2.00\n"
                        " 30\n3.00\n  0\nPOINT\n  8\n0\n 10\n0.00\n 20\n0.00\n 30\n0.00\n  0\nENDBLK\n"
                        "  0\nENDSEC\n")));
  DXF memory;
  memory.New_MemDxf();
  EXPECT_EQ(memory.Begin_AllBlocks() + memory.Begin_OneBlock("A", 0, 0, 0, "0", "", nullptr) + memory.End_OneBlock() +
                memory.End_AllBlocks() + memory.Begin_Entity() + memory.End_Entity() + memory.Write_Tables(),
            7);
  EXPECT_THAT(saved(memory), Not(HasSubstr("BLOCK\r\n")));
}

TEST(DxfWriting, AHostsStreamGetsItsOwnLineEnds) {
  const TemporaryDirectory directory;
  std::FILE* file = std::fopen(directory.path("host.txt").c_str(), "wb");
  ACAD_INSERT insert;
  qv::copy_text(insert.m_szBlock, "DOOR");
  ACAD_BLOCK block;
  block.m_EntityList.AddTail(new ACAD_CIRCLE);
  EXPECT_EQ(insert.Write(file), 1);
  EXPECT_EQ(block.Write(file), 1);
  std::fclose(file);
  EXPECT_EQ(directory.read("host.txt"),
            "  0\nINSERT\n  8\n0\n  2\nDOOR\n 10\n0.00\n 20\n0.00\n 30\n0.00\n 41\n1.00\n 42\n1.00\n 50\n0.00\n"
            "  0\nBLOCK\n  8\n0\n  2\n0\n 70\n0\n 10\n0.00\n 20\n0.00\n 30\n0.00\n"
            "  0\nCIRCLE\n  8\n0\n 10\n0.00\n 20\n0.00\n 30\n0.00\n 40\n1.00\n  0\nENDBLK\n");
}

TEST(DxfWriting, FailuresAreReportedAndChangeNothing) {
  const float elements[31] = {};
  const struct {
    const char* message;
    std::function<int(DXF&)> call;
  } cases[] = {
      {"LType Name Repeated !", [&](DXF& d) { return d.Add_LType("CONTINUOUS", "", 0, 0, elements); }},
      {"NumLine_One_Circle Over Flow !", [&](DXF& d) { return d.Add_LType("A", "", 31, 0, elements); }},
      {"Layer Name Repeated !", [](DXF& d) { return d.Add_Layer("0", 1, "CONTINUOUS"); }},
      {"LType Error in Layer Define !", [](DXF& d) { return d.Add_Layer("WALL", 1, "DASHED"); }},
      {"Style Name Repeated !", [](DXF& d) { return d.Add_STyle("STANDARD", "txt", ""); }},
      {"Layer Name Error !", [](DXF& d) { return d.Write_Point(0, 0, 0, "wall"); }},
      {"Layer Name Error !", [](DXF& d) { return d.Write_Circle(0, 0, 0, 1, "WALL", "1", "BYLAYER"); }},
      {"LType Name Error !", [](DXF& d) { return d.Write_Line(0, 0, 0, 1, 1, 0, "0", "1", "DASHED"); }},
      {"Style Name Error !", [](DXF& d) { return d.Write_Text(0, 0, 0, 1, 0, "x", "HZ", "0", "1", "BYLAYER"); }},
      {"Please Change Max_Tables Before Open DXF File !", [](DXF& d) { return d.Set_MaxNum_of_Tables(9, 9, 9); }},
  };
  DXF dxf;
  dxf.New_MemDxf();
  const std::string before = saved(dxf);
  for (const auto& c : cases) {
    RecordingHost host;
    EXPECT_EQ(c.call(dxf), 0) << c.message;
    EXPECT_EQ(host.box(), c.message);
    EXPECT_EQ(QV_ERROR_CODE, 301);
  }
  EXPECT_EQ(saved(dxf), before);
}

TEST(DxfWriting, TableCapacitiesAreFixed) {
  RecordingHost host;
  DXF dxf;
  EXPECT_EQ(dxf.Set_MaxNum_of_Tables(0, 3, 2), 1);
  EXPECT_EQ(host.box(), "Num_LType < 1 !");
  dxf.New_MemDxf();
  const float none[1] = {};
  EXPECT_EQ(dxf.Add_LType("A", "", 0, 0, none), 0);  // the default entry is the only one
  EXPECT_EQ(dxf.Add_Layer("1", 1, "CONTINUOUS") + dxf.Add_Layer("2", 1, "CONTINUOUS"), 2);
  EXPECT_EQ(dxf.Add_Layer("3", 1, "CONTINUOUS"), 0);
  EXPECT_EQ(dxf.Add_STyle("1", "txt", "") + dxf.Add_STyle("2", "txt", ""), 1);
  std::vector<std::string> texts;
  for (const auto& box : host.boxes) texts.push_back(box.second);
  EXPECT_THAT(
      texts, ElementsAre("Num_LType < 1 !", "Num_LType Over Flow !", "Num_Layer Over Flow !", "Num_Style Over Flow !"));
}

TEST(DxfWriting, ValuesAreCutToTheirFieldsAndAtLineBreaks) {
  DXF dxf;
  dxf.New_MemDxf();
  const std::string longName(300, 'L');
  ASSERT_EQ(dxf.Add_Layer(longName.c_str(), 1, "CONTINUOUS"), 1);
  EXPECT_EQ(dxf.Write_Point(0, 0, 0, longName.c_str()), 1);  // looked up as it was cut
  // Fifty two-byte characters do not fit 99 bytes: the last one goes whole.
  std::string chinese;
  for (int i = 0; i < 50; ++i) chinese += "\xBB\xEC";
  EXPECT_EQ(dxf.Write_Text(0, 0, 0, 1, 0, chinese.c_str(), "STANDARD", "0", "1", "BYLAYER"), 1);
  EXPECT_EQ(dxf.Write_Text(0, 0, 0, 1, 0, "one\n  0\nEOF", "STANDARD", "0", "1", "BYLAYER"), 1);
  const std::string file = saved(dxf);
  EXPECT_THAT(file, HasSubstr(on_disk("POINT\n  8\n" + std::string(29, 'L') + "\n")));
  EXPECT_THAT(file, HasSubstr(on_disk("  1\n" + chinese.substr(0, 98) + "\n")));
  EXPECT_THAT(file, HasSubstr(on_disk("  1\none\n  7\nSTANDARD\n")));
}

TEST(DxfWriting, UnusualCoordinatesAreWrittenAsPrintfDoes) {
  DXF dxf;
  dxf.New_MemDxf();
  dxf.Write_Line(1e30F, -0.001F, 0.125F, std::numeric_limits<float>::infinity(), std::nanf(""), -1e9F, "0", "x9",
                 "BYLAYER");
  EXPECT_THAT(saved(dxf), HasSubstr(on_disk(" 62\n0\n 10\n1000000015047466219876688855040.00\n 20\n-0.00\n 30\n0.12\n"
                                            " 11\ninf\n 21\nnan\n 31\n-1000000000.00\n")));
  const TemporaryDirectory directory;
  qvtest::RecordingHost host;
  dxf.Write_Point(std::nanf(""), 0, 0, "0");
  EXPECT_EQ(dxf.Write_MemDxf_To_File(directory.path("a.dxf").c_str()), 1);
  EXPECT_EQ(host.MessageText(), "A Coordinate Is Not A Finite Number !\r\n");
}

TEST(DxfWriting, AFileIsReplacedOnlyByACompleteOne) {
  const TemporaryDirectory directory;
  DXF dxf;
  dxf.New_MemDxf();
  EXPECT_EQ(dxf.Write_MemDxf_To_File(directory.path("missing/a.dxf").c_str()), 0);
  EXPECT_EQ(dxf.Write_MemDxf_To_File(directory.prefix().c_str()), 0);
  DXF file;
  EXPECT_EQ(file.New(directory.path("missing/a.dxf").c_str()), 0);
  EXPECT_EQ(file.New(directory.path("open.dxf").c_str()), 1);
  EXPECT_EQ(file.Write_MemDxf_To_File(directory.path("other.dxf").c_str()), 0);
  EXPECT_FALSE(directory.has("other.dxf"));
}

TEST(DxfWriting, AFullDiskIsReported) {
  QV_NEEDS_FULL_DISK();
  DXF dxf;
  dxf.New_MemDxf();
  for (int i = 0; i < 20000; ++i) dxf.Write_Line(0, 0, 0, 1, 1, 0, "0", "1", "BYLAYER");
  EXPECT_EQ(dxf.Write_MemDxf_To_File(qvtest::kFullDisk), 0);
  DXF full;
  ASSERT_EQ(full.New(qvtest::kFullDisk), 1);
  int written = 0;
  while (written < 100000 && full.Write_Line(0, 0, 0, 1, 1, 0, "0", "1", "BYLAYER")) ++written;
  EXPECT_LT(written, 100000);
  EXPECT_EQ(full.Close(), 0);
}

TEST(DxfWriting, AClosedDocumentFindsNothing) {
  RecordingHost host;
  DXF dxf;
  dxf.New_MemDxf();
  dxf.Write_Point(0, 0, 0, "0");
  dxf.Close();
  EXPECT_EQ(dxf.m_nLayer, 1);
  EXPECT_EQ(dxf.Write_Point(0, 0, 0, "0"), 0);
  EXPECT_EQ(host.box(), "Layer Name Error !");
  EXPECT_EQ(dxf.Write_Line(0, 0, 0, 1, 1, 0, "0", "1", "BYLAYER"), 0);
  EXPECT_EQ(host.MessageText(), "The Drawing Is Closed: It Has No Layers !\r\n") << "once";
  EXPECT_EQ(dxf.m_EntityList.GetCount(), 0);
  dxf.New_MemDxf();
  EXPECT_EQ(dxf.Write_Point(0, 0, 0, "0"), 1);
  DXF unopened;
  for (int i = 0; i < 2; ++i) EXPECT_EQ(unopened.Read_FileDxf_To_Mem("none.dxf"), 0);
  EXPECT_NE(host.MessageText().find("New_MemDxf Comes First !\r\n"), std::string::npos);
  EXPECT_EQ(host.MessageLineCount(), 3);
}

}  // namespace
