#include "qvtools/widgets/viewer/show_dxf.h"

#include <QtCore/QEventLoop>
#include <QtCore/QFile>
#include <QtCore/QFileInfo>
#include <QtWidgets/QApplication>
#include <memory>

#include "qvtools/services/messages.h"
#include "qvtools/widgets/qt/drawing_view.h"

namespace {

/// The program's application, or one of the library's own; null without a screen to show anything on.
QApplication* application() {
  if (QCoreApplication::instance()) return qobject_cast<QApplication*>(QCoreApplication::instance());
#ifdef Q_OS_UNIX
  // Qt ends a program that has no display.
  const bool named = qEnvironmentVariableIsSet("QT_QPA_PLATFORM");
  if (!named && qEnvironmentVariableIsEmpty("DISPLAY") && qEnvironmentVariableIsEmpty("WAYLAND_DISPLAY"))
    return nullptr;
#endif
  static int count = 1;
  static char name[] = "qvtools";
  static char* words[] = {name, nullptr};
  static QApplication own(count, words);
  return &own;
}

/// A window that shows the file; null, after a report, when it cannot.
std::unique_ptr<qv::DrawingView> window_of(const char* file) {
  if (!application()) {
    tell_error(301, "There is no screen to show a drawing on !");
    return nullptr;
  }
  auto view = std::make_unique<qv::DrawingView>();
  const QString path = QFile::decodeName(file ? file : "");
  if (!view->Open(path)) {
    tell_error(301, "The drawing cannot be read !");
    return nullptr;
  }
  constexpr QSize kSize(1000, 700);
  view->setWindowTitle(QFileInfo(path).fileName());
  view->resize(kSize);
  view->setAttribute(Qt::WA_QuitOnClose, false);
  view->setAttribute(Qt::WA_DeleteOnClose);
  view->show();
  return view;
}

}  // namespace

int Show_DXF(const char* file) {
  std::unique_ptr<qv::DrawingView> view = window_of(file);
  if (!view) return 0;
  QEventLoop untilClosed;
  QObject::connect(view.release(), &QObject::destroyed, &untilClosed, &QEventLoop::quit);
  untilClosed.exec();
  return 1;
}

int Show_DXF_Modaless(const char* file) {
  std::unique_ptr<qv::DrawingView> view = window_of(file);
  return view.release() != nullptr;
}
