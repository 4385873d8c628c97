#include "qvtools/widgets/viewer/show_dxf.h"

#include <memory>

#include "qvtools/services/messages.h"
#include "qvtools/widgets/win32/drawing_window.h"

namespace {

/// A window that shows the file; null, after a report, when it cannot.
std::unique_ptr<qv::DrawingControl> window_of(const char* file) {
  const RECT place = {CW_USEDEFAULT, CW_USEDEFAULT, CW_USEDEFAULT + 1000, CW_USEDEFAULT + 700};
  std::unique_ptr<qv::DrawingControl> control = qv::DrawingControl::Create(nullptr, place);
  if (!control) {
    tell_error(301, "There is no screen to show a drawing on !");
    return nullptr;
  }
  if (!control->Open(file)) {
    tell_error(301, "The drawing cannot be read !");
    return nullptr;
  }
  SetWindowTextA(control->Handle(), file);
  return control;
}

}  // namespace

int Show_DXF(const char* file) {
  const std::unique_ptr<qv::DrawingControl> control = window_of(file);
  if (!control) return 0;
  MSG message;
  while (control->Handle() && GetMessageW(&message, nullptr, 0, 0) > 0) {
    TranslateMessage(&message);
    DispatchMessageW(&message);
  }
  // The program's own loop ends, too.
  if (control->Handle()) PostQuitMessage(static_cast<int>(message.wParam));
  return 1;
}

int Show_DXF_Modaless(const char* file) {
  qv::DrawingControl* const control = window_of(file).release();
  if (!control) return 0;
  control->OnDestroyed = [control] { delete control; };
  return 1;
}
