#include <gmock/gmock.h>

#include <random>

#include "dxf/drawings.h"
#include "qvtools/services/captions.h"
#include "qvtools/text/gbk_text.h"
#include "support/recording_host.h"

using qvtest::on_disk;
using qvtest::RecordingHost;
using qvtest::saved;
using qvtest::TemporaryDirectory;
using testing::HasSubstr;

namespace {

constexpr char kEntities[] = "  0\nSECTION\n  2\nENTITIES\n";
constexpr char kEnd[] = "  0\nENDSEC\n  0\nEOF\n";

/// Loads a text as a drawing file; `lines` says which line ends it gets.
class Loaded {
 public:
  explicit Loaded(const std::string& text, bool crlf = true) {
    dxf.New_MemDxf();
    result = dxf.Read_FileDxf_To_Mem(directory_.write("in.dxf", crlf ? on_disk(text) : text).c_str());
  }
  template <class Record>
  Record& entity(int i) {
    POSITION at = dxf.m_EntityList.GetHeadPosition();
    while (i-- > 0) dxf.m_EntityList.GetNext(at);
    return static_cast<Record&>(*static_cast<ACAD_ENTITY*>(dxf.m_EntityList.GetAt(at)));
  }
  int count() const { return dxf.m_EntityList.GetCount(); }

  RecordingHost host;
  DXF dxf;
  int result = 0;

 private:
  TemporaryDirectory directory_;
};

std::string entities(const std::string& text) {
  return kEntities + text + kEnd;
}

std::string table(const char* name, const std::string& entries) {
  return std::string("  0\nSECTION\n  2\nTABLES\n  0\nTABLE\n  2\n") + name + "\n" + entries +
         "  0\nENDTAB\n  0\nENDSEC\n";
}

/// A drawing with blocks, inserts and one entity of each kind, as saved.
std::string full_drawing() {
  DXF dxf;
  dxf.New_MemDxf();
  qvtest::compose_one_of_each(dxf);
  auto* block = new ACAD_BLOCK;
  qv::copy_text(block->m_szName, "DOOR");
  block->m_Base = {1, 2, 3};
  block->m_EntityList.AddTail(new ACAD_LINE);
  auto* polyline = new ACAD_POLYLINE;
  polyline->m_Vertices.SetSize(3);
  block->m_EntityList.AddTail(polyline);
  dxf.m_BlockList.AddTail(block);
  auto* insert = new ACAD_INSERT;
  qv::copy_text(insert->m_szBlock, "DOOR");
  insert->m_fRotation = 30;
  dxf.m_EntityList.AddTail(insert);
  return saved(dxf);
}

TEST(DxfReading, WhatWasWrittenComesBackTheSame) {
  const std::string first = full_drawing();
  ASSERT_THAT(first, HasSubstr("INSERT"));
  for (const bool crlf : {true, false}) {
    Loaded again(qvtest::without_returns(first), crlf);
    EXPECT_EQ(again.result, 1);
    EXPECT_TRUE(again.host.boxes.empty());
    EXPECT_EQ(saved(again.dxf), first);
  }
}

TEST(DxfReading, StreamingGivesTheSameEntities) {
  const TemporaryDirectory directory;
  const std::string path = directory.write("a.dxf", full_drawing());
  DXF dxf;
  EXPECT_EQ(dxf.Read_One_Entity(), ACAD_TYPE_NONE);
  EXPECT_EQ(dxf.Find_Start_Blocks() + dxf.Read_Tables() + dxf.Read_One_Block(), 0);
  ASSERT_EQ(dxf.Open(path.c_str()), 1);
  EXPECT_EQ(dxf.m_nLayer, 2);
  std::vector<int> kinds;
  int type;
  while ((type = dxf.Read_One_Entity()) != ACAD_TYPE_END) {
    kinds.push_back(type);
  }
  EXPECT_THAT(kinds, testing::ElementsAre(0, 1, 2, 3, 4, 5, 5, 6, 7, 8));
  EXPECT_EQ(dxf.m_Arc.m_fStartAngle, 350);
  EXPECT_EQ(dxf.Read_One_Entity(), ACAD_TYPE_END);
  EXPECT_EQ(dxf.Find_Start_Blocks(), 1);
  EXPECT_EQ(dxf.Read_One_Block(), 1);
  EXPECT_STREQ(dxf.m_Block.m_szName, "DOOR");
  EXPECT_EQ(dxf.m_Block.m_EntityList.GetCount(), 2);
  EXPECT_EQ(dxf.Read_One_Block(), 0);
}

TEST(DxfReading, ARecordOfAHostsStreamStopsBehindItself) {
  const TemporaryDirectory directory;
  const std::string path = directory.write(
      "r.txt", "  0\r\nLINE\r\n  8\r\nA\r\n  0\nPOLYLINE\n  0\nVERTEX\n 10\n7\n  0\nSEQEND\n  0\nTEXT\n");
  std::FILE* file = std::fopen(path.c_str(), "rb");
  ACAD_CIRCLE circle;
  EXPECT_EQ(circle.Read(file), 0);
  std::rewind(file);
  ACAD_LINE line;
  EXPECT_EQ(line.Read(file), 1);
  EXPECT_STREQ(line.m_szLayer, "A");
  ACAD_POLYLINE polyline;
  EXPECT_EQ(polyline.Read(file), 1);
  ASSERT_EQ(polyline.m_Vertices.GetSize(), 1);
  EXPECT_EQ(polyline.m_Vertices[0].m_Point.x, 7);
  char rest[32] = {};
  EXPECT_EQ(std::fread(rest, 1, sizeof rest, file), 9U);
  EXPECT_STREQ(rest, "  0\nTEXT\n");
  std::fclose(file);
}

TEST(DxfReading, GroupsOfAnUnknownKindGoToTheRecordBefore) {
  Loaded in(
      entities("  0\nLINE\n  8\n0\n 10\n1.0\n 11\n5\n  0\nDIMENSION\n  8\nDIM\n 10\n7\n 20\n8\n  0\nPOINT\n  8\nP\n"));
  ASSERT_EQ(in.count(), 2);
  const auto& line = in.entity<ACAD_LINE>(0);
  EXPECT_STREQ(line.m_szLayer, "DIM");
  EXPECT_EQ(line.m_Start.x, 7);
  EXPECT_EQ(line.m_Start.y, 8);
  EXPECT_EQ(line.m_End.x, 5);
}

TEST(DxfReading, AbsentGroupsMeanDefaults) {
  Loaded in(
      entities("  0\nLINE\n  8\nA\n 62\n3\n  6\nDOT\n 11\n9\n  0\nLINE\n  0\nCIRCLE\n 10\n-1.5e1\n 40\n+2.5\n"
               "  0\nINSERT\n  2\nX\n 50\n90\n  0\nINSERT\n"));
  ASSERT_EQ(in.count(), 5);
  EXPECT_STREQ(in.entity<ACAD_LINE>(1).m_szLayer, "0");
  EXPECT_EQ(in.entity<ACAD_LINE>(1).m_nColor, -1);
  EXPECT_EQ(in.entity<ACAD_LINE>(1).m_End.x, 1);
  EXPECT_EQ(in.entity<ACAD_CIRCLE>(2).m_Center.x, -15);
  EXPECT_EQ(in.entity<ACAD_CIRCLE>(2).m_fRadius, 2.5F);
  EXPECT_EQ(in.entity<ACAD_INSERT>(4).m_fRotation, 0);
}

TEST(DxfReading, TextsWithoutAWidthFactorTakeTheirStyles) {
  Loaded in(table("STYLE", " 70\n1\n  0\nSTYLE\n  2\nNARROW\n 41\n0.8\n") +
            entities("  0\nTEXT\n  7\nNARROW\n  0\nTEXT\n  7\nNARROW\n 41\n0.5\n  0\nTEXT\n  7\nOTHER\n"));
  ASSERT_EQ(in.count(), 3);
  EXPECT_EQ(in.entity<ACAD_TEXT>(0).m_fWidthFactor, 0.8F);
  EXPECT_EQ(in.entity<ACAD_TEXT>(1).m_fWidthFactor, 0.5F);
  EXPECT_EQ(in.entity<ACAD_TEXT>(2).m_fWidthFactor, 0.75F);
}

TEST(DxfReading, TablesFollowTheirDeclaredCount) {
  const std::string two = "  0\nLAYER\n  2\nA\n 62\n1\n  0\nLAYER\n  2\nB\n";
  {
    Loaded in(table("LAYER", " 70\n3\n" + two) + entities(""));
    EXPECT_EQ(in.dxf.m_nLayer, 3);
    EXPECT_STREQ(in.dxf.m_pLayer[1].m_szName, "B");
    EXPECT_STREQ(in.dxf.m_pLayer[2].m_szName, "0");
    EXPECT_EQ(in.dxf.Add_Layer("C", 1, "CONTINUOUS"), 0) << "a read table has just its own size";
  }
  for (const char* count : {"0", "1001", "-1", "99999999999999999999"}) {
    Loaded in(table("LAYER", std::string(" 70\n") + count + "\n" + two) + entities(""));
    EXPECT_EQ(in.host.box(), "Num_Layer Error !");
    EXPECT_EQ(in.dxf.m_nLayer, 1);
    EXPECT_STREQ(in.dxf.m_pLayer[0].m_szName, "0");
  }
  {
    Loaded in(table("LTYPE",
                    " 70\n4\n  0\nLTYPE\n  2\nBYBLOCK\n  0\nLTYPE\n  2\nBYBLAYER\n"
                    "  0\nLTYPE\n  2\nDASH\n 73\n1\n 49\n0.5\n 49\n0.25\n"
                    "  0\nLTYPE\n  2\nAFTER\n") +
              entities(""));
    EXPECT_STREQ(in.dxf.m_pLType[0].m_szName, "CONTINUOUS");
    EXPECT_STREQ(in.dxf.m_pLType[1].m_szName, "CONTINUOUS");
    EXPECT_EQ(in.dxf.m_pLType[2].m_fElement[0], 0.5F);
    EXPECT_EQ(in.dxf.m_pLType[2].m_fElement[1], 0);
    EXPECT_STREQ(in.dxf.m_pLType[3].m_szName, "AFTER") << "one element too many takes nothing behind it";
  }
}

TEST(DxfReading, BlocksLeaveOutNestedInsertsAndEndWithTheirEndblk) {
  Loaded in(
      "  0\nSECTION\n  2\nBLOCKS\n"
      "  0\nBLOCK\n  8\nL\n  2\nA\n 10\n4\n  0\nLINE\n  0\nINSERT\n  2\nB\n  0\nCIRCLE\n  0\nENDBLK\n  8\nL\n"
      "  0\nBLOCK\n  2\nB\n  0\nPOLYLINE\n  0\nENDBLK\n  0\nVERTEX\n  0\nSEQEND\n"
      "  0\nBLOCK\n  2\nC\n  0\nPOINT\n  0\nENDBLK\n  0\nENDSEC\n" +
      entities("  0\nINSERT\n  2\nA\n"));
  ASSERT_EQ(in.dxf.m_BlockList.GetCount(), 3);
  POSITION at = in.dxf.m_BlockList.GetHeadPosition();
  auto* a = static_cast<ACAD_BLOCK*>(in.dxf.m_BlockList.GetNext(at));
  EXPECT_EQ(a->m_EntityList.GetCount(), 2);
  EXPECT_EQ(a->m_Base.x, 4);
  EXPECT_EQ(in.count(), 1);
}

TEST(DxfReading, LinesAreKnownByTheirExactText) {
  // Codes without their blanks, and a keyword with a blank behind it, are passed over.
  EXPECT_EQ(Loaded("0\nSECTION\n2\nENTITIES\n0\nLINE\n8\n0\n0\nENDSEC\n0\nEOF\n").result, 0);
  EXPECT_EQ(Loaded(entities("  0\nLINE \n  8\nX\n")).count(), 0);
  // Texts lose their last character: at the end of the file it is not a line feed.
  Loaded cut(std::string(kEntities) + "  0\nPOINT\n 10\n12\n  8\nLAYER");
  ASSERT_EQ(cut.count(), 1);
  EXPECT_STREQ(cut.entity<ACAD_POINT>(0).m_szLayer, "LAYE");
  EXPECT_EQ(cut.entity<ACAD_POINT>(0).m_Point.x, 12);
  // A line beyond 289 characters goes on as another line, which breaks the pairing.
  Loaded wide(entities("  0\nTEXT\n  1\n" + std::string(288, 'a') + "\n  7\nS1\n  0\nTEXT\n  1\n" +
                       std::string(289, 'b') + "\n  7\nS2\n"));
  ASSERT_EQ(wide.count(), 2);
  EXPECT_EQ(std::string(wide.entity<ACAD_TEXT>(0).m_szText), std::string(99, 'a'));
  EXPECT_STREQ(wide.entity<ACAD_TEXT>(0).m_szStyle, "S1");
  EXPECT_STREQ(wide.entity<ACAD_TEXT>(1).m_szStyle, "STANDARD");
}

TEST(DxfReading, EndlessLinesAndBlocksEndWithTheFile) {
  Loaded line(kEntities + std::string("  0\nPOINT\n  8\n") + std::string(3000000, 'a'));
  EXPECT_EQ(line.result, 1);
  ASSERT_EQ(line.count(), 1);
  EXPECT_EQ(std::string(line.entity<ACAD_POINT>(0).m_szLayer), std::string(29, 'a'));
  std::string nested = "  0\nSECTION\n  2\nBLOCKS\n";
  for (int i = 0; i < 20000; ++i) nested += "  0\nBLOCK\n";
  Loaded blocks(nested);
  EXPECT_EQ(blocks.result, 0);
  EXPECT_EQ(blocks.count(), 0);
}

TEST(DxfReading, OpeningReportsWhatIsMissing) {
  const TemporaryDirectory directory;
  RecordingHost host;
  DXF dxf;
  EXPECT_EQ(dxf.Open(directory.path("missing.dxf").c_str()), 0);
  EXPECT_EQ(dxf.Open(directory.prefix().c_str()), 0);
  EXPECT_TRUE(host.boxes.empty());
  EXPECT_EQ(dxf.Open(directory.write("a.dxf", on_disk(entities(""))).c_str()), 0);
  EXPECT_EQ(host.box(), qv::captions::kReadingTables);
  host.boxes.clear();
  EXPECT_EQ(dxf.Open(directory.write("b.dxf", on_disk(table("LAYER", " 70\n1\n  0\nLAYER\n"))).c_str()), 0);
  EXPECT_EQ(host.box(), qv::captions::kNoEntitySection);
  DXF file;
  EXPECT_EQ(file.Read_FileDxf_To_Mem(directory.path("a.dxf").c_str()), 0) << "not in memory";
}

/// Entities with whatever may stand between them: codes and values of any length, line ends of both kinds. (A line that
/// a carriage return makes too long for a stream opened in binary is not too long for a file.)
std::string strange_entities(std::mt19937& random, int count) {
  constexpr const char* kCodes[] = {"  0", "  8", " 10", " 20", " 11", " 21", " 40",
                                    " 62", "  6", "100", "8",   " 8",  "",    "  8 "};
  constexpr const char* kKinds[] = {"LINE", "CIRCLE", "TEXT", "POLYLINE", "VERTEX", "SEQEND", "HATCH", "SOLID ", ""};
  const auto one_of = [&](const auto& of) { return of[random() % std::size(of)]; };
  std::string text;
  const auto line = [&](const std::string& value) {
    text += value + (random() % 4 == 0 && value.size() < 270 ? "\r\n" : "\n");
  };
  for (int i = 0; i < count; ++i) {
    const std::string code = one_of(kCodes);
    line(code);
    if (code == "  0")
      line(one_of(kKinds));
    else if (random() % 50 == 0)
      line(std::string(270 + random() % 40, static_cast<char>('0' + random() % 10)));
    else
      line((random() % 3 ? "" : "-") + std::to_string(random() >> random() % 32) + (random() % 3 ? ".25" : ""));
  }
  return text;
}

// Files of our own are read in blocks whose line ends are found first, hosts' streams line by line.
TEST(DxfReading, BlocksOfAFileAndLinesOfAStreamGiveTheSame) {
  std::mt19937 random{11};
  for (int run = 0; run < 8; ++run) {
    const std::string text = "  0\nBLOCK\n  2\nA\n" + strange_entities(random, 20000) + "  0\nENDBLK\n";
    Loaded own("  0\nSECTION\n  2\nBLOCKS\n" + text + "  0\nENDSEC\n" + entities(""), false);
    const TemporaryDirectory directory;
    std::FILE* const file = std::fopen(directory.write("block.txt", text).c_str(), "rb");
    DXF host;
    host.New_MemDxf();
    auto* const block = new ACAD_BLOCK;
    host.m_BlockList.AddTail(block);
    EXPECT_EQ(block->Read(file), 1);
    std::fclose(file);
    EXPECT_GT(block->m_EntityList.GetCount(), 100);
    EXPECT_EQ(saved(own.dxf), saved(host)) << run;
  }
}

// The blocks of a drawing share their working records; one that its host takes away can still be read into.
TEST(DxfReading, ABlockOutlivesItsDrawing) {
  const TemporaryDirectory directory;
  const std::string line = "  0\nLINE\n 10\n7\n 11\n8\n";
  std::unique_ptr<ACAD_BLOCK> block;
  {
    Loaded drawing(
        "  0\nSECTION\n  2\nBLOCKS\n  0\nBLOCK\n  2\nA\n" + line + "  0\nENDBLK\n  0\nENDSEC\n" + entities(""), false);
    ASSERT_EQ(drawing.dxf.m_BlockList.GetCount(), 1);
    block.reset(static_cast<ACAD_BLOCK*>(drawing.dxf.m_BlockList.RemoveHead()));
  }
  std::FILE* const file = std::fopen(directory.write("line.txt", line).c_str(), "rb");
  EXPECT_EQ(block->Read_One_Entity(file), ACAD_TYPE_LINE);
  EXPECT_EQ(block->m_Line.m_End.x, 8);
  EXPECT_EQ(block->Read_One_Entity(file), ACAD_TYPE_END);
  std::fclose(file);
  std::FILE* const folder = std::fopen(directory.path("").c_str(), "rb");  // every read of it fails
  qvtest::RecordingHost host;
  if (folder) {
    EXPECT_EQ(block->Read_One_Entity(folder), ACAD_TYPE_NONE);
    std::fclose(folder);
  }
  EXPECT_EQ(static_cast<ACAD_LINE*>(block->m_EntityList.GetHead())->m_Start.x, 7);
}

TEST(DxfReading, AFileCutAnywhereKeepsWhatWasRead) {
  const std::string whole = full_drawing();
  const TemporaryDirectory directory;
  RecordingHost host;
  int last = 0;
  std::size_t complete = 0;
  for (std::size_t size = 0; size <= whole.size(); ++size) {
    DXF dxf;
    dxf.New_MemDxf();
    dxf.Read_FileDxf_To_Mem(directory.write("cut.dxf", std::string_view(whole).substr(0, size)).c_str());
    EXPECT_GE(dxf.m_EntityList.GetCount(), last) << size;
    EXPECT_FALSE(dxf.IsCutShort());
    if (dxf.m_EntityList.GetCount() > 0) complete += dxf.IsComplete();
    last = dxf.m_EntityList.GetCount();
  }
  EXPECT_EQ(last, 10);
  EXPECT_EQ(complete, whole.size() - whole.rfind("ENDSEC") - 7) << "from the line end behind the last ENDSEC on";
}

TEST(DxfReading, TellsHowFarItIsAndCanBeGivenUp) {
  std::string lines;
  for (int i = 0; i < 10000; ++i) lines += "  0\nLINE\n  8\n0\n 10\n1.0\n 20\n2.0\n 11\n3.0\n 21\n4.0\n";
  const TemporaryDirectory directory;
  const std::string path = directory.write("in.dxf", on_disk(entities(lines)));
  const RecordingHost host;
  DXF whole;
  whole.New_MemDxf();
  std::vector<double> shares;
  const auto note = [&](double share) { return shares.push_back(share), true; };
  EXPECT_EQ(whole.Read_FileDxf_To_Mem(path.c_str(), note), 1);
  ASSERT_EQ(shares.size(), 2U);
  EXPECT_TRUE(0.2 < shares[0] && shares[0] < shares[1] && shares[1] <= 1) << shares[0] << ", " << shares[1];
  DXF part;
  part.New_MemDxf();
  EXPECT_EQ(part.Read_FileDxf_To_Mem(path.c_str(), [](double) { return false; }), 0);
  EXPECT_EQ(part.m_EntityList.GetCount(), 4096);
  EXPECT_TRUE(whole.m_EntityList.GetCount() > 0 && !part.IsComplete() && !part.IsCutShort());
}

TEST(DxfInserting, EntitiesAreTransformedAndTablesMerged) {
  RecordingHost host;
  DXF target;
  target.New_MemDxf();
  target.Add_Layer("WALL", 7, "CONTINUOUS");
  DXF source;
  source.New_MemDxf();
  qvtest::compose_one_of_each(source);
  auto* block = new ACAD_BLOCK;
  qv::copy_text(block->m_szName, "DOOR");
  source.m_BlockList.AddTail(block);
  EXPECT_EQ(target.InsertDxf(&source, 100, 0, 90), 1);
  EXPECT_EQ(target.m_nLType, 2);
  EXPECT_EQ(target.m_nLayer, 2);
  EXPECT_EQ(target.m_pLayer[1].m_nColor, 7) << "present names win";
  EXPECT_EQ(target.m_nStyle, 2);
  EXPECT_EQ(target.m_BlockList.GetCount(), 1);
  ASSERT_EQ(target.m_EntityList.GetCount(), 9);
  const auto& point = *static_cast<ACAD_POINT*>(target.m_EntityList.GetHead());
  EXPECT_NEAR(point.m_Point.x, 98, 1e-4);
  EXPECT_NEAR(point.m_Point.y, 1, 1e-4);
  EXPECT_EQ(point.m_Point.z, 3);
  EXPECT_EQ(target.InsertDxf(&target, 0, 0, 0), 1);
  EXPECT_EQ(target.m_EntityList.GetCount(), 18);
  EXPECT_EQ(target.m_BlockList.GetCount(), 1);

  // A written document's capacity is fixed, a read one grows.
  DXF small;
  small.Set_MaxNum_of_Tables(1, 1, 1);
  small.New_MemDxf();
  EXPECT_EQ(small.InsertDxf(&source, 0, 0, 0), 1);
  EXPECT_EQ(small.m_nLType + small.m_nLayer + small.m_nStyle, 3);
  EXPECT_EQ(host.boxes.size(), 3U);
  DXF read;
  read.Open_MemDxf();
  EXPECT_EQ(read.InsertDxf(&source, 0, 0, 0), 1);
  EXPECT_EQ(read.m_nLType + read.m_nLayer + read.m_nStyle, 6);
}

}  // namespace
