#include <cstdio>
#include <stdexcept>

#include "commands.h"
#include "drawing_file.h"
#include "progress.h"

namespace qvdraw {

namespace {

qv::PenTable pen_table(const std::string& name) {
  if (std::optional<qv::PenTable> table = qv::PenTable::built_in(name)) return *table;
  std::string problem;
  if (std::optional<qv::PenTable> table = qv::PenTable::read(name.c_str(), problem)) return *table;
  throw std::runtime_error(name + ": " + problem);
}

/// Millimetres to a drawing's unit once it was imported.
double unit_of(const qv::ImportReport& report) {
  constexpr double kMillimetres[] = {1, 25.4, 304.8, 1609344, 1, 10, 1000, 1e6};
  const bool converted = report.scale != 1;
  return converted ? 1 : kMillimetres[static_cast<int>(report.unit)];
}

std::string two_decimals(double v) {
  char text[64];
  std::snprintf(text, sizeof text, "%.2f", v);
  std::string trimmed = text;
  trimmed.erase(trimmed.find_last_not_of('0') + 1);
  if (trimmed.back() == '.') trimmed.pop_back();
  return trimmed;
}

void tell(const qv::PlotReport& report) {
  for (const qv::PlotReport::Page& page : report.pages) {
    std::string name = page.source;
    if (!page.sheet.empty()) name += ", " + page.sheet;
    std::printf("%s: %s at 1:%s\n", name.c_str(), qv::paper_name(page.paper).c_str(), two_decimals(page.scale).c_str());
  }
  for (const std::string& remark : report.remarks) std::fprintf(stderr, "qvdraw: %s\n", remark.c_str());
}

}  // namespace

void run_plot(const PlotRequest& request) {
  qv::PlotOptions options = request.options;
  const qv::PenTable pens = pen_table(request.pens);
  options.pens = &pens;
  options.colors = request.colors ? qv::PlotColors::Color : request.grey ? qv::PlotColors::Grey : qv::PlotColors::Black;
  std::vector<std::unique_ptr<DXF>> documents;
  std::vector<qv::ImportReport> reports(request.drawings.size());
  std::vector<qv::PlotSource> sources;
  for (std::size_t i = 0; i < request.drawings.size(); ++i) {
    const std::string& path = request.drawings[i];
    documents.push_back(load_drawing(path, request.import, reports[i]));
    const std::string name = path.substr(path.find_last_of("/\\") + 1);
    sources.push_back({documents.back().get(), &reports[i].notes, name, unit_of(reports[i])});
  }
  qv::PlotReport report;
  bool plotted;
  {
    const Progress progress("plotting " + request.out);
    plotted = qv::Plot(sources, request.out, options, report);
  }
  tell(report);
  if (!plotted) throw std::runtime_error(request.out + ": " + report.problem);
}

}  // namespace qvdraw
