#pragma once

/// Counts what becomes of entities while they are converted.

#include <string_view>
#include <unordered_map>

#include "qvtools/import/import.h"
#include "qvtools/import/internal/drawing.h"

namespace qv::importing {

/// What became of one entity.
struct Outcome {
  enum Kind { Taken, Converted, LeftOut } kind = Taken;
  const char* detail = nullptr;  // what it became, or why it was left out; texts that live for ever
};
inline constexpr Outcome kTaken{};
constexpr Outcome converted(const char* becomes) {
  return {Outcome::Converted, becomes};
}
constexpr Outcome left_out(const char* reason) {
  return {Outcome::LeftOut, reason};
}

class ReportBuilder {
 public:
  explicit ReportBuilder(Drawing& file) : file_(file) {}

  void count(std::string_view kind, const Outcome& outcome, std::size_t place);
  /// Remarks on something; equal texts are counted. The text lives for ever.
  void remark(const char* text, std::size_t at = 0, int times = 1) { note(text, at, times, false); }
  /// The same for what the drawing does not show as it should.
  void loss(const char* text, std::size_t at = 0, int times = 1) { note(text, at, times, true); }
  /// Counting is off while what has been counted is converted again.
  bool quiet = false;
  /// Where the entity that is converted begins.
  std::size_t place = 0;

  void clear();
  void write_to(ImportReport& report);

 private:
  void note(const char* text, std::size_t at, int times, bool isLoss);
  struct Row {
    ImportReport::Kind kind;
    std::size_t first = 0;
    std::size_t firstLeftOut = 0;
  };
  struct Note {
    const char* text;
    int count;
    std::size_t place;
    bool loss;
  };
  Drawing& file_;
  std::vector<Row> rows_;
  std::size_t last_ = 0;
  std::vector<Note> remarks_;
};

}  // namespace qv::importing
