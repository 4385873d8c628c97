#include "drawing_file.h"

#include <cctype>
#include <filesystem>
#include <stdexcept>

#include "platform/qt/qt_text.h"
#include "progress.h"

namespace qvdraw {

namespace {

/// Why a file has no entities that the reader finds.
std::string diagnose(const std::string& path) {
  std::FILE* file = qv::open_text(path.c_str(), "rb");
  if (!file) return "cannot be opened";
  char line[300];
  std::string first;
  if (qv::read_line(line, sizeof line, file)) first = line;
  bool bare = false;  // an ENTITIES section under a code without its blanks
  std::string before;
  while (!bare && qv::read_line(line, sizeof line, file)) {
    bare = before != "  2\n" && std::string(line).find("ENTITIES") == 0;
    before = line;
  }
  std::fclose(file);
  if (first.find("AutoCAD Binary DXF") == 0) return "is a binary DXF file; save it as ASCII DXF, release 12";
  if (bare) return "has group codes that are not right-aligned in three characters; save it as ASCII DXF, release 12";
  return "has no ENTITIES section; is it an ASCII DXF file?";
}

}  // namespace

std::unique_ptr<DXF> load_drawing(const std::string& path) {
  auto dxf = std::make_unique<DXF>();
  dxf->New_MemDxf();
  if (!std::filesystem::exists(path)) throw std::runtime_error(path + ": there is no such file");
  if (std::filesystem::is_directory(path)) throw std::runtime_error(path + ": is a directory");
  const Progress progress("reading " + path);
  if (!dxf->Read_FileDxf_To_Mem(path.c_str())) throw std::runtime_error(path + ": " + diagnose(path));
  return dxf;
}

std::string to_utf8(const char* text) {
  return qv::from_gbk(text).toStdString();
}

const char* layer_of(ACAD_ENTITY& entity) {
  switch (entity.GetType()) {
    case ACAD_TYPE_POINT:
      return static_cast<ACAD_POINT&>(entity).m_szLayer;
    case ACAD_TYPE_LINE:
      return static_cast<ACAD_LINE&>(entity).m_szLayer;
    case ACAD_TYPE_TEXT:
      return static_cast<ACAD_TEXT&>(entity).m_szLayer;
    case ACAD_TYPE_CIRCLE:
      return static_cast<ACAD_CIRCLE&>(entity).m_szLayer;
    case ACAD_TYPE_ARC:
      return static_cast<ACAD_ARC&>(entity).m_szLayer;
    case ACAD_TYPE_POLYLINE:
      return static_cast<ACAD_POLYLINE&>(entity).m_szLayer;
    case ACAD_TYPE_SOLID:
      return static_cast<ACAD_SOLID&>(entity).m_szLayer;
    case ACAD_TYPE_3DFACE:
      return static_cast<ACAD_3DFACE&>(entity).m_szLayer;
    case ACAD_TYPE_INSERT:
      return static_cast<ACAD_INSERT&>(entity).m_szLayer;
    case ACAD_TYPE_NONE:
    case ACAD_TYPE_END:
      break;
  }
  return "";
}

}  // namespace qvdraw
