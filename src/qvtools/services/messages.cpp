#include "qvtools/services/messages.h"

#include <atomic>
#include <cstdarg>
#include <cstdio>
#include <mutex>
#include <string>
#include <string_view>

#include "qvtools/platform/host.h"
#include "qvtools/system/filesystem.h"
#include "qvtools/system/internal/out_of_memory.h"
#include "qvtools/system/internal/text_stream.h"
#include "qvtools/text/numbers.h"

int QV_ERROR_CODE = 0;

namespace {

constexpr int kHideWindow = -9999;
constexpr int kSwitchOutput = -8888;
constexpr int kMostLines = 400;
constexpr int kDroppedLines = 50;
constexpr int kBeyondEnd = 99999999;
constexpr std::size_t kTextSize = 600;

/// Reports of several threads are shown one after another. The mutex is recursive because showing a report dispatches
/// messages, which may report in turn.
std::recursive_mutex g_reports;
bool g_windowPending = true;
bool g_outputEnabled = true;

/// Dispatching a waiting message can end in a report, which must not dispatch again.
void drain_messages(qv::Host& host) {
  static bool draining = false;
  if (draining) return;
  draining = true;
  host.DrainMessages();
  draining = false;
}

void append_to_window(qv::Host& host, std::string_view text) {
  if (text.empty()) return;
  if (host.MessageLineCount() > kMostLines) {
    host.SelectMessage(0, host.MessageLineStart(kDroppedLines));
    host.ReplaceMessageSelection("\r\n");
  }
  host.SelectMessage(kBeyondEnd, kBeyondEnd);
  if (text.back() == '\n') text.remove_suffix(1);
  host.ReplaceMessageSelection(std::string(text).c_str());
  host.ReplaceMessageSelection("\r\n");
}

/// What a range of codes does: which box it shows and whether the code is kept as the abandon code.
struct BoxRange {
  int first;
  int last;
  qv::BoxKind kind;
  bool fatal;
};
constexpr BoxRange kBoxRanges[] = {
    {101, 200, qv::BoxKind::Plain, true},
    {201, 300, qv::BoxKind::Information, false},
    {301, 400, qv::BoxKind::Stop, true},
    {1000, 2000, qv::BoxKind::Question, false},
};

void show_box(qv::Host& host, int code, const char* text) {
  for (const BoxRange& range : kBoxRanges) {
    if (code < range.first || code > range.last) continue;
    qv::Answer answer = qv::Answer::Ok;
    try {
      answer = host.ShowBox(text, range.kind);
    } catch (const std::bad_alloc&) {
      // A box that cannot be shown because memory ran out counts as shown.
    }
    const std::atomic_ref abandonCode(QV_ERROR_CODE);
    if (range.fatal) abandonCode = code;
    if (answer == qv::Answer::Cancel) abandonCode = 1;
  }
}

/// Shows a report on the host, as its code says.
void report(qv::Host& host, int code, const char* text) {
  drain_messages(host);
  if (g_windowPending) {
    host.CreateMessageWindow();
    g_windowPending = false;
  }
  if (code == kHideWindow) {
    host.ShowMessageWindow(false);
    return;
  }
  // Quirk: switching the output by code -8888, off as well, shows the window; host programs open it so.
  host.ShowMessageWindow(code <= 100 || code >= 1000);
  if (code == kSwitchOutput) {
    g_outputEnabled = std::string_view(text) == "TRUE";
  } else if (code >= -2 && code <= 100) {
    if (g_outputEnabled) append_to_window(host, text);
  } else {
    show_box(host, code, text);
  }
}

}  // namespace

void tell_error(int code, const char* text) {
  qv::Host& host = qv::CurrentHost();
  const std::lock_guard lock(g_reports);
  try {
    report(host, code, text ? text : "");
  } catch (const std::bad_alloc&) {
    // There is no memory to append it to the message window.
  }
}

void tell_error1(int code, const char* format, ...) {
  char text[kTextSize];
  std::va_list arguments;
  va_start(arguments, format);
  qv::format_list(text, sizeof text, format, arguments);
  va_end(arguments);
  tell_error(code, text);
}

namespace {

/// Others may have put a link to somewhere else there.
std::FILE* open_log(const char* mode) {
  return qv::detail::unless_silently_out_of_memory(
      [mode] { return qv::detail::open_crlf_stream_nowhere_else(qv::scratch_path("wx_temp.txt").c_str(), mode); },
      nullptr);
}

}  // namespace

void tell_error2(int code, const char* format, ...) {
  char text[kTextSize];
  std::va_list arguments;
  va_start(arguments, format);
  qv::format_list(text, sizeof text, format, arguments);
  va_end(arguments);
  std::FILE* const log = open_log(code == 0 ? "wt" : "at");
  if (!log) return;
  std::fprintf(log, "[%4d]  %s", code, text);
  std::fclose(log);
}
