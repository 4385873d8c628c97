#include "qvtools/import/internal/dimension_style.h"

#include <algorithm>

#include "qvtools/text/numbers.h"

namespace qv::importing {

DimensionStyle::DimensionStyle(Job& job, const Record& record) : job_(job) {
  const int index = job.file.dimStyleNames.find(record.has(3) ? record.word(3) : "STANDARD", job.file.decoder);
  if (index >= 0) style_ = &job.file.dimStyles[static_cast<std::size_t>(index)];
  // Overrides: "DSTYLE", then pairs of a code and its value within braces.
  bool within = false;
  int code = 0;
  for (const Tag& tag : record.extended) {
    if (tag.code == 1000 && code == 0) within = word_of(tag) == "DSTYLE";
    if (tag.code == 1001) within = false;
    if (!within || tag.code == 1002) continue;
    if (tag.code == 1070 && code == 0) {
      code = integer_of(tag);
    } else if (code != 0) {
      if (tag.code >= 1010) own_.emplace_back(code, real_of(tag));
      if (tag.code == 1000 || tag.code == 1005) ownWords_.push_back({code, false, 0, tag.text});
      code = 0;
    }
  }
  scale_ = value(40, "$DIMSCALE", 1);
  if (!(scale_ > 0) || !std::isfinite(scale_)) scale_ = 1;
  if (const Tag* const textStyle = word(340)) {
    const auto name = job.file.nameOfHandle.find(handle_of(*textStyle));
    if (name != job.file.nameOfHandle.end()) textStyle_ = job.file.styleNames.find(name->second, job.file.decoder);
  }
  if (textStyle_ < 0) textStyle_ = job.file.styleNames.find("STANDARD", job.file.decoder);
}

const Tag* DimensionStyle::word(int code) const {
  const auto own = std::ranges::find(ownWords_, code, &Tag::code);
  if (own != ownWords_.end()) return &*own;
  if (!style_) return nullptr;
  const auto found = std::ranges::find(style_->words, code, &Tag::code);
  return found == style_->words.end() ? nullptr : &*found;
}

Arrow DimensionStyle::arrow_of(End end) const {
  // Names of release 12, handles of later ones; both ends are alike unless the style parts them.
  struct Groups {
    int name;
    int handle;
  };
  constexpr Groups kApart[] = {{6, 343}, {7, 344}, {0, 341}};
  constexpr Groups kAlike{5, 342};
  Arrow arrow{this->arrow(), end == Leader ? 0 : tick()};
  const Groups groups = end == Leader || value(173, "$DIMSAH", 0) != 0 ? kApart[end] : kAlike;
  const Tag* const handle = word(groups.handle);
  const Tag* const name = word(groups.name);
  if (handle && handle_of(*handle) != 0)
    arrow.block = block_of_handle(job_, handle);
  else if (name && !name->text.empty())
    arrow.block = job_.file.blockNames.find(word_of(*name), job_.file.decoder);
  else
    return arrow;
  if (arrow.block < 0) job_.report.loss("an arrow whose block the file lacks became the usual one", job_.report.place);
  return arrow;
}

double DimensionStyle::value(int code, const char* variable, double otherwise) const {
  const auto in = [&](const std::vector<std::pair<int, double>>& values) {
    return std::ranges::find(values, code, &std::pair<int, double>::first);
  };
  if (const auto found = in(own_); found != own_.end()) return found->second;
  if (style_)
    if (const auto found = in(style_->values); found != style_->values.end()) return found->second;
  for (const auto& [name, v] : job_.file.header.dim)
    if (name == variable) return v;
  return otherwise;
}

double DimensionStyle::size(int code, const char* variable, double inches, double metric) const {
  const double v = value(code, variable, job_.file.header.measurement == 1 ? metric : inches) * scale_;
  return std::isfinite(v) && v >= 0 ? v : inches * scale_;
}

double DimensionStyle::textHeight() const {
  const double fixed = textStyle_ < 0 ? 0 : job_.file.styles[static_cast<std::size_t>(textStyle_)].height;
  return fixed > 0 && std::isfinite(fixed) ? fixed : std::max(1e-9, size(140, "$DIMTXT", 0.18, 2.5));
}

double DimensionStyle::lengthFactor() const {
  const double v = std::fabs(value(144, "$DIMLFAC", 1));
  return v > 0 && std::isfinite(v) ? v : 1;
}

std::string DimensionStyle::number(double v, int decimals, int zeros) const {
  constexpr int kNoneAtEnd = 8;
  constexpr int kNoneInFront = 4;
  char text[400];
  format_text(text, sizeof text, "%.*f", std::clamp(decimals, 0, 8), std::clamp(v, -1e15, 1e15));
  std::string out = text;
  if ((zeros & kNoneAtEnd) != 0 && out.find('.') != std::string::npos) {
    out.erase(out.find_last_not_of('0') + 1);
    if (out.back() == '.') out.pop_back();
  }
  if ((zeros & kNoneInFront) != 0 && out.starts_with("0.")) out.erase(0, 1);
  const double separator = value(278, "$DIMDSEP", '.');
  if (separator == ',') std::ranges::replace(out, '.', ',');
  return out;
}

std::u32string DimensionStyle::length_text(double v) const {
  const double rounding = value(45, "$DIMRND", 0);
  if (rounding > 0 && std::isfinite(rounding)) v = std::round(v / rounding) * rounding;
  const int decimals = TruncInt(value(271, "$DIMDEC", job_.file.header.measurement == 1 ? 2 : 4));
  const std::string text = number(v, decimals, TruncInt(value(78, "$DIMZIN", 8)));
  std::u32string out(text.begin(), text.end());
  std::u32string around;
  if (const Tag* const post = word(3)) around = job_.file.decoder.points(post->text);
  if (around.empty()) return out;
  const std::size_t at = around.find(U"<>");
  return at == std::u32string::npos ? out + around : around.replace(at, 2, out);
}

std::u32string DimensionStyle::angle_text(double v) const {
  const std::string text =
      number(degrees(v), TruncInt(value(179, "$DIMADEC", 0)), TruncInt(value(79, "$DIMAZIN", 0)) * 4);
  return std::u32string(text.begin(), text.end()) + special_sign('d');
}

bool put_arrow(Job& job, const Matrix& frame, const Arrow& arrow, const Vec& tip, const Vec& direction) {
  const Vec along = unit(direction, {1, 0, 0});
  const Vec across{-along.y, along.x, 0};
  if (arrow.tick > 0) {
    const Vec half = (along + across) * arrow.tick;
    return job.out.line(frame(tip - half), frame(tip + half));
  }
  constexpr double kHalfWidth = 1.0 / 6;
  const double size = arrow.size;
  if (!(size > 0)) return true;
  if (arrow.block >= 0) {
    put_block_entities(job, arrow.block,
                       frame * translation(tip) * turning(std::atan2(along.y, along.x)) * scaling(size, size, size));
    return true;
  }
  const Vec back = tip - along * size;
  const Vec corners[4] = {frame(tip), frame(back + across * (size * kHalfWidth)),
                          frame(back - across * (size * kHalfWidth)), frame(back - across * (size * kHalfWidth))};
  return job.out.solid(corners);
}

int block_of_handle(const Job& job, const Tag* handle) {
  const auto found = handle ? job.file.blockOfHandle.find(handle_of(*handle)) : job.file.blockOfHandle.end();
  return found == job.file.blockOfHandle.end() ? -1 : found->second;
}

}  // namespace qv::importing
