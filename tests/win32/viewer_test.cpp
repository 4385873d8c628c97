// qvview32, driven from outside as a person would, by the messages of pointer and keys.

#include <gtest/gtest.h>
#include <windows.h>

#include <functional>
#include <string>

#include "qvtools/dxf/model/document.h"
#include "support/temporary_directory.h"

namespace {

constexpr int kPatience = 10000;  // milliseconds

struct ViewerTest : testing::Test {
  /// Starts the viewer on a drawing of ten by ten circles, all of which it shows.
  void SetUp() override {
    DXF dxf;
    dxf.New_MemDxf();
    for (int i = 0; i < 100; ++i)
      dxf.Write_Circle(static_cast<float>(i % 10 * 10), static_cast<float>(i / 10 * 10), 0, 4, "0", "1", "BYLAYER");
    const std::string drawing = directory.path("circles.dxf");
    ASSERT_EQ(dxf.Write_MemDxf_To_File(drawing.c_str()), 1);
    std::string words = std::string("\"") + QV_VIEWER + "\" \"" + drawing + '"';
    STARTUPINFOA start = {};
    start.cb = sizeof start;
    ASSERT_TRUE(CreateProcessA(nullptr, words.data(), nullptr, nullptr, FALSE, 0, nullptr, nullptr, &start, &process));
    ASSERT_TRUE(comes([&] { return (window = FindWindowA("qvview32", nullptr)) != nullptr; }));
    ASSERT_TRUE(comes([&] { return title() == "circles.dxf - qvview32"; })) << title();
    GetClientRect(window, &client);
  }
  void TearDown() override {
    if (window) PostMessageA(window, WM_CLOSE, 0, 0);
    DWORD code = 99;
    EXPECT_EQ(WaitForSingleObject(process.hProcess, kPatience), WAIT_OBJECT_0);
    GetExitCodeProcess(process.hProcess, &code);
    EXPECT_EQ(code, 0u);
    CloseHandle(process.hThread);
    CloseHandle(process.hProcess);
  }

  static bool comes(const std::function<bool()>& what) {
    for (int waited = 0; waited < kPatience; waited += 20) {
      if (what()) return true;
      Sleep(20);
    }
    return false;
  }
  std::string title() const {
    char text[200] = "";
    GetWindowTextA(window, text, sizeof text);
    return text;
  }
  void press(int key) const { PostMessageA(window, WM_KEYDOWN, static_cast<WPARAM>(key), 0); }
  void drag(POINT from, POINT to) const {
    SendMessageA(window, WM_MOUSEMOVE, 0, MAKELPARAM(from.x, from.y));
    SendMessageA(window, WM_LBUTTONDOWN, MK_LBUTTON, MAKELPARAM(from.x, from.y));
    SendMessageA(window, WM_MOUSEMOVE, MK_LBUTTON, MAKELPARAM(to.x, to.y));
    SendMessageA(window, WM_LBUTTONUP, 0, MAKELPARAM(to.x, to.y));
  }
  void wheel(int steps) const {
    POINT middle = {client.right / 2, client.bottom / 2};
    ClientToScreen(window, &middle);
    SendMessageA(window, WM_MOUSEWHEEL, MAKEWPARAM(0, steps * WHEEL_DELTA), MAKELPARAM(middle.x, middle.y));
  }
  /// How many circles lie wholly in the window, as a pick from left to right over all of it tells.
  int seen() const {
    press('P');
    Sleep(100);
    drag({1, 1}, {20, 20});  // takes nothing: the number comes anew
    if (!comes([&] { return title() == "circles.dxf - qvview32"; })) return -1;
    drag({1, 1}, {client.right - 1, client.bottom - 1});
    comes([&] { return title() != "circles.dxf - qvview32"; });
    const std::string picked = title().substr(title().rfind('-'));  // in words of either language
    const std::size_t digits = picked.find_first_of("0123456789");
    return digits == std::string::npos ? 0 : std::atoi(picked.c_str() + digits);
  }

  const qvtest::TemporaryDirectory directory;
  PROCESS_INFORMATION process = {};
  HWND window = nullptr;
  RECT client = {};
};

TEST_F(ViewerTest, ZoomsPansAndComesBack) {
  EXPECT_EQ(seen(), 100) << "everything is fitted";
  wheel(3);
  const int enlarged = seen();
  EXPECT_GT(enlarged, 10);
  EXPECT_LT(enlarged, 60);
  press(VK_BACK);
  EXPECT_EQ(seen(), 100) << "a turn of the wheel is one step back";
  press('W');
  Sleep(100);
  drag({client.right / 2 - 100, client.bottom / 2 - 100}, {client.right / 2 + 100, client.bottom / 2 + 100});
  const int windowed = seen();
  EXPECT_GT(windowed, 0);
  EXPECT_LT(windowed, 30);
  press(VK_HOME);
  EXPECT_EQ(seen(), 100);
  press('H');
  Sleep(100);
  drag({10, 100}, {10 + client.right / 2, 100});
  const int panned = seen();
  EXPECT_GE(panned, 30);
  EXPECT_LE(panned, 70) << "half of it has left";
}

}  // namespace
