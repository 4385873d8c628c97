#include <atomic>

#include "qvtools/platform/console/console_host.h"
#include "qvtools/platform/host.h"

namespace qv {
namespace {

std::atomic<Host*> g_host = nullptr;

}  // namespace

Host::~Host() = default;
Window::~Window() = default;

void SetHost(Host* host) {
  g_host = host;
}

Host& CurrentHost() {
  if (Host* const host = g_host) return *host;
  static ConsoleHost console;
  return console;
}

}  // namespace qv
