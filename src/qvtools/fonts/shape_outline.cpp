// What the instructions of a shape draw.

#include <algorithm>
#include <array>
#include <cmath>

#include "qvtools/fonts/internal/instructions.h"
#include "qvtools/fonts/shape_file.h"

namespace qv {

namespace detail {

namespace {

/// The bytes of pairs or triples until one whose first two are 0, that one's first two counted.
std::size_t list_size(std::string_view codes, std::size_t at, std::size_t each) {
  std::size_t size = 0;
  while (at + size + 1 < codes.size() && (codes[at + size] || codes[at + size + 1])) size += each;
  return size + 2;
}

std::size_t subshape_size(std::string_view codes, std::size_t at, SubshapeForm form) {
  const bool wide = at < codes.size() && codes[at] == 0;
  switch (form) {
    case SubshapeForm::Byte:
      return 1;
    case SubshapeForm::Word:
      return 2;
    case SubshapeForm::OldBigFont:
      return wide ? 3 : 1;
    case SubshapeForm::BigFont:
      return wide ? 7 : 1;
  }
  return 1;
}

}  // namespace

std::size_t instruction_size(std::string_view codes, std::size_t at, SubshapeForm form) {
  const auto code = static_cast<unsigned char>(codes[at]);
  std::size_t more = 0;
  switch (code) {
    case shape_code::kDivide:
    case shape_code::kMultiply:
      more = 1;
      break;
    case shape_code::kSubshape:
      more = subshape_size(codes, at + 1, form);
      break;
    case shape_code::kMove:
    case shape_code::kOctants:
      more = 2;
      break;
    case shape_code::kMoves:
      more = list_size(codes, at + 1, 2);
      break;
    case shape_code::kFractions:
      more = 5;
      break;
    case shape_code::kBulge:
      more = 3;
      break;
    case shape_code::kBulges:
      more = list_size(codes, at + 1, 3);
      break;
    default:
      break;
  }
  return std::min(1 + more, codes.size() - at);
}

bool is_plain_shape(std::string_view codes) {
  for (std::size_t at = 0; at < codes.size() && codes[at]; at += instruction_size(codes, at, SubshapeForm::Byte)) {
    const auto code = static_cast<unsigned char>(codes[at]);
    if (code == shape_code::kSubshape || (code >= shape_code::kOctants && code <= shape_code::kBulges)) return false;
  }
  return true;
}

}  // namespace detail

namespace {

using namespace detail;

struct Place {
  double x = 0;
  double y = 0;
};

constexpr double kPi = 3.14159265358979323846;
constexpr double kOctant = kPi / 4;

}  // namespace

/// Runs the instructions of a shape, and of shapes within it, on one pen.
class ShapeFile::Runner {
 public:
  Runner(const ShapeFile& file, double tolerance, ShapeOutline& out)
      : file_(file), tolerance_(tolerance), out_(out), form_(form_of(file)) {}

  void run(const Shape& shape, int depth = 0) {
    constexpr int kDeepest = 16;
    if (depth > kDeepest) return;
    const std::string_view codes = std::string_view(file_.bytes_).substr(shape.begin, shape.end - shape.begin);
    for (std::size_t at = 0; at < codes.size() && codes[at] && steps_ < kMostSteps; ++steps_) {
      const std::size_t size = instruction_size(codes, at, form_);
      const std::string_view instruction = codes.substr(at, size);
      at += size;
      if (instruction[0] == shape_code::kVertical) {
        // Of two ways to write, this is for the other one.
        if (at < codes.size()) at += instruction_size(codes, at, form_);
      } else {
        obey(instruction, depth);
      }
    }
  }

 private:
  static constexpr std::size_t kMostSteps = 65536;

  static SubshapeForm form_of(const ShapeFile& file) {
    if (file.kind_ == Kind::Unifont) return SubshapeForm::Word;
    if (file.kind_ == Kind::Shapes) return SubshapeForm::Byte;
    return file.extended_ ? SubshapeForm::BigFont : SubshapeForm::OldBigFont;
  }

  void obey(std::string_view instruction, int depth) {
    const auto byte = [&](std::size_t i) {
      return i < instruction.size() ? static_cast<unsigned char>(instruction[i]) : static_cast<unsigned char>(0);
    };
    const auto length = [&](std::size_t i) { return static_cast<signed char>(byte(i)) * scale_; };
    switch (byte(0)) {
      case shape_code::kPenDown:
      case shape_code::kPenUp:
        down_ = byte(0) == shape_code::kPenDown;
        break;
      case shape_code::kDivide:
        if (byte(1)) scale_ /= byte(1);
        break;
      case shape_code::kMultiply:
        scale_ = std::min(scale_ * byte(1), 1e6);
        break;
      case shape_code::kPush:
        if (kept_.size() < kMostSteps) kept_.push_back(at_);
        break;
      case shape_code::kPop:
        if (kept_.empty()) break;
        go(kept_.back(), false);
        kept_.pop_back();
        break;
      case shape_code::kSubshape:
        subshape(instruction, depth);
        break;
      case shape_code::kMove:
        step(length(1), length(2));
        break;
      case shape_code::kMoves:
        for (std::size_t i = 1; i + 3 < instruction.size(); i += 2) step(length(i), length(i + 1));
        break;
      case shape_code::kOctants:
        octants(byte(1) * scale_, byte(2), 0, 0);
        break;
      case shape_code::kFractions:
        octants((256 * byte(3) + byte(4)) * scale_, byte(5), byte(1), byte(2));
        break;
      case shape_code::kBulge:
        bulge(length(1), length(2), static_cast<signed char>(byte(3)));
        break;
      case shape_code::kBulges:
        for (std::size_t i = 1; i + 4 < instruction.size(); i += 3)
          bulge(length(i), length(i + 1), static_cast<signed char>(byte(i + 2)));
        break;
      default: {
        const Vector vector = decode_vector(byte(0));
        if (byte(0) > 15) step(vector.u * scale_, vector.v * scale_);
      }
    }
  }

  void subshape(std::string_view instruction, int depth) {
    const auto byte = [&](std::size_t i) {
      return i < instruction.size() ? static_cast<unsigned char>(instruction[i]) : 0;
    };
    const bool word = form_ == SubshapeForm::Word;
    const bool wide = form_ != SubshapeForm::Byte && !word && byte(1) == 0;
    const int code = word ? byte(1) << 8 | byte(2) : wide ? byte(2) << 8 | byte(3) : byte(1);
    const Shape* const shape = file_.find(code);
    if (!shape) return;
    if (!wide || form_ != SubshapeForm::BigFont) return run(*shape, depth + 1);
    // Put at a place of the character's own cell, made as wide and as high as told; the pen then stands where it stood.
    const Place stood = at_;
    const double scale = scale_;
    const bool down = down_;
    const Place stretched{stretch_.x, stretch_.y};
    const auto signed_byte = [&](std::size_t i) { return static_cast<signed char>(byte(i)); };
    go({at_.x + signed_byte(4) * scale * stretch_.x, at_.y + signed_byte(5) * scale * stretch_.y}, false);
    if (file_.cellWidth_ > 0) stretch_.x *= byte(6) / file_.cellWidth_;
    if (file_.above_ > 0) stretch_.y *= byte(7) / file_.above_;
    down_ = true;
    run(*shape, depth + 1);
    stretch_ = stretched;
    scale_ = scale;
    down_ = down;
    go(stood, false);
  }

  void step(double x, double y) { go({at_.x + x * stretch_.x, at_.y + y * stretch_.y}, down_); }

  void go(const Place& to, bool drawn) {
    constexpr double kFarthest = 1e9;
    if (!(std::fabs(to.x) < kFarthest) || !(std::fabs(to.y) < kFarthest)) return;
    at_ = to;
    if (++steps_ < kMostSteps) out_.points.push_back({to.x, to.y, drawn});
  }

  /// Part of a circle from the pen on: `octants` has the first octant and how many, and the sign that it runs
  /// clockwise; fractions of an octant, in 256ths, say where in the first and in the last of them it begins and ends.
  void octants(double radius, unsigned char octants, int firstFraction, int lastFraction) {
    const auto value = static_cast<signed char>(octants);
    const double sense = value < 0 ? -1 : 1;
    const int bits = std::abs(static_cast<int>(value));
    const int count = (bits & 7) == 0 ? 8 : bits & 7;
    const double first = (bits >> 4 & 7) * kOctant;
    const double start = first + sense * firstFraction * kOctant / 256;
    const double end = first + sense * (lastFraction ? count - 1 + lastFraction / 256.0 : count) * kOctant;
    arc({at_.x - radius * std::cos(start) * stretch_.x, at_.y - radius * std::sin(start) * stretch_.y}, radius, start,
        end - start);
  }

  void bulge(double x, double y, int bulge) {
    const double b = bulge / 127.0;
    const double chord = std::hypot(x, y);
    if (bulge == 0 || chord == 0) return step(x, y);
    const double sweep = 4 * std::atan(b);
    const double radius = chord / 2 / std::sin(std::fabs(sweep) / 2);
    // The centre lies left of the chord where the arc runs counter-clockwise by less than half a turn.
    const double offset = (1 - b * b) / (4 * b);
    const Place center{x / 2 - y * offset, y / 2 + x * offset};
    const Place target{at_.x + x * stretch_.x, at_.y + y * stretch_.y};
    arc({at_.x + center.x * stretch_.x, at_.y + center.y * stretch_.y}, radius, std::atan2(-center.y, -center.x),
        sweep);
    go(target, down_);
  }

  void arc(const Place& center, double radius, double start, double sweep) {
    const double largest = radius * std::max(std::fabs(stretch_.x), std::fabs(stretch_.y));
    const double flat = 2 * std::acos(std::clamp(1 - tolerance_ / std::max(largest, 1e-9), 0.0, 1.0));
    const int pieces = static_cast<int>(std::clamp(std::ceil(std::fabs(sweep) / std::max(flat, 0.01)), 1.0, 1000.0));
    for (int i = 1; i <= pieces; ++i) {
      const double angle = start + sweep * i / pieces;
      go({center.x + radius * std::cos(angle) * stretch_.x, center.y + radius * std::sin(angle) * stretch_.y}, down_);
    }
  }

  const ShapeFile& file_;
  double tolerance_;
  ShapeOutline& out_;
  SubshapeForm form_;
  Place at_;
  Place stretch_{1, 1};
  std::vector<Place> kept_;
  double scale_ = 1;
  bool down_ = true;  // as shapes begin
  std::size_t steps_ = 0;
};

ShapeOutline ShapeFile::outline(const Shape& shape, double tolerance) const {
  ShapeOutline out;
  Runner(*this, tolerance, out).run(shape);
  return out;
}

}  // namespace qv
