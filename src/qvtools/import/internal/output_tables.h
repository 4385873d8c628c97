#pragma once

/// The tables of the document that is made: layers, line types and styles, with names that fit their fields.

#include <map>
#include <set>
#include <string>
#include <unordered_map>
#include <unordered_set>
#include <vector>

#include "qvtools/import/internal/drawing.h"
#include "qvtools/import/internal/report_builder.h"

namespace qv::importing {

/// Gives out names of one table that fit a field, each once.
class Names {
 public:
  explicit Names(ReportBuilder& report) : report_(report) {}
  /// The name as it is, or shortened, numbered or changed; remarks on it.
  std::string take(const std::string& wanted);

 private:
  ReportBuilder& report_;
  std::unordered_set<std::string> taken_;
  // The number to try next, by the name that was taken: thousands of names may be shortened to one.
  std::unordered_map<std::string, int> numbers_;
};

/// Which text style a text needs.
struct StyleKey {
  int style = -1;  // of the file; -1 the standard one
  bool chinese = false;
  double oblique = 0;  // degrees
  int generation = 0;  // 2 mirrored left to right, 4 upside down
  friend auto operator<=>(const StyleKey&, const StyleKey&) = default;
};

class OutputTables {
 public:
  /// Lengths of line types are multiplied by the scale.
  OutputTables(Drawing& file, ReportBuilder& report, double scale);

  /// The index of a layer by its name in the file; one that the file's table lacks is added.
  int layer(std::string_view raw);
  const ACAD_LAYER& layer_record(int index) const { return layers_[static_cast<std::size_t>(index)]; }
  int layer_line_type(int layer) const { return layerLineTypes_[static_cast<std::size_t>(layer)]; }

  /// The index of a line type of the file in the document, its dashes scaled; 0 is the continuous one.
  int line_type(int fileIndex, double scale);
  int file_line_type(std::string_view raw) { return file_.lineTypeNames.find(raw, file_.decoder); }
  /// Whether the document's table has no room for the line type.
  bool is_beyond(int lineType) const { return lineType >= static_cast<int>(kMost); }
  const ACAD_LTYPE& line_type_record(int index) const { return lineTypes_[static_cast<std::size_t>(index)]; }

  /// The style that such a text needs; it stays where it is until the next is asked for.
  const ACAD_STYLE& style(StyleKey key);

  std::string block_name(const std::string& wanted) { return blockNames_.take(wanted); }

  /// Puts the tables into the document, and notes what its layers cannot hold.
  void install(DXF& document, DrawingNotes& notes) const;

 private:
  static constexpr std::size_t kMost = 1000;  // entries of a table that the flat reader takes
  int add_layer(const FileLayer& layer);
  void add_standard_style();
  ACAD_STYLE style_record(const StyleKey& key) const;

  Drawing& file_;
  ReportBuilder& report_;
  double scale_;
  Names layerNames_;
  Names lineTypeNames_;
  Names styleNames_;
  Names blockNames_;
  std::vector<ACAD_LAYER> layers_;
  std::vector<int> layerLineTypes_;
  std::vector<ACAD_LTYPE> lineTypes_;
  std::map<std::pair<int, double>, int> scaledTypes_;
  std::vector<ACAD_STYLE> styles_;
  std::map<StyleKey, int> styleIndex_;
};

}  // namespace qv::importing
