#pragma once

/// How a drawing is shown: what the display, prepared drawings, viewers, pictures and plots take beside a device and a
/// transform.

#include <array>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "qvtools/platform/device.h"

namespace qv {

/// The colours of the numbers 0 to 255 on a device.
using Palette = std::array<COLORREF, 256>;

/// The palette of 256 colours that drawings of other programs are made for: 1 red, 2 yellow, 3 green, 4 cyan, 5 blue,
/// 6 magenta, 7 white, two greys, 24 hues in ten shades each from 10 on, six greys from 250 on.
QV_API const Palette& StandardPalette();

/// The pattern of a line type: dashes above 0, gaps below, dots 0.
struct DashPattern {
  std::vector<double> elements;
  double length = 0;  ///< of all of them; 0 for a solid line
};

/// The patterns of line types by their names, in drawing units.
class QV_API LinePatterns {
 public:
  /// Adds a line type; one without both a gap and something to draw is solid. The first of a name counts.
  void add(const char* name, std::span<const float> elements);
  /// The pattern of a name; null for a solid line, and for a name that is not there.
  const DashPattern* find(std::string_view name) const;

 private:
  struct Entry {
    std::string name;
    DashPattern pattern;
  };
  std::vector<Entry> entries_;  // by name
};

/// No patterns: all lines are solid.
QV_API const LinePatterns& SolidLines();

/// The default value shows what `DXF::Draw` has always shown.
struct Appearance {
  /// The colours of the numbers 0 to 255, not owned. Null, and any other number, for `ACAD_ENTITY::GetColor`; in
  /// pictures and plots, where white is black on light ground, for `StandardPalette`.
  const Palette* palette = nullptr;
  /// The patterns by which lines, arcs, circles and thin polylines are dashed, not owned: in drawing units, through
  /// corners and along arcs. Null for the pen styles that names of line types ask for; in pictures and plots for the
  /// patterns of the drawing's own line types.
  const LinePatterns* patterns = nullptr;
  /// A pattern that is shorter, in pixels or on a plot in millimetres, is drawn as a solid line.
  double shortestPattern = 3;
};

}  // namespace qv
