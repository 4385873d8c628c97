#include "qvtools/engineering/materials.h"

#include <gtest/gtest.h>

#include "support/full_disk.h"
#include "support/temporary_directory.h"

namespace {

/// The program's directory and the process-wide grades, as at the start of a program.
struct Materials : testing::Test {
  Materials() : before(G_strExePath) {
    G_strExePath = directory.prefix().c_str();
    reset();
  }
  ~Materials() override {
    G_strExePath = before;
    reset();
  }
  static void reset() {
    G_UserOpt = CUserOpt();
    G_bUserOptRead = 0;
  }
  qvtest::TemporaryDirectory directory;
  CString before;
  Con_Prop c{};
  Rein_Prop r{};
};

TEST_F(Materials, ComeFromTheTablesWithoutAFile) {
  ASSERT_EQ(get_rc_property(35, &c), 1);
  const float all[] = {c.fc, c.fcm, c.ft, c.fck, c.fcmk, c.ftk, c.Ec, c.Gc, c.nu, c.alpha};
  const float expected[] = {17.5F, 19, 1.65F, 23.5F, 26, 2.25F, 31500, 14000, 0.2F, 1e-5F};
  for (int i = 0; i < 10; ++i) EXPECT_EQ(all[i], expected[i]) << i;
  EXPECT_EQ(c.code, 35);
  ASSERT_EQ(get_rc_property(15, &c), 1);
  EXPECT_EQ(c.Gc, 0);
  for (const int code : {65, 70, 85}) {
    ASSERT_EQ(get_rc_property(code, &c), 1);
    EXPECT_EQ(c.code, 20);
  }
  for (const int code : {22, 0, -5, 66, 90}) EXPECT_EQ(get_rc_property(code, &c), 0) << code;
  EXPECT_EQ(c.code, 20) << "untouched";
  ASSERT_EQ(get_rein_property(3, &r), 1);
  EXPECT_EQ(r.fyk, 370);
  ASSERT_EQ(get_rein_property(4, &r), 1);
  EXPECT_EQ(r.fy, 310) << "user slot 1, not grade 4";
  EXPECT_EQ(get_rein_property(0, &r) + get_rein_property(9, &r), 0);
}

TEST_F(Materials, HaveNames) {
  EXPECT_EQ(_HNT(20), "C20");
  EXPECT_EQ(_HNT(64), "C64");
  EXPECT_EQ(_HNT(65), "UC-1");
  EXPECT_EQ(_HNT(70), "UC-2");
  EXPECT_EQ(_HNT(85), "UC-5");
  EXPECT_EQ(_GJ(3), "3");
  EXPECT_EQ(_GJ(4), "UG-1");
  EXPECT_EQ(_GJ(5), "UG-2");
}

TEST_F(Materials, AreSavedAndReadOnce) {
  CUserOpt options;
  options.m_Con[2].fc = 31.5F;
  options.m_Rein[4].Es = 195000;
  ASSERT_EQ(options.SaveData(), 1);
  const std::string text = directory.read("UserOpt.dat");
  EXPECT_NE(text.find("\r\n3,UC-3,31.500,11.000,1.100,13.500,15.000,1.500,25500.000,11000.000,0.200,0.000\r\n"),
            std::string::npos);
  EXPECT_NE(text.find("\r\n5,UG-5,310.000,310.000,335.000,195000.000\r\n"), std::string::npos);
  EXPECT_EQ(std::count(text.begin(), text.end(), '\n'), 12);
  ASSERT_EQ(get_rc_property(75, &c), 1);
  EXPECT_EQ(c.fc, 31.5F);
  EXPECT_EQ(c.code, 20) << "codes are not read";
  EXPECT_EQ(c.alpha, 0) << "three decimals";
  directory.write("UserOpt.dat", "");
  ASSERT_EQ(get_rein_property(8, &r), 1);
  EXPECT_EQ(r.Es, 195000) << "not read again";
  G_strExePath = "/none/";
  EXPECT_EQ(options.SaveData(), 0);
  EXPECT_EQ(options.ReadData(), 0);
}

TEST_F(Materials, TakeAFileWithGaps) {
  std::string text = "title\n";
  for (int i = 1; i <= 5; ++i) text += i == 3 ? "## a remark\n3,x,1,2,3,4,5\n" : "1,x,9,9,9,9,9,9,9,9,9,9,9,9\n";
  directory.write("UserOpt.dat", text + "title\n1,y,%s,inf,1e999," + std::string(1000, '7'));
  ASSERT_EQ(G_UserOpt.ReadData(), 1);
  EXPECT_EQ(G_UserOpt.m_Con[2].fcmk, 5);
  EXPECT_EQ(G_UserOpt.m_Con[2].ftk + G_UserOpt.m_Con[2].alpha, 0);
  EXPECT_EQ(G_UserOpt.m_Con[4].alpha, 9);
  EXPECT_EQ(G_UserOpt.m_Rein[0].fy + G_UserOpt.m_Rein[0].fy2, 0);
  EXPECT_EQ(G_UserOpt.m_Rein[4].Es, 0);
  directory.write("UserOpt.dat", "");
  ASSERT_EQ(G_UserOpt.ReadData(), 1);
  EXPECT_EQ(G_UserOpt.m_Con[0].fc, 0);
}

#if !defined(_WIN32)
// The file has a fixed name, which only a link makes a full device.
TEST_F(Materials, ReportAFullDisk) {
  QV_NEEDS_FULL_DISK();
  std::filesystem::create_symlink(qvtest::kFullDisk, directory.path("UserOpt.dat"));
  EXPECT_EQ(CUserOpt().SaveData(), 0);
}
#endif

}  // namespace
