// Tables of pens of any bytes, as text and within CTB files; and flat drawings of any bytes, plotted.

#include <zlib.h>

#include <cstddef>
#include <cstdint>
#include <string>

#include "../harness.h"
#include "../memory_file.h"
#include "qvtools/plot/internal/ctb.h"
#include "qvtools/plot/picture.h"
#include "qvtools/plot/plot.h"

namespace {

using qvfuzz::require;

void read_pens(const std::string& text) {
  std::string problem;
  if (const auto table = qv::PenTable::parse(text, problem)) {
    for (int color = -1; color < 258; ++color) table->find(color, text.substr(0, 20), "DASHED");
    for (const qv::PenRule& rule : table->rules()) require(rule.width >= -1 && rule.width <= 20);
  }
  std::string packed(60, '\0');
  packed.resize(60 + compressBound(static_cast<uLong>(text.size())));
  uLongf size = static_cast<uLongf>(packed.size() - 60);
  compress(reinterpret_cast<Bytef*>(packed.data() + 60), &size, reinterpret_cast<const Bytef*>(text.data()),
           static_cast<uLong>(text.size()));
  packed.resize(60 + size);
  std::vector<qv::PenRule> rules;
  for (const std::string& bytes : {packed, text}) {
    rules.clear();
    if (qv::detail::read_ctb(bytes, rules, problem)) require(rules.size() == 255);
  }
}

void plot(const MemoryFile& file) {
  DXF drawing;
  drawing.New_MemDxf();
  if (!drawing.Read_FileDxf_To_Mem(file.path().c_str())) return;
  const qv::PlotSource source{&drawing, nullptr, "f", 1};
  static const std::string folder = qvfuzz::scratch().path("");
  for (const char* const name : {"f.pdf", "f.svg"}) {
    qv::PlotReport report;
    qv::PlotOptions options;
    const bool plotted = qv::Plot({&source, 1}, folder + name, options, report);
    require(plotted ? !report.pages.empty() : !report.problem.empty());
  }
  qv::PictureOptions picture;
  picture.size = {64, 64};
  require(qv::MakePicture(drawing, picture) != nullptr);
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  static qvfuzz::QuietHost host;
  qv::SetHost(&host);
  const std::string text(reinterpret_cast<const char*>(data), size);
  read_pens(text);
  plot(MemoryFile(data, size));
  return 0;
}
