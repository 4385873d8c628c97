#pragma once

/// Shape files of any kind (.shx): what they hold, and the plain fonts that `CShx` draws, made of them.
///
/// `CShx` reads text fonts and big fonts whose shapes are vectors. Fonts of others have arcs, shapes within shapes, one
/// Unicode table for all characters, several ranges of lead bytes, or big shapes composed of scaled ones.

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "qvtools/fonts/shx.h"
#include "qvtools/text/code_page.h"

namespace qv {

/// What a shape draws, in units of its file, y upward.
struct ShapeOutline {
  /// Where the pen goes to.
  struct Point {
    double x;
    double y;
    bool drawn;  ///< the way to it from the point before (the first: from the origin)
  };
  /// Where the pen goes; it ends where the next shape begins.
  std::vector<Point> points;
};

/// A shape file in memory. Files that are cut or damaged are refused, or read as far as they are sound; no shape takes
/// more than 65,536 points, and shapes within shapes lie 16 deep at most.
class QV_API ShapeFile {
 public:
  /// What a file is.
  enum class Kind {
    None,     ///< no shape file
    Shapes,   ///< a text font, or single shapes with names
    BigFont,  ///< characters of two bytes
    Unifont   ///< characters by their Unicode numbers
  };
  /// A shape of the file.
  struct Shape {
    int code;           ///< of a big font: its two bytes, the first in the high byte; of a Unifont: the Unicode number
    std::string name;   ///< often empty
    std::size_t begin;  ///< the first byte of its instructions in the file
    std::size_t end;    ///< behind the last
  };

  /// Reads the file. Returns 1, or 0 when it cannot be read or is no whole shape file; `kind` is then None, and `error`
  /// says why.
  int Load(const char* path);
  /// The same for a file in memory.
  int Load(std::string bytes);

  /// What the file is.
  Kind kind() const { return kind_; }
  /// A big font with shapes that are composed of scaled ones.
  bool extended() const { return extended_; }
  /// A font has heights; a file of single shapes has none.
  bool is_font() const { return above_ > 0; }
  /// `CShx` draws all of it as it is.
  bool is_plain() const { return plain_; }
  /// What the font calls itself.
  const std::string& name() const { return name_; }
  /// How far capitals reach above the base line and letters below it, in units of the file.
  double above() const { return above_; }
  double below() const { return below_; }
  /// Why it could not be read.
  const std::string& error() const { return error_; }
  /// Whether that was for lack of memory or a file that cannot be read, whatever it holds.
  bool is_unread() const { return unread_; }

  /// All shapes but the one that describes the font, by rising code; of several with one code, the last of the file.
  const std::vector<Shape>& shapes() const { return shapes_; }
  /// The shape of this code, or of this name (case does not matter); null when there is none.
  const Shape* find(int code) const;
  const Shape* find(std::string_view name) const;
  /// What a shape draws, arcs as straight pieces within `tolerance` units.
  ShapeOutline outline(const Shape& shape, double tolerance) const;

 private:
  class Reader;
  class Runner;
  std::string bytes_;
  std::string name_;
  std::string error_;
  std::vector<Shape> shapes_;
  Kind kind_ = Kind::None;
  bool extended_ = false;
  bool plain_ = false;
  bool unread_ = false;
  double above_ = 0;
  double below_ = 0;
  double cellWidth_ = 0;  // of an extended big font
};

/// What became of a font that was made plain.
struct PlainFont {
  std::string bytes;  ///< the file; empty when nothing of the font can be used
  int taken = 0;      ///< characters
  int without = 0;    ///< characters left out: the plain form has no room for their codes
  int tooLong = 0;    ///< and for their many strokes
};

/// The text font of a file: the characters of single bytes, by the code page for a Unifont. Bytes 127, 128 and 129 are
/// the signs for degrees, plus-minus and diameter, as `CShx` has them. Arcs become straight pieces within 1/100 of the
/// height of capitals.
QV_API PlainFont plain_text_font(const ShapeFile& file, CodePage page = CodePage::Windows1252);
/// The big font of a file: its characters of GB2312, by the code page that its codes are in; a Unifont's by their
/// numbers.
QV_API PlainFont plain_big_font(const ShapeFile& file, CodePage page = CodePage::Gbk);

}  // namespace qv
