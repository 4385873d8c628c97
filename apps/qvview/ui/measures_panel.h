#pragma once

#include <QtWidgets/QPlainTextEdit>

#include "model/measuring.h"
#include "ui/words.h"

namespace qvview {

/// What was measured, a line each; it can be selected and copied.
class MeasuresPanel : public QPlainTextEdit {
 public:
  explicit MeasuresPanel(const Words& words) : words_(words) {
    setReadOnly(true);
    setLineWrapMode(WidgetWidth);
    setTabChangesFocus(true);
  }
  void refresh(const Measuring& measuring) {
    QString text = QString::fromStdString(measuring.words(words_.language()));
    const std::string present = measuring.present().words(words_.language());
    if (measuring.present().points.size() > 1) text += QStringLiteral("… ") + QString::fromStdString(present);
    setPlainText(text);
    moveCursor(QTextCursor::End);
    moveCursor(QTextCursor::StartOfLine);
  }

 private:
  const Words& words_;
};

}  // namespace qvview
