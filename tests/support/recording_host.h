#pragma once

/// A host that records what the library asks of it. It is installed while it lives, with the library's abandon code and
/// message output reset before and after.

#include <string>
#include <utility>
#include <vector>

#include "qvtools/platform/console/console_host.h"
#include "qvtools/services/services.h"

namespace qvtest {

class RecordingHost : public qv::ConsoleHost {
 public:
  explicit RecordingHost(CSize screen = {1920, 1080}) : ConsoleHost(screen) {
    reset();
    qv::SetHost(this);
    tell_error(-8888, "TRUE");
    tell_error(-9999, "");
    drained = 0;
  }
  ~RecordingHost() override {
    qv::SetHost(nullptr);
    reset();
  }

  qv::Answer ShowBox(const char* text, qv::BoxKind kind) override {
    boxes.emplace_back(kind, text);
    return kind == qv::BoxKind::Question ? answer : qv::Answer::Ok;
  }
  void DrainMessages() override { ++drained; }

  /// The text of the only box; empty when there was none or more than one.
  std::string box() const { return boxes.size() == 1 ? boxes[0].second : std::string(); }

  std::vector<std::pair<qv::BoxKind, std::string>> boxes;
  qv::Answer answer = qv::Answer::Ok;
  int drained = 0;

 private:
  static void reset() { QV_ERROR_CODE = 0; }
};

}  // namespace qvtest
