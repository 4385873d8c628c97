#include <gmock/gmock.h>

#include <QtCore/QFile>
#include <QtCore/QMimeData>
#include <QtCore/QSettings>
#include <QtGui/QAction>
#include <QtGui/QDropEvent>
#include <QtWidgets/QApplication>
#include <QtWidgets/QLabel>
#include <QtWidgets/QLineEdit>
#include <QtWidgets/QMenu>
#include <QtWidgets/QMenuBar>
#include <QtWidgets/QPushButton>
#include <QtWidgets/QTabWidget>
#include <QtWidgets/QTreeWidget>

#include "common/fonts.h"
#include "qvtools/widgets/qt/drawing_view.h"
#include "qvtools/widgets/viewer/show_dxf.h"
#include "support/recording_host.h"
#include "support/temporary_directory.h"
#include "ui/main_window.h"

using qvview::Canvas;
using qvview::Language;
using qvview::MainWindow;

namespace {

class MainWindowTest : public testing::Test {
 protected:
  MainWindowTest() {
    QSettings::setPath(QSettings::NativeFormat, QSettings::UserScope, QString::fromStdString(directory_.prefix()));
    DXF dxf;
    dxf.New_MemDxf();
    dxf.Add_Layer("A", 1, "CONTINUOUS");
    dxf.Write_Line(0, 0, 0, 100, 100, 0, "A", "BYLAYER", "BYLAYER");
    dxf.Write_Line(0, 100, 0, 100, 0, 0, "0", "BYLAYER", "BYLAYER");
    path_ = QString::fromStdString(directory_.path("two.dxf"));
    dxf.Write_MemDxf_To_File(path_.toStdString().c_str());
    window_.emplace(Language::English, qvapps::FontFiles());
    window_->show();
  }

  QAction* action(const QString& caption) const {
    for (QAction* const action : window_->findChildren<QAction*>())
      if (action->text() == caption) return action;
    return nullptr;
  }
  Canvas& canvas() const { return window_->canvas(); }
  /// How many pixels of the drawing have a colour.
  int pixels(QRgb colour) const {
    canvas().View().set_patience(std::chrono::minutes(1));  // the sharp picture, however busy the machine is
    const QImage image = canvas().grab().toImage();
    int n = 0;
    for (int y = 0; y < image.height(); ++y)
      for (int x = 0; x < image.width(); ++x) n += (image.pixel(x, y) & 0xFFFFFF) == colour;
    return n;
  }

  qvtest::TemporaryDirectory directory_;
  QString path_;
  std::optional<MainWindow> window_;
};

/// Its texts are drawn in the fonts that it names, where the user's folder has them; others are told.
TEST_F(MainWindowTest, ADrawingIsDrawnInItsOwnFonts) {
  const auto write = [&](const char* font) {
    DXF dxf;
    dxf.New_MemDxf();
    dxf.Add_STyle("OWN", font, "");
    dxf.Write_Text(0, 0, 0, 10, 0, "WIDE", "OWN", "0", "BYLAYER", "BYLAYER");
    const std::string path = directory_.path(std::to_string(std::strlen(font)) + ".dxf");
    dxf.Write_MemDxf_To_File(path.c_str());
    return QString::fromStdString(path);
  };
  const auto told = [&] {
    QString all;
    for (const QLabel* const label : window_->findChildren<QLabel*>()) all += label->toolTip();
    return all;
  };
  QFile::copy(QV_FONTS "hztxt.shx", QString::fromStdString(directory_.path("unused.shx")));
  QFile::copy(QV_FONTS "txt.shx", QString::fromStdString(directory_.path("Own.SHX")));
  qputenv("QVTOOLS_FONTS", QByteArray::fromStdString(directory_.prefix()));
  ASSERT_EQ(G_ShapeFont.m_pTxtData, nullptr);
  window_->open(write("C:\\FONTS\\own"));
  EXPECT_NE(G_ShapeFont.m_pTxtData, nullptr);
  EXPECT_EQ(told(), "");
  window_->open(write("absent.shx"));
  EXPECT_EQ(G_ShapeFont.m_pTxtData, nullptr) << "the usual ones, of which there are none here";
  EXPECT_EQ(told(), "Texts are drawn in other fonts than absent.shx");
  window_->findChild<QTabWidget*>()->setCurrentIndex(0);
  EXPECT_NE(G_ShapeFont.m_pTxtData, nullptr) << "each tab has its own";
  EXPECT_EQ(told(), "");
  qunsetenv("QVTOOLS_FONTS");
}

TEST_F(MainWindowTest, EveryCaptionChangesWithTheLanguage) {
  const auto captions = [&] {
    QStringList texts;
    for (const QAction* const a : window_->findChildren<QAction*>()) texts << a->text();
    for (const QMenu* const menu : window_->findChildren<QMenu*>()) texts << menu->title();
    for (const QDockWidget* const dock : window_->findChildren<QDockWidget*>()) texts << dock->windowTitle();
    for (const QPushButton* const button : window_->findChildren<QPushButton*>()) texts << button->text();
    texts << window_->findChild<QTreeWidget*>()->headerItem()->text(0);
    return texts;
  };
  const QStringList english = captions();
  action(QString::fromUtf8("中文"))->trigger();
  const QStringList chinese = captions();
  ASSERT_EQ(english.size(), chinese.size());
  EXPECT_GT(english.size(), 60);
  for (int i = 0; i < english.size(); ++i) {
    if (english[i].isEmpty() || english[i] == "English" || english[i] == QString::fromUtf8("中文")) continue;
    EXPECT_NE(english[i], chinese[i]) << english[i].toStdString();
  }
  EXPECT_EQ(QSettings().value("language"), "zh");
}

TEST_F(MainWindowTest, ADroppedDrawingOpensAndIsRememberedAndABadOneIsNot) {
  EXPECT_FALSE(action("Everything")->isEnabled());
  QMimeData files;
  files.setUrls({QUrl::fromLocalFile(path_)});
  QDragEnterEvent enter(QPoint(100, 100), Qt::CopyAction, &files, Qt::LeftButton, Qt::NoModifier);
  QApplication::sendEvent(&*window_, &enter);
  QDropEvent drop(QPointF(100, 100), Qt::CopyAction, &files, Qt::LeftButton, Qt::NoModifier);
  QApplication::sendEvent(&*window_, &drop);
  QApplication::processEvents();
  EXPECT_EQ(window_->windowTitle(), "two.dxf - qvview");
  EXPECT_TRUE(action("Everything")->isEnabled());
  EXPECT_FALSE(action("Previous view")->isEnabled());
  EXPECT_EQ(QSettings().value("recent").toStringList(), QStringList(path_));
  EXPECT_GT(pixels(0xFF0000), 100);
  QMetaObject::invokeMethod(
      &*window_, [] { QApplication::activeModalWidget()->close(); }, Qt::QueuedConnection);
  window_->open(path_ + "x");
  EXPECT_EQ(window_->windowTitle(), "two.dxf - qvview");
  EXPECT_EQ(QSettings().value("recent").toStringList(), QStringList(path_));
}

TEST_F(MainWindowTest, LayersAreSwitchedAndTheBackgroundTurnsDark) {
  window_->open(path_);
  const int red = pixels(0xFF0000);
  const int black = pixels(0x000000);
  ASSERT_TRUE(red > 100 && black > 100);
  auto* const layers = window_->findChild<QTreeWidget*>();
  layers->topLevelItem(1)->setCheckState(0, Qt::Unchecked);
  EXPECT_EQ(pixels(0xFF0000), 0);
  action("Dark background")->trigger();
  EXPECT_NEAR(pixels(0xFFFFFF), black, 3);
  for (QPushButton* const button : window_->findChildren<QPushButton*>())
    if (button->text() == "Invert") button->click();
  EXPECT_NEAR(pixels(0xFF0000), red, 3);
  EXPECT_EQ(pixels(0xFFFFFF), 0);
}

TEST_F(MainWindowTest, TextsAreFoundTwoDrawingsComparedAndTabsRemembered) {
  DXF dxf;
  dxf.New_MemDxf();
  dxf.Write_Line(0, 100, 0, 100, 0, 0, "0", "BYLAYER", "BYLAYER");
  dxf.Write_Text(10, 10, 0, 1, 0, "KL-7", "STANDARD", "0", "BYLAYER", "BYLAYER");
  const QString other = QString::fromStdString(directory_.path("other.dxf"));
  dxf.Write_MemDxf_To_File(other.toStdString().c_str());
  window_->open(path_);
  window_->open(other);
  EXPECT_EQ(window_->findChild<QTabWidget*>()->count(), 2);
  action("Find text…")->trigger();
  auto* const find = window_->findChild<QLineEdit*>("find");
  find->setText("kl");
  EXPECT_EQ(window_->findChild<QTreeWidget*>("found")->topLevelItemCount(), 1);
  const float before = canvas().View().CurrentView().GetScale();
  emit find->returnPressed();
  EXPECT_GT(canvas().View().CurrentView().GetScale(), before);
  const CFRect seen = canvas().View().seen();
  window_->compare(path_, other);
  EXPECT_EQ(window_->findChild<QTabWidget*>()->count(), 3);
  auto* const places = window_->findChild<QTreeWidget*>("places");
  EXPECT_GT(places->topLevelItemCount(), 0);
  EXPECT_GT(pixels(0xFF0000), 20) << "what only the old one has is red";
  action("Next place")->trigger();
  EXPECT_TRUE(places->currentItem());
  action("Swap old and new")->trigger();
  EXPECT_EQ(window_->windowTitle(), "other.dxf ↔ two.dxf - qvview");
  action("Close the drawing")->trigger();
  action("Close the drawing")->trigger();
  EXPECT_EQ(window_->findChild<QTabWidget*>()->count(), 1);
  window_->open(other);
  EXPECT_NEAR(canvas().View().seen().x1, seen.x1, 0.5) << "it is shown as it was left";
}

/// What host programs call: a window at once, or until it is closed.
TEST_F(MainWindowTest, OneCallShowsADrawing) {
  const std::string path = path_.toStdString();
  const auto shown = [] {
    for (QWidget* const widget : QApplication::topLevelWidgets())
      if (auto* const view = qobject_cast<qv::DrawingView*>(widget); view && view->isVisible()) return view;
    return static_cast<qv::DrawingView*>(nullptr);
  };
  ASSERT_EQ(Show_DXF_Modaless(path.c_str()), 1);
  qv::DrawingView* const view = shown();
  ASSERT_TRUE(view);
  EXPECT_EQ(view->EntityCount(), 2);
  EXPECT_EQ(view->Layers(), QStringList({"0", "A"}));
  view->SetLayerOn("A", false);
  EXPECT_FALSE(view->IsLayerOn("A"));
  int changes = 0;
  QObject::connect(view, &qv::DrawingView::PicksChanged, [&] { ++changes; });
  view->View().select_all();
  EXPECT_EQ(changes, 1);
  EXPECT_EQ(view->Picks().size(), 1U);
  view->close();
  QApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
  EXPECT_FALSE(shown());
  QMetaObject::invokeMethod(
      &*window_, [&] { shown()->close(); }, Qt::QueuedConnection);
  EXPECT_EQ(Show_DXF(path.c_str()), 1);
  qvtest::RecordingHost host;
  EXPECT_EQ(Show_DXF((path + "x").c_str()) + Show_DXF_Modaless(nullptr), 0);
}

TEST(ViewerFonts, AFileThatIsNoFontChangesNothing) {
  const qvtest::TemporaryDirectory directory;
  const std::string bad = directory.write("bad.shx", "no font");
  EXPECT_TRUE(qvapps::change_fonts({QV_FONTS "txt.shx", ""}));
  const float width = G_ShapeFont.GetTxtWidth("KL-1", 10, 1);
  EXPECT_GT(width, 0);
  EXPECT_FALSE(qvapps::change_fonts({QV_FONTS "txt.shx", bad}));
  EXPECT_FALSE(qvapps::change_fonts({bad, ""}));
  EXPECT_EQ(G_ShapeFont.GetTxtWidth("KL-1", 10, 1), width);
  EXPECT_TRUE(qvapps::change_fonts({}));
  EXPECT_EQ(G_ShapeFont.GetTxtWidth("KL-1", 10, 1), 0);
}

}  // namespace
