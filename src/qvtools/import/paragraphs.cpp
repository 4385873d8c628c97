#include "qvtools/import/internal/paragraphs.h"

#include <algorithm>

namespace qv::importing {

namespace {

constexpr double kFractionHeight = 0.7;
constexpr double kFractionGap = 0.1;  // between a fraction's parts and the line between them, of the text's height
constexpr double kPitch = 5.0 / 3;    // between base lines, of the height
constexpr double kTab = 4;            // heights

/// A stretch that one record can hold, on its line.
struct Placed {
  double x = 0;
  double width = 0;
  const TextPiece* fraction = nullptr;
  TextFormat format;
  std::u32string text;
};

struct Line {
  std::vector<Placed> parts;
  double width = 0;
  double height = 0;  // of its highest letters
  double room = 0;    // between its indents; 0 without bounds
  double indent = 0;
  char32_t alignment = 0;
  bool columnEnd = false;
};

class Typesetter {
 public:
  Typesetter(Job& job, const TextBlock& block)
      : job_(job), block_(block), wideSigns_(job.file.decoder.page == CodePage::Gbk) {
    pieces_ = parse_paragraphs(block.text, block.format);
    break_lines();
    place_lines();
  }

  TextSize size() const { return {width_, height_}; }
  bool put(const Matrix& frame);

 private:
  double measure(const std::u32string& text, const TextFormat& format) const {
    return text_width(font_text(text, wideSigns_).bytes, format.height, format.width);
  }
  TextFormat small(TextFormat format) const {
    format.height *= kFractionHeight;
    return format;
  }
  double width_of(const TextPiece& piece, double x) const;
  void begin_line(const TextPiece* paragraph, bool first);
  void end_line(bool columnEnd = false);
  void add(const TextPiece& piece, double width);
  void break_lines();
  void place_lines();
  double start_of(const Line& line) const;
  bool put_part(const Matrix& frame, const Placed& part, double x, double y);
  bool put_fraction(const Matrix& frame, const Placed& part, double x, double y);
  bool put_letters(const Matrix& frame, const std::u32string& text, const TextFormat& format, double x, double y);

  Job& job_;
  const TextBlock& block_;
  bool wideSigns_;
  std::vector<TextPiece> pieces_;
  std::vector<Line> lines_;
  Line line_;
  double blanks_ = 0;  // at the end of the line, which do not count there
  struct Spot {
    double column;
    double y;
  };
  std::vector<Spot> spots_;  // of the lines' base lines
  double columnWidth_ = 0;
  double width_ = 0;
  double height_ = 0;
};

double Typesetter::width_of(const TextPiece& piece, double x) const {
  switch (piece.kind) {
    case TextPiece::Word:
      return measure(piece.text, piece.format);
    case TextPiece::Blank:
      return measure(U" ", piece.format);
    case TextPiece::Tab: {
      const double step = kTab * block_.format.height;
      return step * (std::floor(x / step + 1e-6) + 1) - x;
    }
    case TextPiece::Fraction: {
      const double upper = measure(piece.text, small(piece.format));
      const double lower = measure(piece.lower, small(piece.format));
      return piece.divider == '#' ? upper + lower + 0.3 * piece.format.height : std::max(upper, lower);
    }
    default:
      return 0;
  }
}

void Typesetter::begin_line(const TextPiece* paragraph, bool first) {
  line_ = {};
  blanks_ = 0;
  const double unit = block_.format.height;
  const double left = paragraph ? paragraph->leftIndent * unit : 0;
  const double own = paragraph && first ? paragraph->firstIndent * unit : 0;
  const double right = paragraph ? paragraph->rightIndent * unit : 0;
  line_.indent = std::max(0.0, left + own);
  line_.room = block_.columnWidth > 0 ? std::max(block_.columnWidth - line_.indent - right, unit) : 0;
  line_.alignment = paragraph ? paragraph->alignment : 0;
}

void Typesetter::end_line(bool columnEnd) {
  line_.columnEnd = columnEnd;
  line_.width -= blanks_;
  if (line_.height == 0) line_.height = lines_.empty() ? block_.format.height : lines_.back().height;
  lines_.push_back(std::move(line_));
}

void Typesetter::add(const TextPiece& piece, double width) {
  const bool blank = piece.kind == TextPiece::Blank;
  const bool joins = !line_.parts.empty() && !line_.parts.back().fraction && piece.kind != TextPiece::Fraction &&
                     piece.kind != TextPiece::Tab && line_.parts.back().format == piece.format &&
                     line_.parts.back().x + line_.parts.back().width >= line_.width - 1e-9;
  if (piece.kind == TextPiece::Tab) {
    // Nothing to draw.
  } else if (joins) {
    line_.parts.back().text += blank ? std::u32string(U" ") : piece.text;
    line_.parts.back().width += width;
  } else if (!blank || piece.format.under || piece.format.over || piece.format.strike || !line_.parts.empty()) {
    Placed part;
    part.x = line_.width;
    part.width = width;
    part.fraction = piece.kind == TextPiece::Fraction ? &piece : nullptr;
    part.format = piece.format;
    part.text = blank ? U" " : piece.text;
    line_.parts.push_back(std::move(part));
  }
  line_.width += width;
  blanks_ = blank ? blanks_ + width : 0;
  if (!blank) line_.height = std::max(line_.height, piece.format.height);
}

void Typesetter::break_lines() {
  const TextPiece* paragraph = nullptr;
  // Indents that stand in the first paragraph's own text hold for it.
  if (!pieces_.empty()) paragraph = &pieces_[0];
  begin_line(paragraph, true);
  for (std::size_t i = 0; i < pieces_.size(); ++i) {
    const TextPiece& piece = pieces_[i];
    if (piece.kind == TextPiece::ParagraphEnd || piece.kind == TextPiece::ColumnEnd) {
      if (line_.height == 0) line_.height = piece.format.height;
      end_line(piece.kind == TextPiece::ColumnEnd);
      paragraph = i + 1 < pieces_.size() ? &pieces_[i + 1] : &piece;
      begin_line(paragraph, true);
      continue;
    }
    double width = width_of(piece, line_.width);
    // A word of several formats is not divided between them; its pieces follow each other at once.
    double whole = width;
    if (piece.kind == TextPiece::Word && (i == 0 || pieces_[i - 1].kind != TextPiece::Word))
      for (std::size_t j = i + 1;
           j < pieces_.size() && j < i + 8 && pieces_[j].kind == TextPiece::Word && pieces_[j].text[0] < 0x2E80; ++j)
        whole += width_of(pieces_[j], 0);
    const bool breakable = piece.kind != TextPiece::Blank && line_.width > 0;
    const bool goesOn = piece.kind == TextPiece::Word && i > 0 && pieces_[i - 1].kind == TextPiece::Word &&
                        piece.text[0] < 0x2E80 && pieces_[i - 1].text[0] < 0x2E80;
    if (line_.room > 0 && breakable && !goesOn && line_.width + whole > line_.room * (1 + 1e-6)) {
      end_line();
      begin_line(paragraph, false);
      width = width_of(piece, 0);
    }
    add(piece, width);
  }
  end_line();
}

void Typesetter::place_lines() {
  columnWidth_ = block_.columnWidth;
  if (columnWidth_ <= 0)
    for (const Line& line : lines_) columnWidth_ = std::max(columnWidth_, line.indent + line.width);
  double column = 0;
  double y = 0;
  bool first = true;
  for (const Line& line : lines_) {
    const double pitch = kPitch * block_.lineFactor * (block_.exactPitch ? block_.format.height : line.height);
    double next = first ? -line.height : y - pitch;
    if (!first && block_.columnHeight > 0 && -next > block_.columnHeight * (1 + 1e-6)) {
      column += columnWidth_ + block_.gutter;
      next = -line.height;
    }
    y = next;
    spots_.push_back({column, y});
    height_ = std::max(height_, -y);
    first = line.columnEnd;
    if (line.columnEnd) column += columnWidth_ + block_.gutter;
  }
  width_ = column + columnWidth_;
}

double Typesetter::start_of(const Line& line) const {
  const int across = (block_.attachment - 1) % 3;
  double share = across == 1 ? 0.5 : across == 2 ? 1 : 0;
  if (line.alignment == 'l' || line.alignment == 'j' || line.alignment == 'd') share = 0;
  if (line.alignment == 'c') share = 0.5;
  if (line.alignment == 'r') share = 1;
  const double room = line.room > 0 ? line.room : columnWidth_ - line.indent;
  return line.indent + share * (room - line.width);
}

bool Typesetter::put(const Matrix& frame) {
  const int across = (block_.attachment - 1) % 3;
  const int down = (block_.attachment - 1) / 3;
  const double left = across == 1 ? -width_ / 2 : across == 2 ? -width_ : 0;
  const double top = down == 1 ? height_ / 2 : down == 2 ? height_ : 0;
  bool good = true;
  for (std::size_t i = 0; i < lines_.size(); ++i) {
    const double x = left + spots_[i].column + start_of(lines_[i]);
    for (const Placed& part : lines_[i].parts) good = put_part(frame, part, x + part.x, top + spots_[i].y) && good;
  }
  return good;
}

bool Typesetter::put_part(const Matrix& frame, const Placed& part, double x, double y) {
  const Look look = job_.out.look;
  if (part.format.color != -2) {
    job_.out.look.color = part.format.color;
    job_.out.look.trueColor = part.format.trueColor;
  }
  const bool good = part.fraction ? put_fraction(frame, part, x, y) : put_letters(frame, part.text, part.format, x, y);
  job_.out.look = look;
  return good;
}

bool Typesetter::put_letters(const Matrix& frame, const std::u32string& text, const TextFormat& format, double x,
                             double y) {
  Lettering lettering;
  lettering.text = text;
  if (!format.under && !format.over && !format.strike)
    while (!lettering.text.empty() && lettering.text.back() == ' ') lettering.text.pop_back();
  lettering.at = {x, y, 0};
  lettering.height = format.height;
  lettering.width = format.width;
  lettering.oblique = format.oblique;
  lettering.style = block_.style;
  lettering.codes = false;
  lettering.under = format.under;
  lettering.over = format.over;
  lettering.strike = format.strike;
  return put_text(job_, frame, lettering);
}

bool Typesetter::put_fraction(const Matrix& frame, const Placed& part, double x, double y) {
  const TextPiece& piece = *part.fraction;
  const TextFormat format = small(piece.format);
  const double h = piece.format.height;
  const double upper = measure(piece.text, format);
  const double lower = measure(piece.lower, format);
  if (piece.divider == '#') {
    const bool good = put_letters(frame, piece.text, format, x, y + 0.5 * h) &&
                      put_letters(frame, piece.lower, format, x + upper + 0.3 * h, y - 0.2 * h);
    return job_.out.line(frame({x + upper, y - 0.2 * h, 0}), frame({x + upper + 0.3 * h, y + 1.2 * h, 0})) && good;
  }
  const double gap = piece.divider == '/' ? kFractionGap : kFractionGap / 2;
  // Tolerances stand at the left, fractions in the middle of each other.
  const double share = piece.divider == '/' ? 0.5 : 0;
  const bool good =
      put_letters(frame, piece.text, format, x + share * (part.width - upper), y + (0.5 + gap) * h) &&
      put_letters(frame, piece.lower, format, x + share * (part.width - lower), y + (0.5 - gap - kFractionHeight) * h);
  if (piece.divider != '/') return good;
  return job_.out.line(frame({x, y + 0.5 * h, 0}), frame({x + part.width, y + 0.5 * h, 0})) && good;
}

}  // namespace

bool put_block(Job& job, const Matrix& frame, const TextBlock& block) {
  if (!(block.format.height > 0) || !std::isfinite(block.format.height)) return false;
  return Typesetter(job, block).put(frame);
}

TextSize size_of_block(Job& job, const TextBlock& block) {
  return Typesetter(job, block).size();
}

}  // namespace qv::importing
