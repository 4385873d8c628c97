#pragma once

/// The user interface of programs with Qt widgets: message boxes, and the message window as a modeless dialog of one
/// edit control. The application object must live as long as the host.

#include <QtWidgets/QDialog>
#include <QtWidgets/QPlainTextEdit>
#include <atomic>
#include <memory>

#include "qvtools/platform/host.h"
#include "qvtools/text/message_text.h"

namespace qv {

/// Message boxes and the message window in Qt.
class QtHost : public Host {
 public:
  QtHost();
  ~QtHost() override;

  Answer ShowBox(const char* text, BoxKind kind) override;
  void CreateMessageWindow() override;
  void ShowMessageWindow(bool visible) override;
  int MessageLineCount() const override { return messages_.LineCount(); }
  int MessageLineStart(int line) const override { return messages_.LineStart(line); }
  void SelectMessage(int from, int to) override { messages_.Select(from, to); }
  void ReplaceMessageSelection(const char* text) override;
  void DrainMessages() override;
  /// The size of the whole desktop in pixels, so that windows on any of its screens are drawn to their ends. Threads
  /// other than the application's get what it was when the application's asked last.
  CSize ScreenSize() const override;

  /// What the message window holds, in GBK.
  const std::string& Messages() const { return messages_.Bytes(); }
  /// The dialog; null before it is created.
  QDialog* MessageWindow() const { return window_.get(); }

 private:
  struct Screen {
    int width = 1920;
    int height = 1080;
  };
  mutable std::atomic<Screen> screen_;
  MessageText messages_;
  std::unique_ptr<QDialog> window_;
  QPlainTextEdit* edit_ = nullptr;  // owned by the window
};

}  // namespace qv
