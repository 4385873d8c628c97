#include "qvtools/platform/console/console_host.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <optional>

#if defined(_WIN32)
#include <windows.h>
#endif

namespace {

TEST(ConsoleHost, KeepsTheMessageWindowAsText) {
  qv::ConsoleHost host;
  EXPECT_EQ(host.MessageLineCount(), 1);
  host.SelectMessage(9999, 9999);
  host.ReplaceMessageSelection("one\r\ntwo\r\n");
  EXPECT_EQ(host.MessageLineCount(), 3);
  EXPECT_EQ(host.MessageLineStart(1), 5);
  EXPECT_EQ(host.MessageLineStart(3), -1);
  host.SelectMessage(0, host.MessageLineStart(1));
  host.ReplaceMessageSelection("\r\n");
  EXPECT_EQ(host.MessageText(), "\r\ntwo\r\n");
}

TEST(ConsoleHost, IsTheHostWhenNoneIsInstalled) {
  qv::ConsoleHost own({800, 600});
  qv::SetHost(&own);
  EXPECT_EQ(&qv::CurrentHost(), &own);
  EXPECT_EQ(qv::CurrentHost().ScreenSize(), CSize(800, 600));
  qv::SetHost(nullptr);
  EXPECT_EQ(qv::CurrentHost().ScreenSize(), CSize(1920, 1080));
}

TEST(ConsoleHost, PrintsBoxesInTheTerminalsEncoding) {
#if defined(_WIN32)
  const UINT before = GetConsoleOutputCP();
  SetConsoleOutputCP(CP_UTF8);
#else
  const char* const before = std::getenv("LC_ALL");
  const std::optional<std::string> kept = before ? std::optional<std::string>(before) : std::nullopt;
  setenv("LC_ALL", "C.UTF-8", 1);
#endif
  testing::internal::CaptureStderr();
  qv::ConsoleHost host;
  EXPECT_EQ(host.ShowBox("\xD6\xD0\xCE\xC4 \x82"
                         "8",
                         qv::BoxKind::Stop),
            qv::Answer::Ok);
  host.ShowBox("plain", qv::BoxKind::Plain);
  EXPECT_EQ(testing::internal::GetCapturedStderr(), "error: 中文 ?8\nplain\n");
#if defined(_WIN32)
  SetConsoleOutputCP(before);
#else
  kept ? setenv("LC_ALL", kept->c_str(), 1) : unsetenv("LC_ALL");
#endif
}

}  // namespace
