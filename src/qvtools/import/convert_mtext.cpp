#include "qvtools/import/internal/converters.h"
#include "qvtools/import/internal/paragraphs.h"

namespace qv::importing {

namespace {

/// Columns stand in an object within the record, or in extended data as pairs of code and value.
void read_columns(const Record& record, TextBlock& block) {
  const auto take = [&](int code, double value, int widthCode, int gutterCode, int heightCode) {
    if (!(value >= 0) || !std::isfinite(value)) return;
    if (code == widthCode && value > 0) block.columnWidth = value;
    if (code == gutterCode) block.gutter = value;
    if (code == heightCode && block.columnHeight == 0) block.columnHeight = value;
  };
  int type = 0;
  for (const Tag& tag : record.embedded)
    if (tag.code == 71) type = integer_of(tag);
  for (const Tag& tag : record.embedded)
    if (type != 0) take(tag.code, real_of(tag), 44, 45, 46);
  int code = 0;
  bool columns = false;
  for (const Tag& tag : record.extended) {
    if (tag.code == 1000) columns = word_of(tag) == "ACAD_MTEXT_COLUMN_INFO_BEGIN";
    if (!columns) continue;
    if (tag.code == 1070 && code == 0)
      code = integer_of(tag);
    else if (code != 0) {
      take(code, real_of(tag), 48, 49, 50);
      code = 0;
    }
  }
}

}  // namespace

Outcome convert_mtext(Job& job, const Record& record) {
  TextBlock block;
  std::string bytes;  // the pieces may part a character of several bytes
  for (const Tag& tag : record.tags)
    if (tag.code == 3) bytes += tag.text;
  bytes += record.text(1);
  block.text = job.file.decoder.points(bytes);
  block.style = job.file.styleNames.find(record.has(7) ? record.word(7) : "STANDARD", job.file.decoder);
  if (block.style >= 0) {
    const FileStyle& style = job.file.styles[static_cast<std::size_t>(block.style)];
    block.format.width = style.width;
    block.format.oblique = style.oblique;
  }
  block.format.height = record.real(40, 1);
  block.columnWidth = std::max(0.0, record.real(41));
  if (!std::isfinite(block.columnWidth)) block.columnWidth = 0;
  block.attachment = std::clamp(record.integer(71, 1), 1, 9);
  block.lineFactor = std::clamp(record.real(44, 1), 0.25, 4.0);
  block.exactPitch = record.integer(73, 1) == 2;
  read_columns(record, block);
  constexpr int kDownward = 3;
  constexpr int kAsStyle = 5;
  const int flow = record.integer(72, 1);
  const bool column = block.style >= 0 && is_vertical(job.file.styles[static_cast<std::size_t>(block.style)]);
  if (flow == kDownward || (flow == kAsStyle && column))
    job.report.loss("a text in columns of letters is shown in lines", record.place);
  if (record.integer(90) != 0) job.report.loss("a fill behind a text was left out", record.place);

  // The point and the direction are the world's, whatever the extrusion is.
  const Vec normal = unit(record.point(210, {0, 0, 1}), {0, 0, 1});
  Matrix axes = extrusion_frame(normal);
  if (record.has(11)) {
    const Vec direction = record.point(11);
    axes.x = unit(direction - normal * dot(direction, normal), axes.x);
    axes.y = cross(normal, axes.x);
  } else {
    axes = axes * turning(radians(record.real(50)));
  }
  const bool good = put_block(job, job.place * translation(record.point(10)) * axes, block);
  return outcome(good, converted("TEXT"));
}

}  // namespace qv::importing
