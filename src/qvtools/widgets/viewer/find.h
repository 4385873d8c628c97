#pragma once

/// Finding texts in a drawing, those of blocks too. Nothing here needs a screen.

#include <string>
#include <vector>

#include "qvtools/widgets/viewer/drawing.h"

namespace qv::viewer {

/// What is looked for.
struct FindWhat {
  std::string words;       ///< UTF-8
  bool matchCase = false;  ///< capitals and small letters differ
  bool wholeWord = false;  ///< whole words: no letter or digit beside them
};

/// A text that was found.
struct Hit {
  int entity;         ///< the text, or the insert that shows it
  std::string words;  ///< the text's contents, UTF-8
  std::string layer;  ///< the text's, GBK
  CFRect box;         ///< where it is seen
  double height;      ///< of its letters
};

/// The shown texts that hold the words, in drawing order. Full-width letters and digits count as their narrow ones, and
/// the fonts' signs as what is typed for them ("%%c" and "Φ", "%%d" and "°", "%%p" and "±").
std::vector<Hit> find_texts(Drawing& drawing, const FindWhat& what, const ViewAngles& angles);

/// Whether a text, UTF-8, holds the words.
bool holds_words(const std::string& text, const FindWhat& what);

}  // namespace qv::viewer
