#include "qvtools/services/messages.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <fstream>

#include "qvtools/system/filesystem.h"
#include "support/recording_host.h"
#include "support/temporary_directory.h"

namespace {

using qv::BoxKind;
using qvtest::RecordingHost;

TEST(TellError, ShowsTheBoxOfItsRangeAndSetsTheCode) {
  const struct {
    int code;
    int boxes;
    BoxKind kind;
    int errorCode;
    bool windowShown;
  } cases[] = {
      {100, 0, {}, 0, true},
      {101, 1, BoxKind::Plain, 101, false},
      {200, 1, BoxKind::Plain, 200, false},
      {201, 1, BoxKind::Information, 0, false},
      {300, 1, BoxKind::Information, 0, false},
      {301, 1, BoxKind::Stop, 301, false},
      {400, 1, BoxKind::Stop, 400, false},
      {401, 0, {}, 0, false},
      {999, 0, {}, 0, false},
      {1000, 1, BoxKind::Question, 0, true},
      {2000, 1, BoxKind::Question, 0, true},
      {2001, 0, {}, 0, true},
      {-3, 0, {}, 0, true},
  };
  for (const auto& c : cases) {
    RecordingHost host;
    tell_error(c.code, "text");
    ASSERT_EQ(host.boxes.size(), static_cast<std::size_t>(c.boxes)) << c.code;
    if (c.boxes) {
      EXPECT_EQ(host.boxes[0], std::pair(c.kind, std::string("text"))) << c.code;
    }
    EXPECT_EQ(QV_ERROR_CODE, c.errorCode) << c.code;
    EXPECT_EQ(host.MessageWindowVisible(), c.windowShown) << c.code;
    EXPECT_EQ(host.MessageText(), c.code == 100 ? "text\r\n" : "") << c.code;
    EXPECT_EQ(host.drained, 1) << c.code;
  }
}

TEST(TellError, CancelSetsTheCodeToOneAndNothingElseResetsIt) {
  RecordingHost host;
  host.answer = qv::Answer::Cancel;
  tell_error(1500, "go on?");
  EXPECT_EQ(QV_ERROR_CODE, 1);
  tell_error(250, "note");
  tell_error(5, "line");
  EXPECT_EQ(QV_ERROR_CODE, 1);
}

TEST(TellError, SwitchesOutputByTheExactWord) {
  RecordingHost host;
  tell_error(-8888, "true");
  EXPECT_TRUE(host.MessageWindowVisible());
  tell_error(-9999, "");
  EXPECT_FALSE(host.MessageWindowVisible());
  tell_error(50, "unseen");
  EXPECT_TRUE(host.MessageWindowVisible());
  EXPECT_EQ(host.MessageText(), "");
  tell_error(-8888, "TRUE");
  tell_error(-1, "seen\n");
  tell_error(-2, "");
  tell_error(0, "\n");
  EXPECT_EQ(host.MessageText(), "seen\r\n\r\n");
}

TEST(TellError, DropsTheOldestLinesBeyondFourHundred) {
  RecordingHost host;
  for (int i = 0; i < 400; ++i) tell_error(1, std::to_string(i).c_str());
  EXPECT_EQ(host.MessageLineCount(), 401);
  tell_error(1, "last");
  EXPECT_EQ(host.MessageText().substr(0, 6), "\r\n50\r\n");
  EXPECT_EQ(host.MessageLineCount(), 401 - 50 + 1 + 1);
}

TEST(TellError, DoesNotDispatchWhileItDispatches) {
  struct Reentrant : RecordingHost {
    void DrainMessages() override {
      RecordingHost::DrainMessages();
      if (drained < 5) tell_error(1, "from a window");
    }
  } host;
  tell_error(1, "outer");
  EXPECT_EQ(host.drained, 1);
  EXPECT_EQ(host.MessageText(), "from a window\r\nouter\r\n");
}

TEST(TellError1, CutsAt599BytesBetweenCharacters) {
  RecordingHost host;
  tell_error1(201, "%s%d", std::string(598, 'x').c_str(), 123);
  EXPECT_EQ(host.box(), std::string(598, 'x') + "1");
  host.boxes.clear();
  tell_error1(201, "%s\xD6\xD0", std::string(598, 'x').c_str());
  EXPECT_EQ(host.box(), std::string(598, 'x'));
}

TEST(TellError2, StartsAndContinuesTheLog) {
  RecordingHost host;
  const qvtest::TemporaryDirectory directory;
#if defined(_WIN32)
  // The place is fixed, and not everybody may write there.
  if (!std::ofstream(qv::scratch_path("wx_temp.txt"))) GTEST_SKIP() << "the root of drive C is closed to this user";
#else
  const char* const before = std::getenv("TMPDIR");
  const std::string kept = before ? before : "";
  setenv("TMPDIR", directory.prefix().c_str(), 1);
#endif
  const std::string log = qv::scratch_path("wx_temp.txt");
  tell_error2(7, "lost\n");
  tell_error2(0, "start %d\n", 1);
  tell_error2(12, "next\n");
  tell_error2(-12345, "raw");
#if !defined(_WIN32)
  before ? setenv("TMPDIR", kept.c_str(), 1) : unsetenv("TMPDIR");
#endif
  std::ifstream file(log, std::ios::binary);
  EXPECT_EQ(std::string(std::istreambuf_iterator<char>(file), {}), "[   0]  start 1\r\n[  12]  next\r\n[-12345]  raw");
  EXPECT_TRUE(host.boxes.empty());
}

}  // namespace
