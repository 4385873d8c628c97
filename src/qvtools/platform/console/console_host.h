#pragma once

/// The host of programs without a window.

#include <string>

#include "qvtools/platform/host.h"
#include "qvtools/text/message_text.h"

namespace qv {

/// Prints message boxes to standard error in the terminal's encoding and keeps the message window as text. A question
/// is asked when standard input is a terminal; else the answer is OK.
class QV_API ConsoleHost : public Host {
 public:
  /// Tells this size as that of the screen, since there is none.
  explicit ConsoleHost(CSize screen = {1920, 1080});
  ~ConsoleHost() override;

  Answer ShowBox(const char* text, BoxKind kind) override;
  void CreateMessageWindow() override {}
  void ShowMessageWindow(bool visible) override { visible_ = visible; }
  int MessageLineCount() const override { return messages_.LineCount(); }
  int MessageLineStart(int line) const override { return messages_.LineStart(line); }
  void SelectMessage(int from, int to) override { messages_.Select(from, to); }
  void ReplaceMessageSelection(const char* text) override { messages_.Replace(text); }
  void DrainMessages() override {}
  CSize ScreenSize() const override { return screen_; }

  /// Changes it.
  void SetScreenSize(CSize screen) { screen_ = screen; }
  /// What the message window holds (GBK, lines ended by "\r\n"), and whether it is shown.
  const std::string& MessageText() const { return messages_.Bytes(); }
  bool MessageWindowVisible() const { return visible_; }

 private:
  CSize screen_;
  qv::MessageText messages_;
  bool visible_ = false;
};

}  // namespace qv
