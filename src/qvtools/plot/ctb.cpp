#include "qvtools/plot/internal/ctb.h"

#include <zlib.h>

#include <algorithm>
#include <array>

#include "qvtools/display/appearance.h"
#include "qvtools/text/numbers.h"

namespace qv::detail {

namespace {

constexpr std::string_view kSignature = "PIAFILEVERSION_2.0,CTBVER1";
// Behind the signature stand a checksum and two sizes, of four bytes each; some writers make them eight.
constexpr std::size_t kHeads[] = {60, 72};
constexpr std::size_t kLargest = 4 << 20;
constexpr int kStyles = 255;

/// What one style says, as far as it is plotted.
struct Style {
  int color = -1;  // the lowest three bytes 0xRRGGBB; the highest its kind
  int screen = 100;
  int weight = 0;  // an index of the table of widths; 0 the entity's own
};

std::string inflate_all(std::string_view packed) {
  std::string text;
  if (packed.empty()) return text;
  z_stream stream{};
  if (inflateInit(&stream) != Z_OK) return text;
  stream.next_in = reinterpret_cast<Bytef*>(const_cast<char*>(packed.data()));
  stream.avail_in = static_cast<uInt>(packed.size());
  int result = Z_OK;
  while (result == Z_OK && text.size() < kLargest) {
    char block[16384];
    stream.next_out = reinterpret_cast<Bytef*>(block);
    stream.avail_out = sizeof block;
    result = inflate(&stream, Z_NO_FLUSH);
    text.append(block, sizeof block - stream.avail_out);
  }
  inflateEnd(&stream);
  if (result != Z_STREAM_END) text.clear();
  return text;
}

/// Reads the lines "name=value" within braces "name{" … "}".
class Reader {
 public:
  explicit Reader(std::string_view text) : text_(text) {}

  /// The styles and the table of widths in mm.
  void run() {
    std::string_view line;
    while (next(line)) {
      if (line == "plot_style{")
        read_styles();
      else if (line == "custom_lineweight_table{")
        read_widths();
      else if (line.ends_with('{'))
        skip();
    }
  }

  std::array<Style, kStyles> styles;
  std::vector<double> widths;
  bool found = false;

 private:
  bool next(std::string_view& line) {
    if (text_.empty()) return false;
    const std::size_t end = std::min(text_.find('\n'), text_.size());
    line = text_.substr(0, end);
    text_.remove_prefix(std::min(end + 1, text_.size()));
    line.remove_prefix(std::min(line.find_first_not_of(" \t"), line.size()));
    while (!line.empty() && (line.back() == '\r' || line.back() == ' ')) line.remove_suffix(1);
    return true;
  }
  void skip() {
    std::string_view line;
    while (next(line) && line != "}")
      if (line.ends_with('{')) skip();
  }
  void read_styles() {
    std::string_view line;
    while (next(line) && line != "}") {
      if (!line.ends_with('{')) continue;
      const int index = parse_int(line);
      if (index < 0 || index >= kStyles)
        skip();
      else
        read_style(styles[static_cast<std::size_t>(index)]);
    }
    found = true;
  }
  void read_style(Style& style) {
    std::string_view line;
    while (next(line) && line != "}") {
      const std::size_t equals = line.find('=');
      if (equals == std::string_view::npos) continue;
      const std::string_view name = line.substr(0, equals);
      const int value = parse_int(line.substr(equals + 1));
      // "color" is what is shown in dialogs; "mode_color" carries the colour's kind where there is one.
      if (name == "color" || name == "mode_color") style.color = value;
      if (name == "screen") style.screen = std::clamp(value, 0, 100);
      if (name == "lineweight") style.weight = value;
    }
  }
  void read_widths() {
    std::string_view line;
    while (next(line) && line != "}") {
      const std::size_t equals = line.find('=');
      if (equals != std::string_view::npos) widths.push_back(parse_real(line.substr(equals + 1)));
    }
  }

  std::string_view text_;
};

/// The colour of a style; -1 for the entity's own.
int style_color(int color) {
  constexpr unsigned kRgb = 0xC2;
  constexpr unsigned kNumber = 0xC3;
  const unsigned kind = static_cast<unsigned>(color) >> 24;
  if (kind == kRgb) return color & 0xFFFFFF;
  if (kind != kNumber) return -1;
  const COLORREF shown = StandardPalette()[static_cast<unsigned>(color) & 0xFF];
  return static_cast<int>((shown & 0xFF) << 16 | (shown & 0xFF00) | (shown >> 16 & 0xFF));
}

}  // namespace

bool is_ctb(std::string_view bytes) {
  return bytes.starts_with(kSignature);
}

bool read_ctb(std::string_view bytes, std::vector<PenRule>& rules, std::string& problem) {
  std::string text;
  for (const std::size_t head : kHeads)
    if (text.empty()) text = inflate_all(bytes.substr(std::min(head, bytes.size())));
  Reader reader(text);
  reader.run();
  if (!reader.found || reader.widths.empty()) {
    problem = "is a broken CTB file";
    return false;
  }
  for (int i = 0; i < kStyles; ++i) {
    const Style& style = reader.styles[static_cast<std::size_t>(i)];
    PenRule rule;
    rule.by = PenRule::By::Color;
    rule.colors.set(static_cast<std::size_t>(i) + 1);
    rule.color = style_color(style.color);
    rule.screening = style.screen;
    const auto weight = static_cast<std::size_t>(style.weight);
    if (style.weight > 0 && weight < reader.widths.size()) rule.width = std::clamp(reader.widths[weight], 0.0, 20.0);
    rules.push_back(rule);
  }
  return true;
}

}  // namespace qv::detail
