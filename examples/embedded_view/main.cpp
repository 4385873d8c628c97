/// A program's own window with a drawing beside the list of its texts: embedded_view DRAWING.dxf [PICTURE.png]
///
/// A click on a text of the list shows it; with a second word the window is written as a picture, and the program ends.

#include <QtWidgets/QApplication>
#include <QtWidgets/QListWidget>
#include <QtWidgets/QSplitter>

#include "qvtools.h"
#include "qvtools/platform/qt/qt_text.h"
#include "qvtools/widgets/qt/drawing_view.h"

int main(int argc, char** argv) {
  QApplication application(argc, argv);
  if (argc < 2) return 2;
  G_ShapeFont.SetTxtFont(FONTS, "txt.shx");
  G_ShapeFont.SetHzFont(FONTS, "hztxt.shx");

  QSplitter window;
  auto* const list = new QListWidget(&window);
  auto* const view = new qv::DrawingView(&window);
  if (!view->Open(QString::fromLocal8Bit(argv[1]))) return 1;
  for (int i = 0; i < view->EntityCount(); ++i) {
    if (view->Entity(i).GetType() != ACAD_TYPE_TEXT) continue;
    auto* const row = new QListWidgetItem(qv::qt_text(static_cast<ACAD_TEXT&>(view->Entity(i)).m_szText), list);
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
  if (argc > 2) return window.grab().save(QString::fromLocal8Bit(argv[2])) ? 0 : 1;
  return QApplication::exec();
}
