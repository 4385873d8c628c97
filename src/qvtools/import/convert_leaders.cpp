// Leaders, tolerances and tables.

#include "qvtools/import/internal/converters.h"
#include "qvtools/import/internal/dimension_style.h"
#include "qvtools/import/internal/paragraphs.h"

namespace qv::importing {

namespace {

/// Takes repeated points apart.
std::vector<Vec> points_of(std::span<const Tag> tags, int code) {
  std::vector<Vec> points;
  for (const Tag& tag : tags) {
    if (tag.code == code) points.push_back({real_of(tag), 0, 0});
    if (points.empty()) continue;
    if (tag.code == code + 10) points.back().y = real_of(tag);
    if (tag.code == code + 20) points.back().z = real_of(tag);
  }
  return points;
}

bool put_leader_line(Job& job, std::vector<Vec> points, bool splined) {
  if (points.size() < 2) return true;
  if (splined && points.size() > 2) {
    Spline spline;
    spline.fit = std::move(points);
    points.clear();
    if (!flatten_spline(std::move(spline), job.options.tolerance, points)) return false;
  }
  for (Vec& p : points) p = job.place(p);
  return put_chain(job, std::move(points), false);
}

}  // namespace

Outcome convert_leader(Job& job, const Record& record) {
  std::vector<Vec> points = points_of(record.tags, 10);
  if (points.size() < 2) return left_out("no vertices");
  const DimensionStyle style(job, record);
  const Vec tip = points[0];
  const Vec toTip = points[0] - points[1];
  const bool splined = record.integer(72) == 1;
  if (record.integer(75) != 0 && record.real(41) > 0) {
    // Along beneath its text. The flag tells on which side that stands.
    const Vec along = unit(record.point(211, {1, 0, 0}), {1, 0, 0}) * (record.integer(74, 1) == 1 ? -1 : 1);
    if (style.textAbove()) points.push_back(points.back() + along * (style.gap() + record.real(41)));
  }
  bool good = put_leader_line(job, std::move(points), splined);
  const Arrow arrow = style.arrow_of(DimensionStyle::Leader);
  if (record.integer(71, 1) != 0 && length(toTip) > arrow.size)
    good = put_arrow(job, job.place, arrow, tip, toTip) && good;
  return outcome(good, converted("POLYLINE and SOLID"));
}

namespace {

/// A stretch of groups between two marks of a multileader.
struct Leader {
  std::vector<std::vector<Vec>> lines;
  Vec landing;
  bool hasLanding = false;
  Vec dogleg{1, 0, 0};
  double doglegLength = 0;
};

/// The context of a multileader: what it shows. Codes mean other things within each pair of marks.
struct Multileader {
  std::vector<Leader> leaders;
  std::vector<Tag> context;  // outside of leaders
  std::vector<Tag> common;   // outside of the context
};

Multileader parse_multileader(const Record& record) {
  enum { Common, Context, InLeader, InLine } level = Common;
  Multileader m;
  const auto axis = [](Vec& v, const Tag& tag, int code) {
    if (tag.code == code) v.x = real_of(tag);
    if (tag.code == code + 10) v.y = real_of(tag);
    if (tag.code == code + 20) v.z = real_of(tag);
  };
  for (const Tag& tag : record.tags) {
    const std::string_view word = tag.code >= 300 && tag.code <= 305 ? word_of(tag) : std::string_view();
    if (level == Common && tag.code == 300 && word == "CONTEXT_DATA{") {
      level = Context;
    } else if (level == Context && tag.code == 302 && word == "LEADER{") {
      level = InLeader;
      m.leaders.emplace_back();
    } else if (level == InLeader && tag.code == 304 && word == "LEADER_LINE{") {
      level = InLine;
      m.leaders.back().lines.emplace_back();
    } else if (level == InLine && tag.code == 305) {
      level = InLeader;
    } else if (level == InLeader && tag.code == 303) {
      level = Context;
    } else if (level == Context && tag.code == 301 && word == "}") {
      level = Common;
    } else if (level == InLine) {
      std::vector<Vec>& line = m.leaders.back().lines.back();
      if (tag.code == 10) line.push_back({});
      if (!line.empty()) axis(line.back(), tag, 10);
    } else if (level == InLeader) {
      Leader& leader = m.leaders.back();
      axis(leader.landing, tag, 10);
      axis(leader.dogleg, tag, 11);
      if (tag.code == 10) leader.hasLanding = true;
      if (tag.code == 40) leader.doglegLength = real_of(tag);
    } else {
      (level == Context ? m.context : m.common).push_back(tag);
    }
  }
  return m;
}

bool put_multileader_text(Job& job, const Record& context) {
  TextBlock block;
  block.text = job.file.decoder.points(context.text(304));
  if (block.text.empty()) return true;
  block.format.height = context.real(41, 1);
  const auto style = job.file.nameOfHandle.find(handle_of(context.has(340) ? *context.find(340) : Tag()));
  block.style =
      job.file.styleNames.find(style == job.file.nameOfHandle.end() ? "STANDARD" : style->second, job.file.decoder);
  if (block.style >= 0) block.format.width = job.file.styles[static_cast<std::size_t>(block.style)].width;
  constexpr int kAttachments[] = {1, 1, 2, 3};  // of group 171: left, centre, right
  block.attachment = kAttachments[std::clamp(context.integer(171, 1), 0, 3)];
  block.columnWidth = std::max(0.0, context.real(43));
  block.lineFactor = std::clamp(context.real(45, 1), 0.25, 4.0);
  Matrix axes;
  if (context.has(13)) {
    axes.x = unit(context.point(13), {1, 0, 0});
    axes.y = cross({0, 0, 1}, axes.x);
  } else {
    axes = turning(context.real(42));
  }
  return put_block(job, job.place * translation(context.point(12)) * axes, block);
}

bool put_multileader_block(Job& job, const Record& context) {
  const int block = block_of_handle(job, context.find(341));
  if (block < 0) return true;
  const Vec scale = context.point(16, {1, 1, 1});
  put_block_entities(
      job, block,
      job.place * translation(context.point(15)) * turning(context.real(46)) * scaling(scale.x, scale.y, scale.z));
  return true;
}

}  // namespace

Outcome convert_multileader(Job& job, const Record& record) {
  Multileader m = parse_multileader(record);
  Record context;
  Record common;
  context.tags = std::move(m.context);
  common.tags = std::move(m.common);
  const int kind = common.integer(170, 1);  // 0 none, 1 straight, 2 splined
  const double scale = context.real(40, 1) > 0 ? context.real(40, 1) : 1;
  const double arrow = context.real(140, common.real(42, 0.18) * scale);
  bool good = true;
  const Arrow head{arrow, 0, common.has(342) ? block_of_handle(job, common.find(342)) : -1};
  const Look look = job.out.look;
  job.out.look.set_raw_color(common.integer(91));
  for (const Leader& leader : m.leaders) {
    const bool dogleg = common.integer(291, 1) != 0 && kind == 1;
    const Vec end = leader.landing + leader.dogleg * leader.doglegLength;
    for (std::vector<Vec> line : leader.lines) {
      if (kind == 0 || line.empty()) continue;
      const Vec tip = line[0];
      if (leader.hasLanding) line.push_back(dogleg ? leader.landing : end);
      const Vec toTip = line.size() > 1 ? tip - line[1] : Vec{};
      good = put_leader_line(job, std::move(line), kind == 2) && good;
      if (length(toTip) > arrow) good = put_arrow(job, job.place, head, tip, toTip) && good;
    }
    if (dogleg && kind == 1 && leader.hasLanding && leader.doglegLength > 0)
      good = job.out.line(job.place(leader.landing), job.place(end)) && good;
  }
  job.out.look = look;
  job.out.look.set_raw_color(context.integer(90));
  if (context.integer(290) != 0 || context.has(304)) good = put_multileader_text(job, context) && good;
  job.out.look = look;
  if (context.integer(296) != 0) good = put_multileader_block(job, context) && good;
  return outcome(good, converted("POLYLINE, SOLID and TEXT"));
}

Outcome convert_tolerance(Job& job, const Record& record) {
  const DimensionStyle style(job, record);
  const double h = style.textHeight();
  const double high = 2 * h;
  Matrix axes;
  axes.x = unit(record.point(11, {1, 0, 0}), {1, 0, 0});
  axes.z = unit(record.point(210, {0, 0, 1}), {0, 0, 1});
  axes.y = cross(axes.z, axes.x);
  const Matrix frame = job.place * translation(record.point(10)) * axes;
  // Rows end in "^J", cells in "%%v".
  std::u32string text = job.file.decoder.points(record.text(1));
  bool good = true;
  double x = 0;
  double y = 0;
  const auto put_cell = [&](const std::u32string& cell) {
    TextBlock block;
    block.text = cell;
    block.format.height = h;
    block.style = style.textStyle();
    block.attachment = 5;
    const double wide = size_of_block(job, block).width + h;
    good = put_block(job, frame * translation({x + wide / 2, y, 0}), block) && good;
    std::vector<Vec> box;
    for (const Vec& corner : {Vec{x, y - high / 2, 0}, Vec{x + wide, y - high / 2, 0}, Vec{x + wide, y + high / 2, 0},
                              Vec{x, y + high / 2, 0}})
      box.push_back(frame(corner));
    good = put_chain(job, std::move(box), true) && good;
    x += wide;
  };
  std::u32string cell;
  for (std::size_t i = 0; i <= text.size(); ++i) {
    const std::u32string_view rest = std::u32string_view(text).substr(i);
    const bool row = rest.starts_with(U"^J") || rest.starts_with(U"\n") || rest.empty();
    const bool end = rest.starts_with(U"%%v");
    if (!row && !end) {
      cell.push_back(text[i]);
      continue;
    }
    if (!cell.empty()) put_cell(cell);
    cell.clear();
    if (row) {
      x = 0;
      y -= high;
    }
    i += end ? 2 : rest.starts_with(U"^J") ? 1 : 0;
  }
  job.report.loss("signs of a tolerance are shown as letters", record.place);
  return outcome(good, converted("TEXT and POLYLINE"));
}

Outcome convert_table(Job& job, const Record& record) {
  const Vec along = unit(record.point(11, {1, 0, 0}), {1, 0, 0});
  const Matrix at = frame_of(job, record) * translation(record.point(10)) * turning(std::atan2(along.y, along.x));
  return put_block_entities(job, job.file.blockNames.find(record.word(2), job.file.decoder), at);
}

}  // namespace qv::importing
