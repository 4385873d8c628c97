#include <cstdio>
#include <stdexcept>

#include "commands.h"
#include "common/plotting.h"
#include "drawing_file.h"
#include "progress.h"

namespace qvdraw {

namespace {

void tell(const qv::PlotReport& report) {
  for (const qv::PlotReport::Page& page : report.pages) {
    std::string name = page.source;
    if (!page.sheet.empty()) name += ", " + page.sheet;
    std::printf("%s: %s at 1:%s\n", name.c_str(), qv::paper_name(page.paper).c_str(),
                qvapps::two_decimals(page.scale).c_str());
  }
  for (const std::string& remark : report.remarks) std::fprintf(stderr, "qvdraw: %s\n", remark.c_str());
}

}  // namespace

void run_plot(const PlotRequest& request) {
  qv::PlotOptions options = request.options;
  std::string problem;
  const std::optional<qv::PenTable> pens = qvapps::pen_table(request.pens, problem);
  if (!pens) throw std::runtime_error(request.pens + ": " + problem);
  options.pens = &*pens;
  options.colors = request.colors ? qv::PlotColors::Color : request.grey ? qv::PlotColors::Grey : qv::PlotColors::Black;
  std::vector<std::unique_ptr<DXF>> documents;
  std::vector<qv::ImportReport> reports(request.drawings.size());
  std::vector<qv::PlotSource> sources;
  for (std::size_t i = 0; i < request.drawings.size(); ++i) {
    const std::string& path = request.drawings[i];
    documents.push_back(load_drawing(path, request.import, reports[i]));
    const std::string name = path.substr(path.find_last_of("/\\") + 1);
    sources.push_back({documents.back().get(), &reports[i].notes, name, qvapps::unit_of(reports[i])});
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
