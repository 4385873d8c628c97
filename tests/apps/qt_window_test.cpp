#include "qvtools/platform/qt/qt_window.h"

#include <gmock/gmock.h>

#include <QtCore/QCoreApplication>
#include <QtGui/QImage>
#include <QtWidgets/QApplication>

#include "qvtools/platform/qt/qt_host.h"

using testing::ElementsAre;
using testing::IsEmpty;

namespace {

/// A window that counts what reaches it and paints one line.
class LineWindow : public qv::QtWindow {
 public:
  LineWindow() { resize(200, 100); }
  QRgb at(int x, int y) { return grab().toImage().pixel(x, y) & 0xFFFFFF; }
  std::vector<unsigned int> messages;
  int paints = 0;

 protected:
  void OnPaint(CDC& dc) override {
    ++paints;
    const CPen red{qv::PenStyle::Solid, 1, qv::rgb(255, 0, 0)};
    const CPen* const before = dc.SelectObject(&red);
    dc.MoveTo(0, 50);
    dc.LineTo(200, 50);
    dc.SelectObject(before);
  }
  void OnMessage(unsigned int message) override { messages.push_back(message); }
};

TEST(QtWindow, ShowsItsBitmapAndWhatIsDrawnOnIt) {
  LineWindow window;
  EXPECT_EQ(window.ClientRect(), CRect(0, 0, 200, 100));
  EXPECT_EQ(window.at(10, 50), 0xFF0000U);
  EXPECT_EQ(window.at(10, 51), 0xFFFFFFU);
  for (const QRgb expected : {0x000000U, 0xFFFFFFU}) {  // a line that inverts, and is taken away again
    CDC& dc = window.ClientContext();
    dc.SetROP2(qv::RasterOp::Not);
    dc.MoveTo(0, 20);
    dc.LineTo(100, 20);
    dc.SetROP2(qv::RasterOp::CopyPen);
    window.ReleaseClientContext();
    EXPECT_EQ(window.at(10, 20), expected);
  }
  EXPECT_EQ(window.paints, 1);
  window.SetBackground(0x000000);
  window.Invalidate(true);
  window.Invalidate(false);
  EXPECT_EQ(window.at(10, 51), 0x000000U);
  EXPECT_EQ(window.paints, 2) << "asked twice, painted once";
  window.ShowShifted({0, 10});
  EXPECT_EQ(window.at(10, 60), 0xFF0000U);
  EXPECT_EQ(window.paints, 2);
  window.resize(300, 120);
  EXPECT_EQ(window.at(250, 51), 0x000000U);
  EXPECT_EQ(window.Picture().Width(), 300);
}

TEST(QtWindow, MessagesWaitForTheirTurn) {
  LineWindow window;
  window.Post(7);
  window.Post(9);
  EXPECT_THAT(window.messages, IsEmpty());
  QCoreApplication::processEvents();
  EXPECT_THAT(window.messages, ElementsAre(7U, 9U));
}

TEST(QtHost, TheMessageWindowCountsGbkBytes) {
  qv::QtHost host;
  host.CreateMessageWindow();
  EXPECT_EQ(host.MessageWindow()->windowTitle(), QString::fromUtf8("计算信息"));
  EXPECT_FALSE(host.MessageWindow()->isVisible());
  host.ShowMessageWindow(true);
  EXPECT_TRUE(host.MessageWindow()->isVisible());
  const auto shown = [&] { return host.MessageWindow()->findChild<QPlainTextEdit*>()->toPlainText(); };
  host.SelectMessage(9999, 9999);
  host.ReplaceMessageSelection("\xC1\xBA KL-1");  // a beam
  host.ReplaceMessageSelection("\r\n");
  host.ReplaceMessageSelection("2\r\n");
  EXPECT_EQ(host.MessageLineCount(), 3);
  EXPECT_EQ(host.MessageLineStart(1), 9);
  EXPECT_EQ(shown(), QString::fromUtf8("梁 KL-1\n2\n"));
  host.SelectMessage(0, host.MessageLineStart(1));
  host.ReplaceMessageSelection("\r\n");
  EXPECT_EQ(shown(), QString::fromUtf8("\n2\n"));
  EXPECT_EQ(host.Messages(), "\r\n2\r\n");
}

}  // namespace

int main(int argc, char** argv) {
  // Windows without a screen.
  qputenv("QT_QPA_PLATFORM", "offscreen");
  const QApplication application(argc, argv);
  testing::InitGoogleTest(&argc, argv);
  return RUN_ALL_TESTS();
}
