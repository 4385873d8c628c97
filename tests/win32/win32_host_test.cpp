#include "qvtools/platform/win32/win32_host.h"

#include <gtest/gtest.h>

#include <string>
#include <thread>

#include "qvtools/platform/win32/win32_window.h"
#include "qvtools/services/captions.h"
#include "qvtools/services/services.h"

namespace {

using qv::Answer;
using qv::BoxKind;

std::wstring text_of(HWND window) {
  std::wstring text(static_cast<std::size_t>(SendMessageW(window, WM_GETTEXTLENGTH, 0, 0)) + 1, L'\0');
  const auto n = SendMessageW(window, WM_GETTEXT, text.size(), reinterpret_cast<LPARAM>(text.data()));
  text.resize(static_cast<std::size_t>(n));
  return text;
}

struct HostTest : testing::Test {
  HostTest() { qv::SetHost(&host); }
  ~HostTest() override { qv::SetHost(nullptr); }
  HWND edit() const { return GetDlgItem(host.MessageWindow(), qv::kMessageEditId); }

  /// Shows a box and presses one of its buttons, as soon as it is there; its caption and text are then known.
  Answer answered(const char* message, BoxKind kind, int button) {
    std::thread user([&] {
      HWND box = nullptr;
      for (int i = 0; i < 500 && !(box = FindWindowW(L"#32770", L"盖章")); ++i) Sleep(20);
      boxText = L"";
      for (HWND child = nullptr; (child = FindWindowExW(box, child, L"Static", nullptr));) boxText += text_of(child);
      hasCancel = GetDlgItem(box, IDCANCEL) && GetDlgItem(box, IDOK);
      SendMessageW(box, WM_COMMAND, static_cast<WPARAM>(button), 0);
    });
    const Answer answer = host.ShowBox(message, kind);
    user.join();
    return answer;
  }

  qv::Win32Host host{"\xB8\xC7\xD5\xC2", qv::captions::kCalculationMessages};
  std::wstring boxText;
  bool hasCancel = false;
};

TEST_F(HostTest, ShowsBoxesInChineseAndTellsTheAnswer) {
  EXPECT_EQ(answered("\xD6\xD0\xCE\xC4 \x82"
                     "8",
                     BoxKind::Stop, IDOK),
            Answer::Ok);
  EXPECT_EQ(boxText, L"中文 ?8");
  EXPECT_EQ(answered("go on?", BoxKind::Question, IDCANCEL), Answer::Cancel);
  EXPECT_TRUE(hasCancel);
  EXPECT_EQ(answered("go on?", BoxKind::Question, IDOK), Answer::Ok);
  EXPECT_EQ(answered("said", BoxKind::Information, IDOK), Answer::Ok);
  EXPECT_FALSE(hasCancel);
}

TEST_F(HostTest, KeepsReportsInTheMessageWindow) {
  host.CreateMessageWindow();
  ASSERT_TRUE(edit());
  EXPECT_FALSE(IsWindowVisible(host.MessageWindow()));
  EXPECT_EQ(text_of(host.MessageWindow()), L"计算信息");
  RECT units = {0, 400, 179, 76}, client;
  MapDialogRect(host.MessageWindow(), &units);
  GetClientRect(host.MessageWindow(), &client);
  EXPECT_EQ(client.right, units.right);
  EXPECT_EQ(client.bottom, units.bottom);

  tell_error(-8888, "TRUE");
  EXPECT_TRUE(IsWindowVisible(host.MessageWindow()));
  tell_error(0, "\xBF\xAA\xCA\xBC\n");
  tell_error(50, "two");
  EXPECT_EQ(text_of(edit()), L"开始\r\ntwo\r\n");
  EXPECT_EQ(host.MessageLineCount(), 3);
  for (int i = 3; i <= 401; ++i) tell_error1(1, "%d", i);
  // The oldest fifty lines go when the window holds more than four hundred.
  EXPECT_EQ(host.MessageLineCount(), 402 - 49);
  EXPECT_EQ(text_of(edit()).substr(0, 8), L"\r\n51\r\n52");
  tell_error(-9999, "");
  EXPECT_FALSE(IsWindowVisible(host.MessageWindow()));
}

TEST_F(HostTest, TheMessageWindowsTextFillsItAndClosingHidesIt) {
  host.ShowMessageWindow(true);
  SetWindowPos(host.MessageWindow(), nullptr, 10, 10, 400, 300, SWP_NOZORDER);
  RECT client, text;
  GetClientRect(host.MessageWindow(), &client);
  GetWindowRect(edit(), &text);
  MapWindowPoints(nullptr, host.MessageWindow(), reinterpret_cast<POINT*>(&text), 2);
  EXPECT_TRUE(EqualRect(&client, &text));
  SendMessageW(host.MessageWindow(), WM_CLOSE, 0, 0);
  EXPECT_TRUE(IsWindow(host.MessageWindow()));
  EXPECT_FALSE(IsWindowVisible(host.MessageWindow()));
}

int g_posted = 0;

LRESULT CALLBACK counting(HWND window, UINT message, WPARAM w, LPARAM l) {
  if (message == WM_APP + 7) g_posted += w == 0 && l == 0;
  return DefWindowProcW(window, message, w, l);
}

struct ViewWindow {
  ViewWindow() {
    WNDCLASSW kind = {};
    kind.lpfnWndProc = counting;
    kind.hInstance = GetModuleHandleW(nullptr);
    kind.lpszClassName = L"view";
    RegisterClassW(&kind);
    handle =
        CreateWindowW(L"view", L"", WS_POPUP | WS_VISIBLE, 20, 30, 120, 90, nullptr, nullptr, kind.hInstance, nullptr);
  }
  ~ViewWindow() { DestroyWindow(handle); }
  HWND handle;
};

TEST_F(HostTest, DrainsWaitingMessagesButNotTheEnd) {
  const ViewWindow view;
  qv::Win32Window window(view.handle);
  g_posted = 0;
  window.Post(WM_APP + 7);
  EXPECT_EQ(g_posted, 0);
  host.DrainMessages();
  EXPECT_EQ(g_posted, 1);
  PostQuitMessage(3);
  host.DrainMessages();
  MSG message;
  ASSERT_TRUE(PeekMessageW(&message, nullptr, 0, 0, PM_REMOVE));
  EXPECT_EQ(message.message, static_cast<UINT>(WM_QUIT));
  EXPECT_EQ(message.wParam, 3u);
}

TEST_F(HostTest, WindowsGiveTheirClientArea) {
  const ViewWindow view;
  qv::Win32Window window(view.handle);
  EXPECT_EQ(window.ClientRect(), CRect(0, 0, 120, 90));
  host.DrainMessages();
  UpdateWindow(view.handle);
  CDC& dc = window.ClientContext();
  EXPECT_EQ(dc.GetResolution(), host.ScreenSize());
  EXPECT_FALSE(dc.IsPrinting() || dc.IsMetafile());
  dc.SetPixel(10, 10, 0x0000FF);
  const HDC again = GetDC(view.handle);
  EXPECT_EQ(GetPixel(again, 10, 10), 0x0000FFu);
  ReleaseDC(view.handle, again);
  window.ReleaseClientContext();
  ValidateRect(view.handle, nullptr);
  window.Invalidate(true);
  RECT dirty = {};
  EXPECT_TRUE(GetUpdateRect(view.handle, &dirty, FALSE));
  EXPECT_EQ(dirty.right, 120);
}

}  // namespace
