#pragma once

/// Notes on a sheet: a title, and numbered paragraphs that are wrapped at a width.

#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "qvtools/drawing/fitted_text.h"

namespace qv {

/// The lines of a text (GBK) that are no wider than `width`, in the unit of the height: broken between Chinese
/// characters and at blanks, never before a closing mark, between a number and its unit ("17.40 m") only where both are
/// wider than a line, and after 99 bytes at the latest, which is what a record of a
/// text holds. A word that is wider stands alone and stands out. Never empty.
QV_API std::vector<std::string> WrapText(std::string_view text, float height, float width);

/// A block of notes, to be drawn once or more.
class QV_API NoteBlock {
 public:
  /// How the notes are set.
  struct Look {
    double textHeight = 3.5;  ///< drawing mm
    double titleHeight = 5;   ///< drawing mm
    double lineStep = 1.7;    ///< from one base line to the next, in text heights
    bool numbered = true;     ///< "1." and so on before each note, whose further lines are set in
  };

  /// A title, which may be empty, and the notes, all GBK.
  NoteBlock(std::string title, std::vector<std::string> notes) : title_(std::move(title)), notes_(std::move(notes)) {}
  NoteBlock(std::string title, std::vector<std::string> notes, const Look& look)
      : title_(std::move(title)), notes_(std::move(notes)), look_(look) {}

  /// Draws the block with its upper left corner at (x, top) in the caller's frame, `width` drawing mm wide, in the
  /// current colour and layer; an empty title takes no room. Returns its rectangle.
  CFRect Draw(CBase_SGT& sgt, float x, float top, double width) const;

 private:
  std::string title_;
  std::vector<std::string> notes_;
  Look look_;
};

}  // namespace qv
