// Single lines of text.

#include <algorithm>

#include "qvtools/import/internal/converters.h"

namespace qv::importing {

namespace {

/// Letters below each other.
bool put_column(Job& job, const Matrix& frame, Lettering text) {
  constexpr double kPitch = 1.5;  // heights
  std::u32string all;
  for (const Run& run : parse_line(text.text)) all += run.text;
  text.codes = false;
  const Matrix turned = frame * translation(text.at) * turning(text.turn);
  text.turn = 0;
  text.horizontal = 1;
  text.vertical = 3;
  bool good = true;
  double down = 0;
  for (const char32_t c : all) {
    text.text = std::u32string(1, c);
    text.at = {0, -down, 0};
    good = put_text(job, turned, text) && good;
    down += kPitch * text.height;
  }
  return good;
}

/// Whether a text of the file is what its record holds: ASCII without codes, and short.
bool is_plain(std::string_view text) {
  const auto is_code = [](char c) { return c < ' ' || c > '~' || c == '%' || c == '^' || c == '\\'; };
  return text.size() < kContentsSize && std::ranges::none_of(text, is_code);
}

bool is_column(const Job& job, int style) {
  return style >= 0 && is_vertical(job.file.styles[static_cast<std::size_t>(style)]);
}

Lettering lettering_of(Job& job, const Record& record, int verticalCode) {
  Lettering text;
  text.style = job.file.styleNames.find(record.has(7) ? record.word(7) : "STANDARD", job.file.decoder);
  const FileStyle* const style = text.style < 0 ? nullptr : &job.file.styles[static_cast<std::size_t>(text.style)];
  const std::string_view written = record.text(1);
  if (is_plain(written) && !is_column(job, text.style))
    text.plain = written;
  else
    text.text = job.file.decoder.points(written);
  text.height = record.real(40, style && style->height > 0 ? style->height : 1);
  // The flat form has another standard width than others; a text without one has its style's.
  text.width = record.real(41, style ? style->width : 0.75);
  if (!(text.width > 0)) text.width = 1;
  text.turn = radians(record.real(50));
  text.oblique = record.real(51);
  text.generation = record.integer(71);
  text.horizontal = record.integer(72);
  text.vertical = record.integer(verticalCode);
  text.at = record.point(10);
  const bool anchored = text.horizontal != 0 || text.vertical != 0;
  if (text.horizontal == 3 || text.horizontal == 5)
    text.second = record.point(11, text.at);
  else if (anchored)
    text.at = record.point(11, text.at);
  return text;
}

bool put_lettering(Job& job, const Record& record, int verticalCode) {
  const Lettering text = lettering_of(job, record, verticalCode);
  const Matrix frame = frame_of(job, record);
  return is_column(job, text.style) ? put_column(job, frame, text) : put_text(job, frame, text);
}

}  // namespace

Outcome convert_text(Job& job, const Record& record) {
  return outcome(put_lettering(job, record, 73), kTaken);
}

Outcome put_attribute(Job& job, const Record& record) {
  constexpr int kInvisible = 1;
  if ((record.integer(70) & kInvisible) != 0) return left_out("invisible");
  // One of several lines holds an MTEXT.
  const auto holds = [&](int code) {
    return std::ranges::find(record.embedded, code, &Tag::code) != record.embedded.end();
  };
  if (holds(1) && holds(40)) {
    Record lines;
    lines.place = record.place;
    lines.tags = record.embedded;
    return convert_mtext(job, lines);
  }
  return outcome(put_lettering(job, record, 74), converted("TEXT"));
}

Outcome convert_attribute_definition(Job& job, const Record& record) {
  constexpr int kConstant = 2;
  if ((record.integer(70) & kConstant) == 0) return left_out("shown by the references of its block");
  return put_attribute(job, record);
}

}  // namespace qv::importing
