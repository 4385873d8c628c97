#include <filesystem>
#include <optional>
#include <stdexcept>

#include "commands.h"
#include "common/picture_file.h"
#include "demo.h"
#include "picture.h"
#include "slab_sample.h"
#include "slide_samples.h"

namespace qvdraw {

namespace {

constexpr int kWidth = 3200;  // pixels of a picture: its smallest texts stay legible

void save(DXF& drawing, const std::string& path) {
  if (!drawing.Write_MemDxf_To_File(path.c_str())) throw std::runtime_error(path + ": cannot be written");
}

void plot(DXF& drawing, const std::string& name, const std::string& path) {
  const qv::PlotSource source{&drawing, nullptr, name, 1};
  const std::optional<qv::PenTable> pens = qv::PenTable::built_in(kUsualPens);
  qv::PlotOptions options;
  options.pens = &*pens;
  qv::PlotReport report;
  if (!qv::Plot({&source, 1}, path, options, report)) throw std::runtime_error(path + ": " + report.problem);
}

/// The drawing, its sheets as plots, and a picture of all of it.
void write_in_every_form(DXF& drawing, const std::string& name, const std::string& directory) {
  const std::string base = directory + "/" + name;
  save(drawing, base + ".dxf");
  for (const char* const ending : {".pdf", ".svg"}) plot(drawing, name, base + ending);
  PictureOptions options;
  options.size = CSize(kWidth, kWidth);
  for (const auto& format : qvapps::picture_formats())
    if (format.kind == qvapps::PictureKind::Png || format.kind == qvapps::PictureKind::Emf)
      save_picture(drawing, base + format.ending, options);
}

}  // namespace

void run_demo(const DemoRequest& request) {
  const std::string& directory = request.directory;
  std::error_code error;
  std::filesystem::create_directories(directory, error);
  if (!std::filesystem::is_directory(directory)) throw std::runtime_error(directory + ": cannot be made a directory");
  const struct {
    const char* name;
    std::unique_ptr<CBase_SGT> (*compose)();
    float x;  // where it stands in the drawing of all sheets
  } sheets[] = {{"plan", compose_plan, 0}, {"beam", compose_beam, 90000}, {"calc", compose_calculation, 125000}};
  DXF all;
  all.New_MemDxf();
  all.m_bCodePageHeader = 1;
  for (const auto& sheet : sheets) {
    const std::unique_ptr<CBase_SGT> sgt = sheet.compose();
    if (!sgt || !all.InsertDxf(sgt.get(), sheet.x, 0, 0)) throw std::runtime_error("not enough memory");
    write_in_every_form(*sgt, sheet.name, directory);
  }
  write_in_every_form(all, "sheets", directory);
  write_sample_library(directory + "/details.slb");
  write_sample_slab(directory);
}

}  // namespace qvdraw
