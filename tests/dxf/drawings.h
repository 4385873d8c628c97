#pragma once

/// Small drawings for the tests of the document.

#include <string>

#include "qvtools/dxf/model/document.h"
#include "support/temporary_directory.h"

namespace qvtest {

/// "a\nb" with every line end as it stands on disk.
inline std::string on_disk(const std::string& lines) {
  std::string text;
  for (const char c : lines) text += c == '\n' ? std::string("\r\n") : std::string(1, c);
  return text;
}

/// The text without its carriage returns.
inline std::string without_returns(std::string text) {
  std::erase(text, '\r');
  return text;
}

/// What an in-memory document becomes on disk.
inline std::string saved(DXF& dxf) {
  const TemporaryDirectory directory;
  return dxf.Write_MemDxf_To_File(directory.path("saved.dxf").c_str()) == 1 ? directory.read("saved.dxf") : "";
}

/// Adds line type, layer and style, and one entity of each kind that a write call makes.
inline void compose_one_of_each(DXF& dxf) {
  const float pattern[] = {0.5F, -0.25F, 0, -0.25F};
  dxf.Add_LType("DASHDOT", "- . -", 4, 1, pattern);
  dxf.Add_Layer("WALL", 3, "DASHDOT");
  dxf.Add_STyle("HZ", "txt", "hztxt");
  const float x[] = {0, 10, 20};
  const float y[] = {0, 5, 0};
  const float z[] = {0, 0, 0};
  const float bulge[] = {0, 1, 0};
  const float width[] = {0.5F, 0.25F, 0};
  dxf.Write_Point(1, 2, 3, "WALL");
  dxf.Write_Line(0, 0, 0, 3.14159F, -2.5F, 1, "WALL", "1", "DASHDOT");
  dxf.Write_Text(4, 5, 0, 2.5F, 45, "C20 \xBB\xEC\xC4\xFD\xCD\xC1", "HZ", "0", "BYLAYER", "BYLAYER");
  dxf.Write_Circle(7, 8, 0, 9, "0", "300", "BYLAYER");
  dxf.Write_Arc(1, 1, 0, 5, 350, 20, "WALL", "BYLAYER", "DASHDOT");
  dxf.Write_Pline(0, 0, 0, 10, 0, 0, 0.5F, 0.5F, "WALL", "2", "BYLAYER");
  dxf.Write_Pline(3, x, y, z, bulge, 1, width, width, "WALL", "BYLAYER", "BYLAYER");
  dxf.Write_Solid(0, 0, 0, 1, 0, 0, 0, 1, 0, 1, 1, 0, "0", "5", "BYLAYER");
  dxf.Write_3DFace(0, 0, 0, 1, 0, 0, 1, 1, 1, 0, 1, 1, "0", "BYLAYER", "BYLAYER");
}

}  // namespace qvtest
