#pragma once

/// Pens of plots: which width, colour and screening an entity gets by its colour, layer and line type.

#include <bitset>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace qv {

/// In which colours a plot is drawn.
enum class PlotColors : char { Black, Grey, Color };

/// One line of a table of pens.
struct PenRule {
  enum class By : char { Anything, Color, Layer, LineType };
  By by = By::Anything;     ///< what the rule looks at
  std::bitset<256> colors;  ///< for `By::Color`: the colour numbers, BYLAYER resolved
  std::string pattern;      ///< for a layer or line type: its name, "*" for any letters and "?" for one; GBK
  double width = -1;        ///< in mm; 0 the thinnest line, -1 the entity's own line weight
  bool ownWidth = false;    ///< an entity or layer with a line weight of its own keeps it
  int color = -1;           ///< 0xRRGGBB; -1 the entity's own
  double screening = 100;   ///< in percent: 100 the full colour, 0 white
};

/// The line weight of entities that have none, in mm.
inline constexpr double kDefaultLineWeight = 0.25;
/// The thinnest line that is plotted, in mm: that of a width of 0.
inline constexpr double kThinnestLine = 0.05;
/// The shortest pattern of a line type that is plotted, in mm.
inline constexpr double kShortestPlotted = 0.35;

/// A table of pens; the first rule that matches counts. Entities that no rule matches have their own line weight and
/// colour.
///
/// The text form, line by line; what follows a ";" is a comment, letters are of either case:
///
///     color 1-4,6 -> 0.35 black          width in mm, colour as name or #rrggbb
///     layer BEAM* -> 0.7                 the colour stays
///     ltype DASHED -> 0.18 50%           screening
///     any -> 0.25 weight                 line weights of the drawing go first
class PenTable {
 public:
  /// The built-in tables: "object" (line weights and colours of the drawing), "mono" (the same, black), and the widths
  /// of GB/T 50001 for the thick line b: "GB b=1.4", "GB b=1.0", "GB b=0.7" and "GB b=0.5", which give colour 6 b, 4
  /// 0.7b, red, blue and greys 0.25b and all others 0.5b, black, unless the drawing has line weights.
  static std::optional<PenTable> built_in(std::string_view name);
  static std::span<const char* const> built_in_names();

  /// Parses the text form. The empty value for a line that is none; `problem` says which and why.
  static std::optional<PenTable> parse(std::string_view text, std::string& problem);
  /// Reads a file in the text form, or a CTB file as CAD programs have them (source: ASCII within zlib behind a head of
  /// 60 bytes; one style for each of the colours 1 to 255). The empty value when it cannot be read; `problem` says why.
  static std::optional<PenTable> read(const char* path, std::string& problem);

  /// The rule for an entity; null when there is none.
  const PenRule* find(int color, std::string_view layer, std::string_view ltype) const;
  /// All rules, in order.
  const std::vector<PenRule>& rules() const { return rules_; }

 private:
  std::vector<PenRule> rules_;
};

}  // namespace qv
