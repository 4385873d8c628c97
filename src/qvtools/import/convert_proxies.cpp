// Objects of other programs: the pictures that their programs left with them.

#include <bit>
#include <cstring>

#include "qvtools/import/internal/converters.h"
#include "qvtools/import/internal/regions.h"

namespace qv::importing {

namespace {

/// The parts of a picture, by the numbers that the file gives them.
enum Part : std::uint32_t {
  Extents = 1,
  Circle = 2,
  CircleThrough = 3,
  Arc = 4,
  ArcThrough = 5,
  Chain = 6,
  Ring = 7,
  Net = 8,
  Shell = 9,
  Text = 10,
  FontText = 11,
  EndlessLine = 12,
  HalfLine = 13,
  Color = 14,
  Layer = 16,
  LineType = 18,
  Marker = 19,
  Fill = 20,
  RawColor = 22,
  LineWeight = 23,
  LineTypeScale = 24,
  Thickness = 25,
  PlotStyle = 26,
  PushMatrix = 29,
  PushMatrixToo = 30,
  PopMatrix = 31,
  ChainWithNormal = 32,
  WideText = 36,
  WideFontText = 38
};

/// Numbers one after another, least byte first; 0 and empty behind the end.
class Bytes {
 public:
  explicit Bytes(std::string_view bytes) : bytes_(bytes) {}

  std::size_t left() const { return bytes_.size(); }
  std::uint32_t whole() {
    std::uint32_t v = 0;
    const std::string_view four = take(4);
    for (std::size_t i = four.size(); i-- > 0;) v = v << 8 | static_cast<unsigned char>(four[i]);
    return v;
  }
  double real() {
    std::uint64_t v = whole();
    v |= std::uint64_t{whole()} << 32;
    return std::bit_cast<double>(v);
  }
  Vec point() {
    const double x = real();
    const double y = real();
    return {x, y, real()};
  }
  /// A count of points, and these; as many as there are.
  std::vector<Vec> points() {
    constexpr std::size_t kPoint = 24;
    std::vector<Vec> points(std::min<std::size_t>(whole(), left() / kPoint));
    for (Vec& p : points) p = point();
    return points;
  }
  /// Up to its zero; all is filled up to four bytes.
  std::string_view text() {
    const std::size_t end = std::min(bytes_.find('\0'), bytes_.size());
    const std::string_view text = bytes_.substr(0, end);
    take((end + 4) / 4 * 4);
    return text;
  }
  std::u32string wide_text() {
    std::u32string text;
    while (left() >= 2) {
      const std::string_view two = take(2);
      const auto c =
          static_cast<char32_t>(static_cast<unsigned char>(two[0]) | static_cast<unsigned char>(two[1]) << 8);
      if (c == 0) break;
      text.push_back(c);
    }
    if (text.size() % 2 == 0) take(2);
    return text;
  }
  std::string_view take(std::size_t n) {
    const std::string_view part = bytes_.substr(0, n);
    bytes_.remove_prefix(part.size());
    return part;
  }

 private:
  std::string_view bytes_;
};

/// The bytes of the groups 310 that follow the length of a picture, group 92 or 160.
std::string picture_of(const Job& job, const Record& record) {
  std::string bytes;
  const auto digit = [](char c) { return c <= '9' ? c - '0' : (c | 0x20) - 'a' + 10; };
  for (std::size_t i = 0; i + 1 < record.tags.size(); ++i) {
    const int code = record.tags[i].code;
    if ((code != 92 && code != 160) || record.tags[i + 1].code != 310) continue;
    for (++i; i < record.tags.size() && record.tags[i].code == 310; ++i) {
      const std::string_view text = record.tags[i].text;
      if (job.file.in.form() != Form::Text) {
        bytes += text;
        continue;
      }
      const std::string_view digits = trimmed(text);
      if (digits.find_first_not_of("0123456789ABCDEFabcdef") != std::string_view::npos) return {};
      for (std::size_t j = 0; j + 1 < digits.size(); j += 2)
        bytes += static_cast<char>(digit(digits[j]) << 4 | digit(digits[j + 1]));
    }
    break;
  }
  return bytes;
}

class Picture {
 public:
  explicit Picture(Job& job) : job_(job), own_(job.out.look), matrices_{job.place} {}

  /// Whether something was drawn.
  bool draw(std::string_view bytes) {
    constexpr std::uint32_t kHead = 8;  // the size of a part, itself included, and its kind
    Bytes all(bytes);
    all.take(kHead);
    while (all.left() >= kHead) {
      const std::uint32_t size = all.whole();
      const std::uint32_t part = all.whole();
      if (size < kHead) break;
      Bytes content(all.take(size - kHead));
      draw_part(part, content);
    }
    job_.out.look = own_;
    if (unknown_) job_.report.loss("a part of an object's own picture was left out", job_.report.place);
    return drawn_;
  }

 private:
  const Matrix& place() const { return matrices_.back(); }
  void drawn(bool good) {
    drawn_ = drawn_ || good;
    fill_ = false;
  }

  void draw_part(std::uint32_t part, Bytes& in);
  bool set_look(std::uint32_t part, Bytes& in);
  void put_points(std::vector<Vec> points, bool closed);
  void put_fill(const std::vector<Vec>& points);
  void put_arc_through(Bytes& in, bool whole);
  void put_net(Bytes& in);
  void put_shell(Bytes& in);
  void put_letters(std::uint32_t part, Bytes& in);

  Job& job_;
  const Look own_;
  std::vector<Matrix> matrices_;
  bool fill_ = false;
  bool drawn_ = false;
  bool unknown_ = false;
};

Matrix frame_at(const Vec& origin, const Vec& normal) {
  return translation(origin) * extrusion_frame(normal);
}

void Picture::put_fill(const std::vector<Vec>& points) {
  const Matrix level = place() * translation({0, 0, points[0].z});
  for_each_trapezoid({points}, [&](const Vec(&corners)[4]) {
    const Vec placed[4] = {level(corners[0]), level(corners[1]), level(corners[2]), level(corners[3])};
    drawn_ = job_.out.solid(placed) || drawn_;
  });
}

void Picture::put_points(std::vector<Vec> points, bool closed) {
  if (points.empty()) return;
  if (points.size() == 1 || (points.size() == 2 && points[0] == points[1])) {
    drawn(job_.out.point(place()(points[0])));
    return;
  }
  for (const Vec& p : points)
    if (!is_finite(p)) return;
  if (fill_ && points.size() > 2) {
    put_fill(points);
    fill_ = false;
    return;
  }
  for (Vec& p : points) p = place()(p);
  drawn(put_chain(job_, std::move(points), closed));
}

void Picture::put_arc_through(Bytes& in, bool whole) {
  const Vec a = in.point();
  const Vec b = in.point();
  const Vec c = in.point();
  const Vec u = b - a;
  const Vec v = c - a;
  const Vec normal = cross(u, v);
  const double area = dot(normal, normal);
  if (!(area > 1e-24 * dot(u, u) * dot(v, v))) return put_points({a, b, c}, false);
  const Vec center = a + (cross(normal, u) * dot(v, v) - cross(normal, v) * dot(u, u)) * (1 / (2 * area));
  const Matrix frame = frame_at(center, normal);
  const auto angle = [&](const Vec& p) { return std::atan2(dot(p - center, frame.y), dot(p - center, frame.x)); };
  double sweep = whole ? 2 * kPi : std::fmod(angle(c) - angle(a), 2 * kPi);
  if (sweep <= 0) sweep += 2 * kPi;
  drawn(put_arc(job_, place() * frame, {}, length(a - center), angle(a), sweep));
}

void Picture::put_net(Bytes& in) {
  const std::size_t rows = in.whole();
  const std::size_t columns = in.whole();
  constexpr std::size_t kPoint = 24;
  if (rows < 2 || columns < 2 || columns > in.left() / kPoint || rows > in.left() / kPoint / columns) return;
  std::vector<Vec> points(rows * columns);
  for (Vec& p : points) p = place()(in.point());
  for (std::size_t i = 0; i + 1 < rows; ++i)
    for (std::size_t j = 0; j + 1 < columns; ++j) {
      const Vec* const at = &points[i * columns + j];
      const Vec corners[4] = {at[0], at[1], at[columns + 1], at[columns]};
      drawn(job_.out.face(corners));
    }
}

void Picture::put_shell(Bytes& in) {
  std::vector<Vec> points = in.points();
  for (Vec& p : points) p = place()(p);
  // Each face is its number of corners, less than 0 for a hole, and these.
  for (std::uint32_t left = in.whole(); left > 0 && in.left() >= 4;) {
    const auto signedCount = static_cast<std::int32_t>(in.whole());
    const std::uint32_t count = static_cast<std::uint32_t>(signedCount < 0 ? -std::int64_t{signedCount} : signedCount);
    if (count > in.left() / 4 || count >= left) return;
    left -= count + 1;
    std::vector<Vec> outline;
    for (std::uint32_t i = 0; i < count; ++i) {
      const std::uint32_t index = in.whole();
      if (index < points.size()) outline.push_back(points[index]);
    }
    if (outline.size() == 3 || outline.size() == 4) {
      const Vec corners[4] = {outline[0], outline[1], outline[2], outline.back()};
      drawn(job_.out.face(corners));
    } else if (outline.size() > 1) {
      drawn(put_chain(job_, std::move(outline), true));
    }
  }
}

void Picture::put_letters(std::uint32_t part, Bytes& in) {
  const bool wide = part == WideText || part == WideFontText;
  const Vec at = in.point();
  const Vec normal = unit(in.point(), {0, 0, 1});
  const Vec direction = in.point();
  Lettering text;
  const auto read_text = [&] { text.text = wide ? in.wide_text() : job_.file.decoder.points(in.text()); };
  if (part == FontText || part == WideFontText) {
    read_text();
    in.whole();  // how long it is
    text.codes = in.whole() == 0;
  }
  text.height = in.real();
  text.width = in.real();
  text.oblique = degrees(in.real());
  if (part == FontText || part == WideFontText) {
    in.real();  // the space between letters
    text.generation = in.whole() ? 2 : 0;
    text.generation |= in.whole() ? 4 : 0;
    in.whole();  // downward
    text.under = in.whole() != 0;
    text.over = in.whole() != 0;
    text.codes = text.codes && !text.under && !text.over;
  } else {
    read_text();
  }
  if (!(text.width > 0)) text.width = 1;
  Matrix axes;
  axes.z = normal;
  axes.x = unit(direction - normal * dot(direction, normal), extrusion_frame(normal).x);
  axes.y = cross(axes.z, axes.x);
  drawn(put_text(job_, place() * translation(at) * axes, text));
}

/// What belongs to the look of all that follows; false for other parts.
bool Picture::set_look(std::uint32_t part, Bytes& in) {
  Look& look = job_.out.look;
  switch (part) {
    case Color: {
      const std::uint32_t number = in.whole();
      if (number == 0) {
        look.color = own_.color;
        look.trueColor = own_.trueColor;
      } else {
        look.set_color(number < 256 ? static_cast<int>(number) : kByLayer);
      }
      return true;
    }
    case RawColor:
      look.set_raw_color(static_cast<int>(in.whole()));
      return true;
    case Layer:
      if (const std::size_t index = in.whole(); index < job_.file.layers.size()) look.layer = static_cast<int>(index);
      return true;
    case LineType: {
      const std::size_t index = in.whole();
      look.lineType = index < job_.file.lineTypes.size() ? job_.tables.line_type(static_cast<int>(index), 1) : -1;
      return true;
    }
    case LineWeight:
      look.lineWeight = static_cast<std::int16_t>(in.whole());
      if (look.lineWeight == kWeightByBlock) look.lineWeight = own_.lineWeight;
      return true;
    case Fill:
      fill_ = in.whole() != 0;
      return true;
    case Extents:
    case Marker:
    case LineTypeScale:
    case Thickness:
    case PlotStyle:
      return true;
    default:
      return false;
  }
}

void Picture::draw_part(std::uint32_t part, Bytes& in) {
  constexpr std::size_t kDeepestPicture = 64;
  if (set_look(part, in)) return;
  switch (part) {
    case Circle: {
      const Vec center = in.point();
      const double radius = in.real();
      drawn(put_arc(job_, place() * frame_at(center, in.point()), {}, radius, 0, 2 * kPi));
      return;
    }
    case Arc: {
      const Vec center = in.point();
      const double radius = in.real();
      const Matrix frame = frame_at(center, in.point());
      const Vec start = in.point();
      const double angle = std::atan2(dot(start, frame.y), dot(start, frame.x));
      drawn(put_arc(job_, place() * frame, {}, radius, angle, in.real()));
      return;
    }
    case CircleThrough:
    case ArcThrough:
      return put_arc_through(in, part == CircleThrough);
    case Chain:
    case ChainWithNormal:
    case Ring:
      return put_points(in.points(), part == Ring);
    case Net:
      return put_net(in);
    case Shell:
      return put_shell(in);
    case Text:
    case FontText:
    case WideText:
    case WideFontText:
      return put_letters(part, in);
    case EndlessLine:
    case HalfLine: {
      const Vec from = place()(in.point());
      const Vec direction = place()(in.point()) - from;
      if (!is_finite(from) || !is_finite(direction) || length(direction) == 0) return;
      job_.endless.push_back({from, direction, part == EndlessLine, job_.out.look});
      drawn(true);
      return;
    }
    case PushMatrix:
    case PushMatrixToo: {
      double m[16];
      for (double& v : m) v = in.real();  // row by row
      if (matrices_.size() < kDeepestPicture)
        matrices_.push_back(place() *
                            Matrix{{m[0], m[4], m[8]}, {m[1], m[5], m[9]}, {m[2], m[6], m[10]}, {m[3], m[7], m[11]}});
      return;
    }
    case PopMatrix:
      if (matrices_.size() > 1) matrices_.pop_back();
      return;
    default:
      unknown_ = true;
  }
}

Outcome picture_or(Job& job, const Record& record, const char* reason) {
  const std::string bytes = picture_of(job, record);
  return !bytes.empty() && Picture(job).draw(bytes) ? converted("its own picture") : left_out(reason);
}

}  // namespace

Outcome convert_proxy(Job& job, const Record& record) {
  return picture_or(job, record, "an object of another program");
}

Outcome convert_unknown(Job& job, const Record& record) {
  return picture_or(job, record, "a kind that is not known");
}

Outcome convert_body(Job& job, const Record& record) {
  return picture_or(job, record, "a body in a modeller's own form");
}

}  // namespace qv::importing
