#pragma once

/// The sizes and habits that a dimension or leader is drawn with: overrides of its own, its style, the header, or the
/// usual ones.

#include "qvtools/import/internal/job.h"

namespace qv::importing {

/// What stands at an end of a line.
struct Arrow {
  double size = 0;
  double tick = 0;  // of a stroke across; 0 none
  int block = -1;   // of the file, one unit large, its tip to the right; -1: a filled triangle
};

class DimensionStyle {
 public:
  enum End { First, Second, Leader };
  DimensionStyle(Job& job, const Record& record);

  double arrow() const { return size(41, "$DIMASZ", 0.18, 2.5); }
  double tick() const { return size(142, "$DIMTSZ", 0, 0); }
  double extensionGap() const { return size(42, "$DIMEXO", 0.0625, 0.625); }
  double extensionBeyond() const { return size(44, "$DIMEXE", 0.18, 1.25); }
  /// The text style's own where that has one.
  double textHeight() const;
  double gap() const { return std::fabs(size(147, "$DIMGAP", 0.09, 0.625)); }
  double lengthFactor() const;
  bool textAbove() const { return value(77, "$DIMTAD", 0) > 0; }
  bool levelText() const { return value(73, "$DIMTIH", 0) != 0 && !textAbove(); }
  int textStyle() const { return textStyle_; }
  double scale() const { return scale_; }
  /// Remarks on a block that the file lacks.
  Arrow arrow_of(End end) const;

  /// A length as it is written: decimals, the sign between, zeros at the end, what stands around it.
  std::u32string length_text(double v) const;
  /// Radians as degrees.
  std::u32string angle_text(double v) const;

 private:
  const Tag* word(int code) const;
  double value(int code, const char* variable, double otherwise) const;
  double size(int code, const char* variable, double inches, double metric) const;
  std::string number(double v, int decimals, int zeros) const;

  Job& job_;
  std::vector<std::pair<int, double>> own_;
  std::vector<Tag> ownWords_;
  const DimStyle* style_ = nullptr;
  double scale_ = 1;
  int textStyle_ = -1;
};

/// An arrow with its point at `tip`, seen along `direction` (towards the tip). Points in the frame.
bool put_arrow(Job& job, const Matrix& frame, const Arrow& arrow, const Vec& tip, const Vec& direction);

/// The block that a group with a handle names; -1 when there is none.
int block_of_handle(const Job& job, const Tag* handle);

}  // namespace qv::importing
