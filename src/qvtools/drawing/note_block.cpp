#include "qvtools/drawing/note_block.h"

#include <algorithm>
#include <iterator>

#include "qvtools/text/gbk_text.h"

namespace qv {

namespace {

/// Marks that never begin a line: closing brackets and stops, of one byte and of two.
bool closes(std::string_view character) {
  constexpr std::string_view kMarks[] = {",",        ".",        ";",        ":",        ")",
                                         "%",        "\xA1\xA2", "\xA1\xA3", "\xA1\xB1", "\xA1\xB7",
                                         "\xA3\xAC", "\xA3\xBB", "\xA3\xBA", "\xA3\xA9", "\xA3\xAE"};
  return std::ranges::find(kMarks, character) != std::end(kMarks);
}

bool is_digit(char c) {
  return c >= '0' && c <= '9';
}

bool is_letter(char c) {
  return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z');
}

/// Whether a blank holds a number and its unit together ("17.40 m"), or a standard and its number ("GB/T 50001").
bool holds_together(std::string_view before, std::string_view after) {
  before = before.substr(0, before.find_last_not_of(' ') + 1);
  if (before.empty()) return false;
  const std::string_view word = before.substr(before.find_last_of(' ') + 1);
  const bool isName = std::ranges::all_of(word, [](char c) { return (c >= 'A' && c <= 'Z') || c == '/'; });
  return (is_digit(before.back()) && is_letter(after[0])) || (isName && is_digit(after[0]));
}

/// The pieces between which a line may be broken: a Chinese character, or a word with the blanks behind it, each with
/// the closing marks that follow. With `whole` numbers stay with their units.
std::vector<std::string> pieces(std::string_view text, bool whole) {
  std::vector<std::string> pieces;
  const std::string ended(text);
  bool word = false;  // whether the last piece goes on
  for (const char* at = ended.c_str(); *at;) {
    const std::size_t n = char_length(at);
    const std::string_view character(at, n);
    const bool blank = character == " ";
    const bool afterBlank = !pieces.empty() && pieces.back().back() == ' ';
    const bool joins = !pieces.empty() && (blank || closes(character) || (word && n == 1 && !afterBlank) ||
                                           (whole && word && afterBlank && holds_together(pieces.back(), character)));
    if (joins)
      pieces.back() += character;
    else
      pieces.emplace_back(character);
    if (!blank && !closes(character)) word = n == 1;
    at += n;
  }
  return pieces;
}

std::string without_blanks_behind(std::string text) {
  while (!text.empty() && text.back() == ' ') text.pop_back();
  return text;
}

}  // namespace

std::vector<std::string> WrapText(std::string_view text, float height, float width) {
  constexpr std::size_t kMostBytes = kContentsSize - 1;
  std::vector<std::string> lines(1);
  const auto fits = [&](const std::string& line) {
    const std::string seen = without_blanks_behind(line);
    return seen.size() <= kMostBytes && SheetTextWidth(seen.c_str(), height) <= width;
  };
  const auto add = [&](const std::string& piece) {
    if (lines.back().empty() || fits(lines.back() + piece))
      lines.back() += piece;
    else
      lines.push_back(piece);
  };
  for (const std::string& piece : pieces(text, true)) {
    if (fits(piece))
      add(piece);
    else
      for (const std::string& part : pieces(piece, false)) add(part);
  }
  for (std::string& line : lines) line = without_blanks_behind(std::move(line));
  return lines;
}

CFRect NoteBlock::Draw(CBase_SGT& sgt, float x, float top, double width) const {
  const auto scaled = [&](double mm) { return static_cast<float>(mm * sgt.m_fBiLiChi); };
  const float height = scaled(look_.textHeight);
  const float step = scaled(look_.textHeight * look_.lineStep);
  const float right = x + scaled(width);
  float y = top;
  if (!title_.empty()) {
    y -= scaled(look_.titleHeight);
    DrawSheetText(sgt, x, y, scaled(look_.titleHeight), title_.c_str());
    y -= step / 2;
  }
  const std::string widest = std::to_string(notes_.size()) + ". ";
  const float inset = look_.numbered ? SheetTextWidth(widest.c_str(), height) : 0;
  int number = 0;
  for (const std::string& note : notes_) {
    bool first = true;
    for (const std::string& line : WrapText(note, height, right - x - inset)) {
      y -= y == top ? height : step;
      if (first && look_.numbered) DrawSheetText(sgt, x, y, height, (std::to_string(++number) + ".").c_str());
      first = false;
      DrawSheetText(sgt, x + inset, y, height, line.c_str());
    }
  }
  return {x, y, right, top};
}

}  // namespace qv
