/// A program's own window with a drawing beside the list of its texts: embedded_view DRAWING.dxf [PICTURE.png]
///
/// A click on a text of the list shows it; with a second word the window is written as a picture, and the program ends.

#include <QtWidgets/QApplication>
#include <QtWidgets/QListWidget>
#include <QtWidgets/QSplitter>
#include <cstdio>

#include "qvtools.h"
#include "qvtools/platform/qt/qt_text.h"
#include "qvtools/widgets/qt/drawing_view.h"

int fail(const char* what, const char* why) {
  std::fprintf(stderr, "embedded_view: %s: %s\n", what, why);
  return 1;
}

int main(int argc, char** argv) {
  QApplication application(argc, argv);
  if (argc < 2) return fail("usage", "embedded_view DRAWING.dxf [PICTURE.png]");
  if (!G_ShapeFont.SetTxtFont(FONTS, "txt.shx")) return fail(FONTS, "there is no txt.shx");
  if (!G_ShapeFont.SetHzFont(FONTS, "hztxt.shx")) fail(FONTS, "without hztxt.shx Chinese texts stay blank");

  QSplitter window;
  auto* const list = new QListWidget(&window);
  auto* const view = new qv::DrawingView(&window);
  if (!view->Open(QString::fromLocal8Bit(argv[1]))) return fail(argv[1], "cannot be read");
  for (int i = 0; i < view->EntityCount(); ++i) {
    if (view->Entity(i).GetType() != ACAD_TYPE_TEXT) continue;
    QString words = qv::qt_text(static_cast<ACAD_TEXT&>(view->Entity(i)).m_szText);
    for (QChar& c : words)
      if (c.unicode() >> 8 == 0xF7) c = QChar(0x03A6);  // the shape fonts' own signs, of grades of steel
    auto* const row = new QListWidgetItem(words, list);
    row->setData(Qt::UserRole, i);
  }
  QObject::connect(list, &QListWidget::currentItemChanged, view,
                   [view](const QListWidgetItem* row) { view->ShowEntity(row->data(Qt::UserRole).toInt()); });
  QObject::connect(view, &qv::DrawingView::PicksChanged, &window,
                   [&window, view] { window.setWindowTitle(QStringLiteral("%1 picked").arg(view->Picks().size())); });
  view->Measure(qv::viewer::MeasureKind::Distance);
  window.resize(1000, 600);
  window.setSizes({200, 800});
  window.show();
  if (argc > 2) return window.grab().save(QString::fromLocal8Bit(argv[2])) ? 0 : fail(argv[2], "cannot be written");
  return QApplication::exec();
}
