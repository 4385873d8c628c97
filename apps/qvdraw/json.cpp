#include "json.h"

#include "qvtools.h"

namespace qvdraw {

std::string quoted(const std::string& text) {
  std::string out = "\"";
  for (const char c : text) {
    char escape[8];
    const auto byte = static_cast<unsigned char>(c);
    if (c == '"' || c == '\\') {
      (out += '\\') += c;
    } else if (byte < 0x20) {
      qv::format_text(escape, sizeof escape, "\\u%04x", static_cast<unsigned>(byte));
      out += escape;
    } else {
      out += c;
    }
  }
  return out + "\"";
}

}  // namespace qvdraw
