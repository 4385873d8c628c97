// Shapes of shape files (.shx) that the drawing names.

#include <algorithm>

#include "qvtools/import/internal/converters.h"

namespace qv::importing {

namespace {

std::string file_name(std::string_view path) {
  const std::size_t slash = path.find_last_of("/\\");
  std::string name(slash == path.npos ? path : path.substr(slash + 1));
  if (name.find('.') == name.npos) name += ".shx";
  return name;
}

/// The file of shapes in one of the folders, as named or in small letters.
const ShapeFile& shape_file(Job& job, const std::string& font) {
  const auto [found, isNew] = job.shapeFiles.try_emplace(font);
  if (!isNew) return found->second;
  const std::string name = file_name(font);
  std::string small = name;
  for (char& c : small) c = c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c;
  for (const std::string& folder : job.options.shapeFolders)
    if (found->second.Load((folder + name).c_str()) || found->second.Load((folder + small).c_str())) break;
  return found->second;
}

double size_of(const ShapeOutline& outline) {
  double size = 0;
  for (const ShapeOutline::Point& p : outline.points) size = std::max({size, std::fabs(p.x), std::fabs(p.y)});
  return size;
}

/// The outline's strokes, each put out as a chain.
bool put_strokes(Job& job, const Matrix& at, const ShapeOutline& outline) {
  bool good = true;
  std::vector<Vec> chain;
  const auto finish = [&] {
    if (chain.size() > 1) good = put_chain(job, chain, false) && good;
    chain.clear();
  };
  Vec last;
  for (const ShapeOutline::Point& point : outline.points) {
    const Vec here{point.x, point.y, 0};
    if (!point.drawn) finish();
    if (point.drawn && chain.empty()) chain.push_back(at(last));
    if (point.drawn) chain.push_back(at(here));
    last = here;
  }
  finish();
  return good;
}

}  // namespace

Outcome convert_shape(Job& job, const Record& record) {
  const std::string name = job.file.decoder.gbk(record.word(2));
  for (const std::string& font : job.file.shapeFonts) {
    const ShapeFile& file = shape_file(job, font);
    const ShapeFile::Shape* const shape = file.find(name);
    if (!shape) continue;
    const double size = record.real(40, 1);
    const double slant = std::tan(radians(record.real(51)));
    Matrix own = scaling(size * record.real(41, 1), size, 1);
    own.y.x = size * slant;
    const Matrix at = frame_of(job, record) * translation(record.point(10)) * turning(radians(record.real(50))) * own;
    const double tolerance = job.options.tolerance * size_of(file.outline(*shape, 1));
    return outcome(put_strokes(job, at, file.outline(*shape, tolerance)), converted("POLYLINE"));
  }
  return left_out("a shape whose file is not found");
}

}  // namespace qv::importing
