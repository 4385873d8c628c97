#include "qvtools/platform/qt/qt_host.h"

#include <QtCore/QCoreApplication>
#include <QtCore/QThread>
#include <QtGui/QGuiApplication>
#include <QtGui/QScreen>
#include <QtGui/QTextCursor>
#include <QtWidgets/QApplication>
#include <QtWidgets/QMessageBox>
#include <QtWidgets/QVBoxLayout>
#include <algorithm>
#include <cmath>

#include "qvtools/platform/qt/qt_text.h"

namespace qv {

namespace {

/// Place and size of the message window in dialog units: quarters of a character's width, eighths of its height.
constexpr int kLeft = 0;
constexpr int kTop = 400;
constexpr int kWidth = 179;
constexpr int kHeight = 76;
constexpr int kUnitsAcross = 4;
constexpr int kUnitsDown = 8;

QMessageBox::Icon icon_of(BoxKind kind) {
  static constexpr QMessageBox::Icon kIcons[] = {QMessageBox::NoIcon, QMessageBox::Information, QMessageBox::Critical,
                                                 QMessageBox::Question};
  return kIcons[static_cast<int>(kind)];
}

/// The text as the edit control takes it.
QString to_lines(const char* text) {
  return qt_text(text).replace(QLatin1String("\r\n"), QLatin1String("\n"));
}

void place(QDialog& window) {
  const QFontMetrics metrics = window.fontMetrics();
  const auto across = [&](int units) { return units * metrics.averageCharWidth() / kUnitsAcross; };
  const auto down = [&](int units) { return units * metrics.height() / kUnitsDown; };
  window.resize(across(kWidth), down(kHeight));
  const QScreen* const screen = QGuiApplication::primaryScreen();
  const QRect area = screen ? screen->availableGeometry() : QRect();
  const int lowest = std::max(area.top(), area.bottom() - window.height());
  window.move(area.left() + across(kLeft), std::min(area.top() + down(kTop), lowest));
}

}  // namespace

QtHost::QtHost() {
  QtHost::ScreenSize();  // for other threads
}
QtHost::~QtHost() = default;

Answer QtHost::ShowBox(const char* text, BoxKind kind) {
  QMessageBox box(QApplication::activeWindow());
  box.setIcon(icon_of(kind));
  box.setWindowTitle(QGuiApplication::applicationDisplayName());
  box.setTextFormat(Qt::PlainText);
  box.setText(qt_text(text));
  box.setStandardButtons(kind == BoxKind::Question ? QMessageBox::Ok | QMessageBox::Cancel : QMessageBox::Ok);
  return box.exec() == QMessageBox::Cancel ? Answer::Cancel : Answer::Ok;
}

void QtHost::CreateMessageWindow() {
  if (window_) return;
  window_ = std::make_unique<QDialog>();
  window_->setWindowTitle(QString::fromUtf8("计算信息"));
  // The program does not wait for this window to be closed.
  window_->setAttribute(Qt::WA_QuitOnClose, false);
  auto* const layout = new QVBoxLayout(window_.get());
  layout->setContentsMargins(0, 0, 0, 0);
  edit_ = new QPlainTextEdit;
  edit_->setReadOnly(true);
  layout->addWidget(edit_);
  edit_->setPlainText(to_lines(messages_.Bytes().c_str()));
  place(*window_);
}

void QtHost::ShowMessageWindow(bool visible) {
  if (window_) window_->setVisible(visible);
}

void QtHost::ReplaceMessageSelection(const char* text) {
  const bool appends = messages_.AppendsNext();
  messages_.Replace(text);
  if (!edit_) return;
  if (!appends) return edit_->setPlainText(to_lines(messages_.Bytes().c_str()));
  edit_->moveCursor(QTextCursor::End);
  edit_->insertPlainText(to_lines(text));
  edit_->ensureCursorVisible();
}

void QtHost::DrainMessages() {
  QCoreApplication::processEvents();
}

CSize QtHost::ScreenSize() const {
  const bool own = QCoreApplication::instance() && QThread::currentThread() == QCoreApplication::instance()->thread();
  if (const QScreen* const screen = own ? QGuiApplication::primaryScreen() : nullptr) {
    const QSizeF size = QSizeF(screen->virtualSize()) * screen->devicePixelRatio();
    screen_ = {static_cast<int>(std::ceil(size.width())), static_cast<int>(std::ceil(size.height()))};
  }
  const Screen known = screen_;
  return {known.width, known.height};
}

}  // namespace qv
