#pragma once

/// The instructions of a shape record, and their interpreter.

namespace qv::detail {

/// The bytes that mean something by themselves; every other one is a vector.
namespace shape_code {
inline constexpr unsigned char kEnd = 0;
inline constexpr unsigned char kPenDown = 1;
inline constexpr unsigned char kPenUp = 2;
inline constexpr unsigned char kDivide = 3;    // by the next byte
inline constexpr unsigned char kMultiply = 4;  // by the next byte
inline constexpr unsigned char kPush = 5;
inline constexpr unsigned char kPop = 6;
inline constexpr unsigned char kMove = 8;       // by the next two signed bytes
inline constexpr unsigned char kMoves = 9;      // by pairs of signed bytes until (0, 0)
inline constexpr unsigned char kVertical = 14;  // the next command is for vertical text only
}  // namespace shape_code

/// A shape record is at most this long: its length is stored in 16 bits.
inline constexpr int kLongestShape = 65535;
/// The number of zero bytes after the last record: every shape that runs into them ends there.
inline constexpr int kShapePadding = 8;

struct Vector {
  double u;
  double v;
};

/// The sixteen directions, counter-clockwise from +x in steps that alternate between the axes and half-slopes.
inline constexpr Vector kDirections[16] = {{1, 0},  {1, 0.5},  {1, 1},  {0.5, 1},   {0, 1},   {-0.5, 1},
                                           {-1, 1}, {-1, 0.5}, {-1, 0}, {-1, -0.5}, {-1, -1}, {-0.5, -1},
                                           {0, -1}, {0.5, -1}, {1, -1}, {1, -0.5}};

inline Vector decode_vector(unsigned char code) {
  const double length = code >> 4;
  const Vector& direction = kDirections[code & 15];
  return {direction.u * length, direction.v * length};
}

/// Runs the shape record (its name first) on `pen`: pen.step(u, v, down) displaces, pen.push() remembers the position
/// and pen.pop() goes back to it, to the shape's start when nothing was remembered. The record must lie in a buffer
/// that ends in `kShapePadding` zeros.
void run_shape(const unsigned char* p, auto& pen) {
  const unsigned char* const limit = p + kLongestShape;
  while (p < limit && *p++) {
  }
  bool down = false;
  double scale = 1;
  pen.push();
  const auto step = [&](unsigned char u, unsigned char v) {
    pen.step(static_cast<signed char>(u) * scale, static_cast<signed char>(v) * scale, down);
  };
  while (p < limit) {
    const unsigned char code = *p++;
    switch (code) {
      case shape_code::kEnd:
        return;
      case shape_code::kPenDown:
        down = true;
        break;
      case shape_code::kPenUp:
        down = false;
        break;
      case shape_code::kDivide:
        if (*p) scale /= *p;
        ++p;
        break;
      case shape_code::kMultiply:
        scale *= *p++;
        break;
      case shape_code::kPush:
        pen.push();
        break;
      case shape_code::kPop:
        pen.pop();
        break;
      case shape_code::kMove:
        step(p[0], p[1]);
        p += 2;
        break;
      case shape_code::kMoves:
        for (; (p[0] || p[1]) && p < limit; p += 2) step(p[0], p[1]);
        p += 2;
        break;
      case shape_code::kVertical:
        // Quirk: behind instruction 14 a fixed number of bytes is skipped, so the pairs of an instruction 9 are not;
        // fonts written for this reader rely on it.
        p += *p == shape_code::kMove ? 3 : *p == shape_code::kDivide || *p == shape_code::kMultiply ? 2 : 1;
        break;
      default: {
        const Vector vector = decode_vector(code);
        pen.step(vector.u * scale, vector.v * scale, down);
      }
    }
  }
}

}  // namespace qv::detail
