/// qvview32: shows a drawing in a native window. qvview32 [FILE.dxf]

#include <windows.h>
// Stands on the one above.
#include <shellapi.h>

#include "common/fonts.h"
#include "common/system.h"
#include "qvtools/platform/win32/win32_host.h"
#include "qvtools/services/captions.h"
#include "viewer.h"

namespace {

qvview::Language language_of_user() {
  const bool chinese = PRIMARYLANGID(GetUserDefaultUILanguage()) == LANG_CHINESE;
  return chinese ? qvview::Language::Chinese : qvview::Language::English;
}

/// The drawing that the command line names; empty when it names none.
std::wstring named_drawing() {
  int count = 0;
  wchar_t** const words = CommandLineToArgvW(GetCommandLineW(), &count);
  const std::wstring path = words && count > 1 ? words[1] : L"";
  LocalFree(words);
  return path;
}

int run_messages(const qvview32::Viewer& viewer) {
  MSG message;
  while (GetMessageW(&message, nullptr, 0, 0) > 0) {
    if (viewer.FindDialog() && IsDialogMessageW(viewer.FindDialog(), &message)) continue;
    if (viewer.Window() && TranslateAcceleratorW(viewer.Window(), viewer.Keys(), &message)) continue;
    TranslateMessage(&message);
    DispatchMessageW(&message);
  }
  return static_cast<int>(message.wParam);
}

}  // namespace

int main(int argc, char** argv) {
  const qvapps::System system(argc, argv);
  qv::Win32Host host(nullptr, qv::captions::kCalculationMessages);
  qv::SetHost(&host);
  const std::string directory = system.program_directory();
  const qvapps::FontFiles fonts = qvapps::load_fonts("qvview32", directory);
  int code = 1;
  if (const std::unique_ptr<qvview32::Viewer> viewer = qvview32::Viewer::Create(language_of_user(), fonts, directory)) {
    if (const std::wstring path = named_drawing(); !path.empty()) viewer->Open(path);
    code = run_messages(*viewer);
  }
  qv::SetHost(nullptr);
  return code;
}
