#pragma once

/// The font of texts that can be found in a PDF: it has widths and characters, and nothing to draw. Being embedded with
/// its own table of characters, it needs no data of the reader's.

#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

#include "qvtools/plot/internal/pdf_file.h"

namespace qv::detail {

/// The letters of a text that can be found: the code points without control characters.
std::u32string found_letters(std::string_view utf8);

class FoundFont {
 public:
  bool used() const { return object_ != 0; }
  /// The object of the font, which `write` writes.
  int object(PdfFile& file);

  /// The number of a letter in the font, in the order of first use; 0, which is no letter, when it has as many as it
  /// can.
  int code(char32_t letter);
  /// The width of a letter in heights of the text.
  static double width(char32_t letter);

  void write(PdfFile& file) const;

 private:
  std::string widths() const;
  std::string characters() const;

  int object_ = 0;
  std::unordered_map<char32_t, int> codes_;
  std::vector<char32_t> letters_;  // letter i has the code i + 1
};

}  // namespace qv::detail
