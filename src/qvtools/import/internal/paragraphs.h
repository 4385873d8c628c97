#pragma once

/// Formatted text of several lines: taken apart, broken into lines, and put out line by line.

#include "qvtools/import/internal/job.h"

namespace qv::importing {

/// How a piece of text looks.
struct TextFormat {
  double height = 1;
  double width = 1;    // factor
  double oblique = 0;  // degrees
  int color = -2;      // ACI; -1 the layer's, -2 the whole text's
  int trueColor = -1;
  bool under = false;
  bool over = false;
  bool strike = false;
  friend bool operator==(const TextFormat&, const TextFormat&) = default;
};

/// A piece that is not divided: a word, a blank, a tab, or a fraction.
struct TextPiece {
  enum Kind { Word, Blank, Tab, Fraction, ParagraphEnd, ColumnEnd } kind = Word;
  TextFormat format;
  std::u32string text;  // of a fraction the upper part
  std::u32string lower;
  char32_t divider = 0;  // of a fraction: '/', '#' or '^'
  // Of the paragraph that begins behind its end, in heights of the text.
  double firstIndent = 0;
  double leftIndent = 0;
  double rightIndent = 0;
  char32_t alignment = 0;  // 'l', 'r', 'c', 'j', 'd'; 0 by the attachment
};

/// The pieces of a text with its format codes; the format at its start is given.
std::vector<TextPiece> parse_paragraphs(std::u32string_view text, const TextFormat& start);

struct TextBlock {
  std::u32string text;
  TextFormat format;
  double columnWidth = 0;   // 0: lines are broken at their ends only
  double columnHeight = 0;  // 0: columns end where the text says
  double gutter = 0;
  double lineFactor = 1;
  bool exactPitch = false;  // else larger letters make larger steps
  int attachment = 1;       // 1 to 9, row by row from the top left
  int style = -1;
};

struct TextSize {
  double width = 0;
  double height = 0;
};

/// Puts the text out at the frame's origin. False when a coordinate is no number.
bool put_block(Job& job, const Matrix& frame, const TextBlock& block);
TextSize size_of_block(Job& job, const TextBlock& block);

}  // namespace qv::importing
