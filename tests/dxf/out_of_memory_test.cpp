#include <gtest/gtest.h>

#include <functional>

#include "dxf/drawings.h"
#include "qvtools/engineering/component.h"
#include "qvtools/engineering/database_file.h"
#include "qvtools/platform/bitmap/bitmap_dc.h"
#include "qvtools/text/gbk_text.h"
#include "qvtools/text/numbers.h"
#include "support/failing_allocations.h"
#include "support/recording_host.h"
#include "support/temporary_directory.h"

namespace {

constexpr int kVertices = 60;

/// A polyline of many vertices, wide enough to be filled.
void add_polyline(DXF& dxf) {
  float x[kVertices];
  float zero[kVertices] = {};
  float width[kVertices];
  for (int i = 0; i < kVertices; ++i) {
    x[i] = static_cast<float>(i);
    width[i] = 5;
  }
  dxf.Write_Pline(kVertices, x, x, zero, zero, 0, width, width, "0", "1", "BYLAYER");
}

ACAD_BLOCK* new_block(const char* name) {
  auto* block = new ACAD_BLOCK;
  qv::copy_text(block->m_szName, name);
  for (int i = 0; i < 30; ++i) block->m_EntityList.AddTail(new ACAD_LINE);
  return block;
}

/// Something that allocates: it is prepared, run with a failure, and checked against its result.
struct Job {
  const char* what;
  std::function<void()> prepare;
  std::function<int()> run;
  std::function<void(int result)> check;
};

// Every allocation of each job fails in turn: the result says so, and what is there is as it was.
TEST(OutOfMemory, GivesTheDocumentedResultAndKeepsWhatWasThere) {
  qvtest::RecordingHost host;
  std::unique_ptr<DXF> dxf;
  DXF other;
  other.New_MemDxf();
  other.Add_Layer("WALL", 1, "CONTINUOUS");
  add_polyline(other);
  for (int i = 0; i < 600; ++i) other.Write_Line(0, 0, 0, 1, 1, 0, "0", "1", "BYLAYER");
  other.m_BlockList.AddTail(new_block("DOOR"));
  ACAD_BLOCK target;
  std::unique_ptr<qv::BitmapContext> bitmap;
  std::FILE* const record = std::tmpfile();
  static_cast<ACAD_ENTITY*>(other.m_EntityList.GetHead())->Write(record);
  ACAD_POLYLINE polyline;
  std::unique_ptr<CCxIndexFile> index;
  const qvtest::WorkDirectory work;
  CDataBaseFile database;
  database.Open_File("items.dat", CDataBaseFile::IO_WRITE);
  database.Begin_Segment("A");
  for (int i = 0; i < kVertices; ++i) database.Write_Item(qv::FormattedText<16>("key%d", i), "%d", i);
  database.End_Segment();
  const auto count = [&] { return dxf->m_EntityList.GetCount(); };
  const auto open = [&] {
    dxf = std::make_unique<DXF>();
    dxf->New_MemDxf();
  };
  const Job jobs[] = {
      {"polyline", open, [&] { return add_polyline(*dxf), count(); }, [&](int n) { EXPECT_EQ(count(), n); }},
      {"insert", open, [&] { return dxf->InsertDxf(&other, 1, 1, 0); },
       [&](int result) { EXPECT_EQ(count(), result * other.m_EntityList.GetCount()); }},
      {"block", [&] { target.Ini(), target.m_EntityList.AddTail(new ACAD_CIRCLE); },
       [&] { return target.Copy(static_cast<ACAD_BLOCK*>(other.m_BlockList.GetHead())); },
       [&](int result) { EXPECT_EQ(target.m_EntityList.GetCount(), result ? 30 : 1); }},
      {"read", [&] { std::rewind(record); }, [&] { return polyline.Read(record); },
       [&](int result) { EXPECT_EQ(polyline.m_Vertices.GetSize() == kVertices, result == 1); }},
      {"bitmap", [] {}, [&] { return bitmap = std::make_unique<qv::BitmapContext>(50, 50, 0), 1; },
       [&](int) {
         if (!bitmap) return;
         CFCoor coor;
         other.Draw(bitmap.get(), &coor);
         EXPECT_TRUE(bitmap->Width() == 50 || bitmap->Width() == 0);
       }},
      {"index", [&] { index = std::make_unique<CCxIndexFile>(); }, [&] { return index->Begin_Item(record); },
       [&](int result) { EXPECT_EQ(index->End_Item(record), result); }},
      {"segment", [&] { database.Open_File("items.dat", CDataBaseFile::IO_READ); },
       [&] { return database.Read_Segment("A"); },
       [&](int result) { EXPECT_EQ(database.Get_ItemCount(), result * kVertices); }},
      {"drawing", [&] { bitmap = std::make_unique<qv::BitmapContext>(50, 50, 0); },
       [&] {
         CFCoor coor;
         return other.Draw(bitmap.get(), &coor), 1;
       },
       [](int) {}},
      {"outlines", [] {}, [&] { return other.GetFRect().x2 > 50 ? 1 : 0; }, [](int) {}}};
  for (const Job& job : jobs) {
    int n = 0;
    for (bool failed = true; failed && n < 5000; ++n) {
      job.prepare();
      int result = -1;
      try {
        const qvtest::FailingAllocations failing(n, qvtest::FailingAllocations::Which::All);
        result = job.run();
        failed = failing.failed();
      } catch (const std::bad_alloc&) {
        // Only the test's own allocation of the bitmap may throw.
        ASSERT_STREQ(job.what, "bitmap") << n;
        continue;
      }
      job.check(result);
      EXPECT_TRUE(failed || result >= 1) << job.what;
    }
    EXPECT_LT(n, 5000) << job.what;
  }
  std::fclose(record);
}

// What was lost is not lost in the file too.
TEST(OutOfMemory, ADrawingThatWasCutShortIsNotSavedOverItsFile) {
  const qvtest::TemporaryDirectory directory;
  DXF whole;
  whole.New_MemDxf();
  for (int i = 0; i < 50; ++i) add_polyline(whole);
  const std::string path = directory.path("whole.dxf");
  ASSERT_EQ(whole.Write_MemDxf_To_File(path.c_str()), 1);
  const std::string bytes = directory.read("whole.dxf");
  qvtest::RecordingHost host;
  DXF cut;
  for (int n = 0; !cut.IsCutShort(); ++n) {
    ASSERT_LT(n, 5000);
    cut.Close();
    cut.New_MemDxf();
    const qvtest::FailingAllocations failing(n, qvtest::FailingAllocations::Which::All);
    cut.Read_FileDxf_To_Mem(path.c_str());
  }
  EXPECT_FALSE(cut.IsComplete());
  EXPECT_EQ(cut.Write_MemDxf_To_File(path.c_str()), 0);
  EXPECT_EQ(host.box(), "The Drawing Was Not Read To Its End: Its File Is Kept !");
  EXPECT_EQ(directory.read("whole.dxf"), bytes);
  EXPECT_EQ(cut.Write_MemDxf_To_File(directory.path("part.dxf").c_str()), 1);
  cut.TakeAsComplete();
  EXPECT_EQ(cut.Write_MemDxf_To_File(path.c_str()), 1);
  EXPECT_LT(directory.read("whole.dxf").size(), bytes.size());
}

}  // namespace
