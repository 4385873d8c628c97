#pragma once

/// What the library asks of the program around it: message boxes, the calculation-message window, message pumping,
/// the screen's size, and a view's window.

#include "qvtools/platform/device.h"

namespace qv {

/// The four message boxes: without icon, information, stop (each with OK), and a question with OK and Cancel.
enum class BoxKind { Plain, Information, Stop, Question };
/// What the user answered.
enum class Answer { Ok, Cancel };

/// The user interface. Texts are GBK bytes; adapters convert them.
class QV_API Host {
 public:
  virtual ~Host();

  /// Shows a box and waits for the answer; always `Ok` but for a question.
  virtual Answer ShowBox(const char* text, BoxKind kind) = 0;

  /// The calculation-message window: one edit control of many lines. Created once, hidden, before anything else is
  /// asked of it. Character positions count the control's bytes, line breaks ("\r\n") included.
  virtual void CreateMessageWindow() = 0;
  /// Shows or hides the window.
  virtual void ShowMessageWindow(bool visible) = 0;
  /// One more than the line ends of its text.
  virtual int MessageLineCount() const = 0;
  /// The position where the line (0 the first) begins.
  virtual int MessageLineStart(int line) const = 0;
  /// Selects from one position up to another; positions beyond the end mean the end.
  virtual void SelectMessage(int from, int to) = 0;
  /// Replaces what is selected.
  virtual void ReplaceMessageSelection(const char* text) = 0;

  /// Dispatches the messages that wait for this thread, so that windows stay alive in long computations.
  virtual void DrainMessages() = 0;
  /// Width and height of the screen in pixels.
  virtual CSize ScreenSize() const = 0;
};

/// Installs the program's host, which must outlive its use; null brings the console host back.
QV_API void SetHost(Host* host);
/// The host in use: the installed one, else the console host.
QV_API Host& CurrentHost();

/// A view's window.
class QV_API Window {
 public:
  virtual ~Window();
  /// The area that the view draws on.
  virtual CRect ClientRect() const = 0;
  /// A device context on the client area, to be given back by `ReleaseClientContext`.
  virtual CDC& ClientContext() = 0;
  /// Gives the context back.
  virtual void ReleaseClientContext() = 0;
  /// Asks for a repaint of the whole client area, with its background erased first when `erase` is set.
  virtual void Invalidate(bool erase) = 0;
  /// Queues a message with both parameters 0, handled after the present one.
  virtual void Post(unsigned int message) = 0;
};

}  // namespace qv
