// The format codes of texts of several lines.

#include <optional>

#include "qvtools/import/internal/paragraphs.h"

namespace qv::importing {

namespace {

class Parser {
 public:
  Parser(std::u32string_view text, const TextFormat& start) : text_(text), format_(start) {}

  std::vector<TextPiece> run() {
    while (at_ < text_.size()) step();
    end_word();
    return std::move(pieces_);
  }

 private:
  static constexpr std::size_t kDeepest = 128;

  char32_t peek(std::size_t ahead = 0) const { return at_ + ahead < text_.size() ? text_[at_ + ahead] : 0; }

  void step() {
    const char32_t c = text_[at_];
    if (c == '\\' && at_ + 1 < text_.size()) {
      ++at_;
      return take_code();
    }
    if (c == '{') {
      if (stack_.size() < kDeepest) stack_.push_back(format_);
      ++at_;
    } else if (c == '}') {
      end_word();
      if (!stack_.empty()) {
        format_ = stack_.back();
        stack_.pop_back();
      }
      ++at_;
    } else if (c == '%' && peek(1) == '%') {
      take_percent();
    } else if (c == '^' && at_ + 1 < text_.size()) {
      take_caret();
    } else if (c == ' ' || c == '\t' || c == '\n') {
      ++at_;
      add(c == ' ' ? TextPiece::Blank : c == '\t' ? TextPiece::Tab : TextPiece::ParagraphEnd);
    } else {
      ++at_;
      if (c >= ' ') letter(c);
    }
  }

  /// Chinese letters are words of their own: lines are broken between them.
  static bool stands_alone(char32_t c) { return c >= 0x2E80 && c < 0xE000; }

  void letter(char32_t c) {
    if (word_.empty()) wordFormat_ = format_;
    if (format_ != wordFormat_ || stands_alone(c)) {
      end_word();
      wordFormat_ = format_;
    }
    word_.push_back(c);
    if (stands_alone(c)) end_word();
  }

  void end_word() {
    if (word_.empty()) return;
    push(TextPiece::Word, wordFormat_);
    pieces_.back().text = std::move(word_);
    word_.clear();
  }

  void add(TextPiece::Kind kind) {
    end_word();
    push(kind, format_);
  }

  void push(TextPiece::Kind kind, const TextFormat& format) {
    TextPiece& piece = pieces_.emplace_back();
    piece.kind = kind;
    piece.format = format;
    piece.firstIndent = first_;
    piece.leftIndent = left_;
    piece.rightIndent = right_;
    piece.alignment = alignment_;
  }

  void take_percent() {
    const char32_t c = peek(2);
    if (const char32_t sign = special_sign(c)) {
      letter(sign);
      at_ += 3;
    } else if (c >= '0' && c <= '9') {
      unsigned code = 0;
      at_ += 2;
      for (int n = 0; n < 3 && peek() >= '0' && peek() <= '9'; ++n)
        code = code * 10 + static_cast<unsigned>(text_[at_++] - '0');
      if (code >= 32 && code < 256) letter(code < 127 ? code : kSignBase + code);
    } else if ((c | 0x20) == 'u' || (c | 0x20) == 'o' || (c | 0x20) == 'k') {
      end_word();
      bool& stroke = (c | 0x20) == 'u' ? format_.under : (c | 0x20) == 'o' ? format_.over : format_.strike;
      stroke = !stroke;
      at_ += 3;
    } else {
      letter('%');
      at_ += c == '%' ? 3 : 1;
    }
  }

  void take_caret() {
    const char32_t c = peek(1);
    at_ += 2;
    if (c == ' ') return letter('^');
    if (c == 'I') return add(TextPiece::Tab);
    if (c == 'J') return add(TextPiece::ParagraphEnd);
    if (c < '?' || c > '~') return letter('^'), static_cast<void>(--at_);
    const char32_t shifted = c ^ 0x40U;
    if (shifted >= ' ' && shifted < 0x7F) letter(shifted);  // control characters show nothing
  }

  /// The letters up to the semicolon, which is taken too; what has none goes to the end where it must have one.
  std::u32string_view argument() {
    const std::size_t from = at_;
    while (at_ < text_.size() && text_[at_] != ';') ++at_;
    const std::u32string_view result = text_.substr(from, at_ - from);
    if (at_ < text_.size()) ++at_;
    return result;
  }

  /// A number behind a code, whose semicolon may be missing; whether an x stands behind it.
  std::optional<double> number(bool* factor = nullptr) {
    std::string digits;
    while (at_ < text_.size() && digits.size() < 40) {
      const char32_t c = text_[at_];
      const bool part = (c >= '0' && c <= '9') || c == '.' || ((c == '-' || c == '+') && digits.empty());
      if (!part) break;
      digits += static_cast<char>(c);
      ++at_;
    }
    if (factor && (peek() | 0x20) == 'x') {
      *factor = true;
      ++at_;
    }
    if (peek() == ';') ++at_;
    if (digits.empty()) return std::nullopt;
    return real_of(Tag{0, false, 0, digits});
  }

  void take_height() {
    bool factor = false;
    const std::optional<double> v = number(&factor);
    if (v && *v > 0) format_.height = factor ? format_.height * *v : *v;
  }

  void take_paragraph_format() {
    std::u32string_view rest = argument();
    while (!rest.empty()) {
      const std::size_t end = rest.find(U',');
      const std::u32string_view part = rest.substr(0, end);
      rest.remove_prefix(end == std::u32string_view::npos ? rest.size() : end + 1);
      if (part.empty()) continue;
      std::string digits;
      for (const char32_t c : part.substr(1)) digits += c < 0x80 ? static_cast<char>(c) : '?';
      const double v = digits == "*" ? 0 : real_of(Tag{0, false, 0, digits});
      if (part[0] == 'i') first_ = v;
      if (part[0] == 'l') left_ = v;
      if (part[0] == 'r') right_ = v;
      if (part[0] == 'q' && part.size() > 1) alignment_ = part[1];
      if (part[0] == 't') break;  // tab stops
    }
  }

  void take_fraction() {
    std::u32string parts[2];
    int n = 0;
    char32_t divider = 0;
    while (at_ < text_.size() && text_[at_] != ';') {
      char32_t c = text_[at_++];
      if (c == '\\' && at_ < text_.size()) {
        c = text_[at_++];
      } else if (divider == 0 && (c == '^' || c == '/' || c == '#')) {
        divider = c;
        n = 1;
        continue;
      }
      if (c == ' ' && n == 1 && parts[1].empty()) continue;
      if (c >= ' ') parts[n].push_back(c);
    }
    if (at_ < text_.size()) ++at_;
    add(TextPiece::Fraction);
    pieces_.back().text = std::move(parts[0]);
    pieces_.back().lower = std::move(parts[1]);
    pieces_.back().divider = divider;
  }

  void take_color(bool trueColor) {
    const std::optional<double> v = number();
    if (!v) return;
    const int n = static_cast<int>(std::clamp(*v, 0.0, 16777216.0));
    if (trueColor) {
      format_.trueColor = (n & 255) << 16 | (n & 0xFF00) | n >> 16;  // blue stands highest
      format_.color = nearest_color(format_.trueColor);
    } else if (n <= 256) {
      format_.trueColor = -1;
      format_.color = n == 256 ? -1 : n == 0 ? -2 : n;
    }
  }

  void take_code() {
    const char32_t c = text_[at_++];
    switch (c) {
      case 'P':
      case 'X':
        return add(TextPiece::ParagraphEnd);
      case 'N':
        return add(TextPiece::ColumnEnd);
      case '~':
        return letter(0x20);
      case '\\':
      case '{':
      case '}':
        return letter(c);
      case 'L':
      case 'l':
        end_word();
        format_.under = c == 'L';
        return;
      case 'O':
      case 'o':
        end_word();
        format_.over = c == 'O';
        return;
      case 'K':
      case 'k':
        end_word();
        format_.strike = c == 'K';
        return;
      case 'A':
      case 'T':
        number(nullptr);
        return;
      case 'H':
        return take_height();
      case 'W': {
        bool factor = false;
        const std::optional<double> v = number(&factor);
        if (v && *v > 0) format_.width = *v * (factor ? format_.width : 1);
        return;
      }
      case 'Q':
        format_.oblique = number().value_or(0);
        return;
      case 'C':
      case 'c':
        return take_color(c == 'c');
      case 'f':
      case 'F':
        argument();  // our fonts draw all texts
        return;
      case 'p':
        return take_paragraph_format();
      case 'S':
        return take_fraction();
      default:
        letter('\\');
        return letter(c);
    }
  }

  std::u32string_view text_;
  std::size_t at_ = 0;
  TextFormat format_;
  TextFormat wordFormat_;
  std::u32string word_;
  std::vector<TextFormat> stack_;
  std::vector<TextPiece> pieces_;
  double first_ = 0;
  double left_ = 0;
  double right_ = 0;
  char32_t alignment_ = 0;
};

}  // namespace

std::vector<TextPiece> parse_paragraphs(std::u32string_view text, const TextFormat& start) {
  return Parser(text, start).run();
}

}  // namespace qv::importing
