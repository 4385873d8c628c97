#include <algorithm>

#include "qvtools/import/internal/report_builder.h"
#include "qvtools/text/numbers.h"

namespace qv {

const DrawingNotes::Entity* DrawingNotes::find(const ACAD_ENTITY* record) const {
  const auto found = std::ranges::lower_bound(entities, record, std::less<>(), &Entity::record);
  return found != entities.end() && found->record == record ? &*found : nullptr;
}

namespace {

template <class... Values>
std::string formatted(const char* format, Values... values) {
  char text[512];
  format_text(text, sizeof text, format, values...);
  return text;
}

/// "3 MTEXT, 12 DIMENSION"
std::string listed(const std::vector<ImportReport::Kind>& kinds, int ImportReport::Kind::*count) {
  std::string out;
  for (const ImportReport::Kind& kind : kinds)
    if (kind.*count > 0) out += (out.empty() ? "" : ", ") + std::to_string(kind.*count) + " " + kind.name;
  return out;
}

constexpr const char* kUnitNames[] = {"no unit",     "inches",      "feet",   "miles",
                                      "millimetres", "centimetres", "metres", "kilometres"};

std::string kind_text(const ImportReport::Kind& kind, const char* place) {
  std::string out = formatted("  %-18s", kind.name.c_str());
  std::string parts;
  const auto add = [&](int count, const std::string& what) {
    if (count > 0) parts += (parts.empty() ? "" : "; ") + std::to_string(count) + " " + what;
  };
  add(kind.taken, "taken");
  add(kind.converted, "converted to " + kind.becomes);
  add(kind.leftOut, "left out: " + kind.reason);
  if (kind.leftOut > 0) parts += formatted(" (first at %s %ld)", place, kind.line);
  return out + parts + "\n";
}

}  // namespace

std::string ImportReport::summary() const {
  const std::string converted = listed(kinds, &Kind::converted);
  const std::string leftOut = listed(kinds, &Kind::leftOut);
  std::string out;
  const auto add = [&](const std::string& text) { out += (out.empty() ? "" : "; ") + text; };
  if (!converted.empty()) add(converted + " converted");
  if (!leftOut.empty()) add(leftOut + " left out");
  for (const Remark& remark : remarks)
    if (remark.loss) add(formatted("%d times ", remark.count) + remark.text);
  if (scale != 1) add(formatted("lengths multiplied by %g", scale));
  if (offset[0] != 0 || offset[1] != 0) add(formatted("moved by %.15g, %.15g", -offset[0], -offset[1]));
  if (!complete) add(formatted("broken off at %s %ld", binary ? "byte" : "line", brokenLine));
  return out;
}

std::string ImportReport::text() const {
  const char* const place = binary ? "byte" : "line";
  std::string out =
      formatted("form\n  %s%s\n", binary ? "binary" : "text", release.empty() ? "" : (", release " + release).c_str());
  out += formatted("texts\n  %s, known %s\n", code_page_name(encoding), encodingSource.c_str());
  out += formatted("unit\n  %s%s%s", kUnitNames[static_cast<int>(unit)], unitSource.empty() ? "" : ", known ",
                   unitSource.c_str());
  out += scale != 1 ? formatted("; lengths multiplied by %g\n", scale) : "\n";
  if (offset[0] != 0 || offset[1] != 0)
    out += formatted("offset\n  %.15g, %.15g were taken off x and y\n", offset[0], offset[1]);
  if (!layouts.empty()) {
    out += "sheets\n";
    for (const std::string& name : layouts) out += "  " + name + (name == layout ? " (this one)" : "") + "\n";
  }
  out += "kinds of entity in the file\n";
  for (const Kind& kind : kinds) out += kind_text(kind, place);
  if (!remarks.empty()) out += "remarks\n";
  for (const Remark& remark : remarks) {
    out += formatted("  %d times: ", remark.count) + remark.text;
    out += remark.line ? formatted(" (first at %s %ld)\n", place, remark.line) : "\n";
  }
  if (!complete) out += formatted("broken off\n  at %s %ld\n", place, brokenLine);
  return out;
}

}  // namespace qv

namespace qv::importing {

void ReportBuilder::count(std::string_view kind, const Outcome& outcome, std::size_t at) {
  if (quiet) return;
  constexpr std::size_t kMostKinds = 200;  // the last one stands for all others
  constexpr std::size_t kLongestName = 60;
  kind = kind.substr(0, kLongestName);
  if (last_ >= rows_.size() || rows_[last_].kind.name != kind) {
    last_ = 0;
    while (last_ < rows_.size() && rows_[last_].kind.name != kind) ++last_;
    if (last_ == kMostKinds) --last_;
    if (last_ == rows_.size()) {
      rows_.emplace_back();
      rows_[last_].kind.name = last_ + 1 < kMostKinds ? kind : "others";
      rows_[last_].first = at;
    }
  }
  Row& row = rows_[last_];
  if (outcome.kind == Outcome::Taken) {
    ++row.kind.taken;
  } else if (outcome.kind == Outcome::Converted) {
    if (row.kind.converted++ == 0) row.kind.becomes = outcome.detail;
  } else if (row.kind.leftOut++ == 0) {
    row.kind.reason = outcome.detail;
    row.firstLeftOut = at;
  }
}

void ReportBuilder::note(const char* text, std::size_t at, int times, bool isLoss) {
  if (quiet) return;
  const auto found =
      std::ranges::find(remarks_, std::string_view(text), [](const Note& n) { return std::string_view(n.text); });
  if (found == remarks_.end())
    remarks_.push_back({text, times, at, isLoss});
  else
    found->count += times;
}

void ReportBuilder::clear() {
  rows_.clear();
  remarks_.clear();
  last_ = 0;
  quiet = false;
}

void ReportBuilder::write_to(ImportReport& report) {
  for (Row& row : rows_) {
    row.kind.line = file_.line_of(row.kind.leftOut ? row.firstLeftOut : row.first);
    report.kinds.push_back(std::move(row.kind));
  }
  for (const Note& note : remarks_)
    report.remarks.push_back({note.text, note.count, note.place ? file_.line_of(note.place) : 0, note.loss});
}

}  // namespace qv::importing
