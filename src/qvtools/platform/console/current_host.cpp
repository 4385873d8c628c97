#include "qvtools/platform/host.h"

#include "qvtools/platform/console/console_host.h"

namespace qv {
namespace {

Host* g_host = nullptr;

}  // namespace

Host::~Host() = default;
Window::~Window() = default;

void SetHost(Host* host) {
  g_host = host;
}

Host& CurrentHost() {
  if (g_host) return *g_host;
  static ConsoleHost console;
  return console;
}

}  // namespace qv
