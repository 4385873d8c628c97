#pragma once

/// What stands in the title block and the counter-sign block of a sheet. `Draw_TuKuang` draws the blocks with the
/// captions of the title block; these fill them.

#include <array>
#include <string>
#include <vector>

#include "qvtools/drawing/fitted_text.h"
#include "qvtools/drawing/sheet_frame.h"

namespace qv {

/// The cells of the title block that are filled.
enum class TitleEntry {
  Office,          ///< the design office, in the large cell on the left
  Project,         ///< name of the project
  Drawing,         ///< name of the drawing
  ProfessionLead,  ///< persons
  ProjectLead,
  Design,
  Check,
  Review,
  Approve,
  Number,  ///< number of the drawing
  Date
};

/// The title block of a sheet. It holds no reference to the composer.
class QV_API TitleBlock {
 public:
  /// The block of a sheet.
  explicit TitleBlock(const SheetFrame& sheet) : block_(sheet.title) {}
  /// The block whose lower right corner `Draw_BiaoTiLan` was given, at the composer's scale.
  TitleBlock(const CBase_SGT& sgt, float right, float bottom);

  /// The rectangle of a cell in the caller's frame.
  CFRect Cell(TitleEntry entry) const;
  /// Writes the text (GBK) into its cell, in the current colour and layer, centred, narrower when it is too long.
  /// `height` in drawing mm; 0: 7 mm for the office, 5 for project and drawing, 3.5 for the others.
  void Fill(CBase_SGT& sgt, TitleEntry entry, const char* text, double height = 0) const;

 private:
  CFRect block_;
};

/// The counter-sign block of a sheet: its upper row holds the captions, three rows a profession, a person and a date.
class QV_API CounterSignBlock {
 public:
  /// Rows, that of the captions included, and columns.
  static constexpr int kRows = 4;
  static constexpr int kColumns = 3;
  /// One row of the block, GBK.
  struct Entry {
    std::string profession;
    std::string person;
    std::string date;
  };

  /// The block of a sheet.
  explicit CounterSignBlock(const SheetFrame& sheet) : block_(sheet.countersign), turned_(sheet.countersignTurned) {}

  /// The rectangle of a cell; row 0 is that of the captions, as one reads the block.
  CFRect Cell(int row, int column) const;
  /// Writes the captions and up to three entries (GBK), 2.5 mm high; entries beyond three are left out.
  void Fill(CBase_SGT& sgt, const std::vector<Entry>& entries) const;

 private:
  CFRect block_;
  bool turned_;
};

}  // namespace qv
