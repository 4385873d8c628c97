#pragma once

/// Files for the readers that take a name, and what the targets of whole drawings share.

#include <cstdint>
#include <string>

#include "../harness.h"
#include "qvtools/dxf/model/document.h"
#include "qvtools/fonts/shx.h"

namespace qvfuzz {

inline std::string scratch_file(const std::uint8_t* data, std::size_t size) {
  return scratch().write("in.dxf", {reinterpret_cast<const char*>(data), size});
}

/// Silences messages and loads the text font.
inline void prepare_host() {
  static QuietHost host;
  qv::SetHost(&host);
  QV_ERROR_CODE = 0;
  static const int font = G_ShapeFont.SetTxtFont(QV_FONTS, "txt.shx");
  require(font == 1);
}

/// The bytes of the drawing as saved under the name.
inline std::string saved(DXF& dxf, const char* name) {
  require(dxf.Write_MemDxf_To_File(scratch().path(name).c_str()) == 1);
  return scratch().read(name);
}

}  // namespace qvfuzz
