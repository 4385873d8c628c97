#include "qvtools/engineering/base_data.h"

#include <gtest/gtest.h>

#include "qvtools/services/captions.h"
#include "qvtools/system/textfile.h"
#include "support/full_disk.h"
#include "support/recording_host.h"
#include "support/temporary_directory.h"

namespace {

struct Module : CQvBaseData {
  using CQvBaseData::SetFileName;
  int SetFileName(CString base) override {
    m_strFile = base;
    return 1;
  }
};

struct BaseData : testing::Test {
  /// Calls f with the file opened in a mode.
  template <class F>
  void with_file(const char* mode, const F& f) {
    std::FILE* const file = qv::open_text(work.path("data").c_str(), mode);
    ASSERT_TRUE(file);
    f(file);
    std::fclose(file);
  }
  std::string loaded_name(const std::string& bytes) {
    work.write("data", bytes);
    CQvBaseData data;
    data.m_strName = "before";
    with_file("rt", [&](std::FILE* file) {
      std::fseek(file, 0, SEEK_END);
      EXPECT_EQ(data.LoadData(file), 1);
    });
    return data.m_strName.str();
  }
  qvtest::RecordingHost host;
  qvtest::WorkDirectory work;
};

TEST_F(BaseData, SavesItselfInCommentLines) {
  CQvBaseData data;
  data.m_strName = "slab 100% %s";
  data.m_nQuery = 2;
  data.m_strQuery[1] = "q";
  data.m_strDxf[1] = "b.dxf";
  data.m_strRtf[1] = "b.rtf";
  with_file("wt", [&](std::FILE* file) {
    EXPECT_EQ(data.SetBiaoShi(file, "SLAB"), 1);
    EXPECT_EQ(data.SaveData(file), 1);
  });
  EXPECT_EQ(work.read("data"), std::string("##SLAB\r\n##Name slab 100% %s\r\n##ChaXun ") + qv::captions::kQueryContent +
                                   " NONAME.DXF NONAME.RTF\r\n##ChaXun q b.dxf b.rtf\r\n");
  CQvBaseData again;
  with_file("rt", [&](std::FILE* file) {
    EXPECT_EQ(again.CheckBiaoShi(file, "SLAB"), 1);
    EXPECT_TRUE(host.boxes.empty());
    EXPECT_EQ(again.CheckBiaoShi(file, "SLAB"), 0);
    EXPECT_EQ(host.box(), qv::captions::kWrongContent);
    EXPECT_EQ(again.LoadData(file), 1);
  });
  EXPECT_EQ(again.m_strName, "slab 100% %s");
  EXPECT_EQ(again.m_nQuery, 1) << "queries are not read back";
}

TEST_F(BaseData, LoadsNamesFromAnyFile) {
  EXPECT_EQ(loaded_name("1,2\n##Name a b\n##Name c\n"), "a b");
  EXPECT_EQ(loaded_name("##Name last"), "last") << "no line feed to take off";
  for (const char* bytes : {"", "##Name\r\n", "##Name \n", "## name x\n", "\n\n"}) EXPECT_EQ(loaded_name(bytes), "");
  const std::string name(5000, 'n');
  EXPECT_EQ(loaded_name("##Name " + name + "\r\n"), name);
}

TEST_F(BaseData, TakesQueriesWithinTheirNumber) {
  CQvBaseData data;
  EXPECT_EQ(data.GetDxfFileName(5), "NONAME.DXF");
  EXPECT_EQ(data.GetRtfFileName(-5), "NONAME.RTF");
  data.m_strDxf[29] = "last.dxf";
  data.m_nQuery = 1000;
  EXPECT_EQ(data.GetDxfFileName(999), "last.dxf");
  with_file("wt", [&](std::FILE* file) { EXPECT_EQ(data.SaveData(file), 1); });
  EXPECT_NE(work.read("data").find("##ChaXun  last.dxf \r\n"), std::string::npos);
  data.m_nQuery = -3;
  EXPECT_EQ(data.GetDxfFileName(1), "NONAME.DXF");
  const CQvBaseData copy(data);
  EXPECT_EQ(copy.m_strDxf[29], "last.dxf");
}

TEST_F(BaseData, PassesTheBaseNameOn) {
  Module module;
  EXPECT_EQ(module.SetFileName("C:\\work\\slab1.dat"), 1);
  EXPECT_EQ(module.m_strFile, "slab1");
  EXPECT_EQ(module.SetFileName("/a/slab.2.dat"), 1);
  EXPECT_EQ(module.m_strFile, "slab.2");
  EXPECT_EQ(CQvBaseData().SetFileName("x"), 1);
}

TEST_F(BaseData, RemovesItsResultFiles) {
  for (const char* name : {"NONAME.DXF", "a.rtf", "later.dxf"}) work.write(name, "");
  CQvBaseData data;
  data.m_strRtf[0] = "";
  data.m_nQuery = 2;
  data.m_strRtf[1] = "a.rtf";
  data.m_strDxf[2] = "later.dxf";
  EXPECT_EQ(data.Remove_Result_Files(), 1);
  EXPECT_FALSE(work.has("NONAME.DXF") || work.has("a.rtf"));
  EXPECT_TRUE(work.has("later.dxf")) << "not in use";
  EXPECT_TRUE(host.boxes.empty());
}

TEST_F(BaseData, ReportsAFullDisk) {
  QV_NEEDS_FULL_DISK();
  std::FILE* const file = std::fopen(qvtest::kFullDisk, "w");
  EXPECT_EQ(CQvBaseData().SaveData(file), 0);
  std::fclose(file);
}

}  // namespace
