#include <filesystem>
#include <functional>
#include <optional>
#include <stdexcept>
#include <vector>

#include "commands.h"
#include "common/picture_file.h"
#include "common/system.h"
#include "demo/demo.h"
#include "picture.h"
#include "qvtools/system/filesystem.h"
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

/// Where the data of the sheets lies: beside the program, or where an installation has it.
std::string samples_directory() {
  const std::string program = qvapps::System::program_directory();
  const std::string beside = program + "/samples";
  return qv::path_kind(beside.c_str()) == qv::PathKind::Directory ? beside : program + "/../share/qvtools/samples";
}

}  // namespace

void run_demo(const DemoRequest& request) {
  const std::string& directory = request.directory;
  std::error_code error;
  std::filesystem::create_directories(directory, error);
  if (!std::filesystem::is_directory(directory)) throw std::runtime_error(directory + ": cannot be made a directory");
  const std::string samples = request.samples.empty() ? samples_directory() : request.samples;
  const auto sample = [&](const char* name) { return Sample(samples + "/" + name + ".txt"); };
  const Sample project = sample("project");
  const struct {
    const char* name;
    std::function<Sheet()> compose;
  } sheets[] = {{"notes", [&] { return compose_notes(project, sample("notes")); }},
                {"footing", [&] { return compose_footing(project, sample("footing")); }},
                {"plan", [&] { return compose_plan(project, sample("storey")); }},
                {"slabs", [&] { return compose_slab(project, sample("slab"), sample("storey")); }},
                {"columns", [&] { return compose_columns(project, sample("columns")); }},
                {"beam", [&] { return compose_beam(project, sample("beam")); }},
                {"stair", [&] { return compose_stair(project, sample("stair")); }},
                {"calc", [&] { return compose_calculation(project, sample("calculation")); }}};
  // All are composed before the first is written: data that cannot be used leaves nothing behind.
  std::vector<Sheet> composed;
  for (const auto& sheet : sheets) composed.push_back(sheet.compose());
  constexpr float kGap = 5000;  // between the sheets in the drawing of all
  float x = 0;
  DXF all;
  all.New_MemDxf();
  all.m_bCodePageHeader = 1;
  for (std::size_t i = 0; i < composed.size(); ++i) {
    CBase_SGT& sgt = *composed[i].sgt;
    if (!all.InsertDxf(&sgt, x, 0, 0)) throw std::runtime_error("not enough memory");
    x += composed[i].frame.paper.Width() + kGap;
    write_in_every_form(sgt, sheets[i].name, directory);
  }
  write_in_every_form(all, "sheets", directory);
  write_sample_library(directory + "/details.slb");
  write_sample_slab(directory);
}

}  // namespace qvdraw
