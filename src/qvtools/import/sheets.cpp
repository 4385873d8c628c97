#include "qvtools/import/internal/sheets.h"

#include "qvtools/import/internal/converters.h"

namespace qv::importing {

namespace {

constexpr const char* kPlainSheet = "Paper";  // of releases whose only sheet has no name

std::string lower(std::string text) {
  for (char& c : text)
    if (c >= 'A' && c <= 'Z') c = static_cast<char>(c - 'A' + 'a');
  return text;
}

bool is_model(const std::string& name) {
  return name.empty() || lower(name) == "model";
}

/// The block of the sheet whose entities stand among the others, marked as paper.
bool is_marked(const Drawing& file, int block) {
  return block < 0 || lower(file.blocks[static_cast<std::size_t>(block)].name) == "*paper_space" ||
         lower(file.blocks[static_cast<std::size_t>(block)].name) == "$paper_space";
}

}  // namespace

bool choose_sheet(Drawing& file, const std::string& name, Sheet& sheet) {
  sheet = {};
  if (is_model(name)) return true;
  sheet.model = false;
  for (const Layout& layout : file.layouts) {
    if (lower(layout.name) != lower(name)) continue;
    sheet.block = is_marked(file, layout.block) ? -1 : layout.block;
    return true;
  }
  return file.layouts.empty() && lower(name) == lower(kPlainSheet);
}

std::vector<std::string> sheet_names(Drawing& file) {
  std::vector<std::string> names;
  for (const Layout& layout : file.layouts)
    if (!is_model(layout.name)) names.push_back(layout.name);
  return names;
}

namespace {

/// A window of a sheet: group 69 is 1 for the sheet itself.
struct Port {
  Window window{};
  Matrix place;
  std::vector<bool> hidden;
  bool shown = false;
};

Port port_of(Job& job, const Record& r) {
  enum { kPerspective = 1, kCutInDepth = 2 | 4, kOff = 0x20000 };
  Port port;
  const Vec center = r.point(10);
  const double width = r.real(40);
  const double height = r.real(41);
  const double viewHeight = r.real(45, height);
  port.shown = r.integer(69) != 1 && r.integer(68, 1) != 0 && (r.integer(90) & kOff) == 0 && width > 0 && height > 0 &&
               viewHeight > 0 && is_finite(center);
  if (!port.shown) return port;
  const Tag* const border = r.find(340);
  if (border && handle_of(*border) != 0)
    job.report.loss("a window with a border of its own is shown as a rectangle", r.place);
  if ((r.integer(90) & kPerspective) != 0) job.report.loss("a window in perspective is shown without it", r.place);
  if ((r.integer(90) & kCutInDepth) != 0) job.report.loss("a window that is cut in depth is shown whole", r.place);
  const double scale = height / viewHeight;
  const Vec target = r.point(17);
  const Vec viewCenter = r.point(12);
  const Vec direction = unit(r.point(16, {0, 0, 1}), {0, 0, 1});
  // What is seen along another direction stands upright in its own frame.
  const Matrix seen = extrusion_frame(direction);
  const Matrix turnedBack{
      {seen.x.x, seen.y.x, seen.z.x}, {seen.x.y, seen.y.y, seen.z.y}, {seen.x.z, seen.y.z, seen.z.z}, {}};
  const Matrix inPlane = translation({center.x - scale * viewCenter.x, center.y - scale * viewCenter.y, 0}) *
                         scaling(scale, scale, scale) * turning(radians(r.real(51))) * turnedBack *
                         translation(target * -1);
  port.place = job.place * inPlane;
  const Vec low = job.place(center - Vec{width / 2, height / 2, 0});
  const Vec high = job.place(center + Vec{width / 2, height / 2, 0});
  port.window = {low.x, low.y, high.x, high.y};
  for (const Tag& tag : r.tags) {
    if (tag.code != 331 && tag.code != 341) continue;
    const auto name = job.file.nameOfHandle.find(handle_of(tag));
    if (name == job.file.nameOfHandle.end()) continue;
    const auto layer = static_cast<std::size_t>(job.tables.layer(name->second));
    if (port.hidden.size() <= layer) port.hidden.resize(layer + 1);
    port.hidden[layer] = true;
  }
  return port;
}

void show_model(Job& job, const Port& port) {
  const Matrix place = job.place;
  job.place = port.place;
  job.out.window = &port.window;
  job.hiddenLayers = port.hidden;
  for (const Span& section : job.file.entitySections) job.convert_all(section, Space::Model);
  job.hiddenLayers.clear();
  job.out.window = nullptr;
  job.place = place;
}

}  // namespace

void convert_sheet(Job& job, const Sheet& sheet, const std::function<bool(double)>& progress) {
  constexpr std::size_t kMostPorts = 200;
  const bool paper = !sheet.model;
  job.onSheet = paper;
  if (sheet.block >= 0) {
    const FileBlock& block = job.file.blocks[static_cast<std::size_t>(sheet.block)];
    job.convert_all({block.from, block.to}, Space::All, progress);
  } else {
    for (const Span& section : job.file.entitySections)
      if (!job.cancelled) job.convert_all(section, paper ? Space::Paper : Space::Model, progress);
  }
  job.onSheet = false;
  const std::vector<Record> ports = std::move(job.viewports);
  std::size_t shown = 0;
  for (const Record& record : ports) {
    const Port port = port_of(job, record);
    if (!port.shown) continue;
    if (shown == kMostPorts) {
      job.report.loss("a window beyond the 200th was left out", record.place);
      continue;
    }
    // What several windows show is counted once.
    job.report.quiet = shown++ > 0;
    show_model(job, port);
    job.report.quiet = false;
  }
}

Outcome convert_viewport(Job& job, const Record& record) {
  if (!job.onSheet) return left_out("a window of another sheet");
  job.viewports.push_back(record);
  return converted("what it shows");
}

}  // namespace qv::importing
