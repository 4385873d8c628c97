#include "qvtools/import/import.h"

#include <algorithm>

#include "qvtools/import/internal/float_steps.h"
#include "qvtools/import/internal/job.h"
#include "qvtools/import/internal/sheets.h"
#include "qvtools/services/internal/out_of_memory.h"

namespace qv {

namespace importing {

namespace {

using Progress = std::function<bool(double)>;

/// The file's unit, and what lengths are multiplied by.
struct Lengths {
  Unit unit = Unit::None;
  const char* source = "";
  double scale = 1;
  Unit document = Unit::None;
};

Lengths lengths_of(const Header& header, Unit wanted, bool guess) {
  Lengths lengths;
  if (header.insUnits >= 1 && header.insUnits <= 7) {
    lengths.unit = static_cast<Unit>(header.insUnits);
    lengths.source = "from $INSUNITS";
  } else if (header.measurement >= 0 && guess) {
    // A drawing in metres is as large as a site, one in millimetres as a sheet at least.
    constexpr double kLargeSite = 300;
    const double size = std::max(header.extMax.x - header.extMin.x, header.extMax.y - header.extMin.y);
    const bool metres = header.hasExtents && size > 0 && size < kLargeSite;
    lengths.unit = header.measurement == 0 ? Unit::Inch : metres ? Unit::Metre : Unit::Millimetre;
    lengths.source = "from $MEASUREMENT and the size of the drawing";
  }
  lengths.document = lengths.unit;
  if (wanted == Unit::None || lengths.unit == Unit::None) return lengths;
  lengths.scale = millimetres(lengths.unit) / millimetres(wanted);
  lengths.document = wanted;
  return lengths;
}

/// Cuts lines without end at the extent of all else.
void put_endless(Job& job) {
  const Bounds& b = job.out.bounds;
  const double margin = b.empty() ? 1 : std::max(0.05 * b.size(), 1e-6);
  const Window window =
      b.empty() ? Window{-1, -1, 1, 1} : Window{b.x1 - margin, b.y1 - margin, b.x2 + margin, b.y2 + margin};
  for (const EndlessLine& line : job.endless) {
    const double far = 4 * (std::max(window.x2 - window.x1, window.y2 - window.y1) +
                            length(line.from - Vec{window.x1, window.y1, line.from.z}));
    const Vec step = unit(line.direction, {}) * far;
    job.out.look = line.look;
    job.out.window = &window;
    job.out.line(line.both ? line.from - step : line.from, line.from + step);
    job.out.window = nullptr;
  }
}

void tell_of_file(Drawing& file, ReportBuilder& report) {
  for (const std::size_t place : file.clippedReferences)
    report.loss("a reference that is cut along a border is shown whole", place);
  if (file.in.repairs() > 0)
    report.remark("a line was passed over where a group code should stand", file.in.first_repair(), file.in.repairs());
}

class Importer {
 public:
  Importer(Drawing& file, DXF& document, const ImportOptions& options, ImportReport& report, const Progress& progress)
      : file_(file), document_(document), options_(options), report_(report), progress_(progress), builder_(file) {}

  int run() {
    report_.layouts = sheet_names(file_);
    if (!choose_sheet(file_, options_.layout, sheet_)) {
      report_.remarks.push_back({"there is no sheet of this name", 1, 0, false});
      return 0;
    }
    lengths_ = lengths_of(file_.header, options_.unit, options_.guessUnit);
    const bool whole = convert({});
    if (whole && made_.m_EntityList.GetCount() == 0) builder_.remark("nothing stands in the drawing");
    if (whole && shift_ != Vec{}) {
      report_.notes = {};
      builder_.clear();
      for (FileBlock& block : file_.blocks) block.counted = false;
      return finish(convert(shift_));
    }
    return finish(whole);
  }

 private:
  /// Converts everything less the shift; false when it was given up. Tells which shift would be better.
  bool convert(const Vec& shift) {
    made_.Close();
    OutputTables tables(file_, builder_, lengths_.scale);
    Job job(file_, options_, builder_, tables, made_.m_BlockList);
    job.unit = lengths_.document;
    job.place = scaling(lengths_.scale, lengths_.scale, lengths_.scale);
    job.out.tolerance = options_.tolerance;
    job.out.notes = &report_.notes;
    job.out.begin(made_.m_EntityList, shift);
    convert_sheet(job, sheet_, progress_);
    put_endless(job);
    tables.install(made_, report_.notes);
    report_.notes.layout = options_.layout;
    shift_ = shift == Vec{} && !job.cancelled ? shift_of(job.out.bounds, lengths_.document) : shift;
    return !job.cancelled;
  }

  int finish(bool whole) {
    tell_of_file(file_, builder_);
    builder_.write_to(report_);
    report_.release = file_.header.release;
    report_.binary = file_.in.form() != Form::Text;
    report_.encoding = file_.decoder.page;
    report_.encodingSource = file_.encodingSource;
    report_.unit = lengths_.unit;
    report_.unitSource = lengths_.source;
    report_.scale = lengths_.scale;
    report_.offset[0] = shift_.x;
    report_.offset[1] = shift_.y;
    report_.layout = options_.layout;
    report_.complete = file_.is_complete();
    if (!report_.complete) report_.brokenLine = file_.line_of(file_.in.file().size() - 1);
    std::ranges::sort(report_.notes.entities, std::less<>(), &DrawingNotes::Entity::record);
    if (whole) hand_over();
    return whole ? 1 : 0;
  }

  /// What has been made becomes the document's: that needs no memory.
  void hand_over() {
    document_.Close();
    document_.m_EntityList.TakeAll(made_.m_EntityList);
    document_.m_BlockList.TakeAll(made_.m_BlockList);
    document_.Take_Tables(std::move(made_.m_pLType), made_.m_nLType, std::move(made_.m_pLayer), made_.m_nLayer,
                          std::move(made_.m_pStyle), made_.m_nStyle);
  }

  Drawing& file_;
  DXF& document_;
  DXF made_;
  const ImportOptions& options_;
  ImportReport& report_;
  const Progress& progress_;
  ReportBuilder builder_;
  Sheet sheet_;
  Lengths lengths_;
  Vec shift_;
};

}  // namespace

}  // namespace importing

int Import(const char* path, DXF& document, const ImportOptions& options, ImportReport& report,
           const std::function<bool(double share)>& progress) {
  report = {};
  const auto fail = [&](const char* why) {
    report.remarks.push_back({why, 1, 0, false});
    return 0;
  };
  const auto import = [&] {
    importing::SourceFile source;
    if (!importing::load_file(path, source)) return fail("the file cannot be opened");
    const auto file = std::make_unique<importing::Drawing>(std::move(source));
    if (!file->open(options)) return fail("the file is no drawing");
    return importing::Importer(*file, document, options, report, progress).run();
  };
  const int imported = detail::unless_out_of_memory(import, 0);
  if (!imported) report.notes = {};  // of records that are gone
  return imported;
}

}  // namespace qv
