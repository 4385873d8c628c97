#pragma once

/// A drawing taken to pieces.

#include <cmath>
#include <functional>
#include <string_view>
#include <unordered_map>
#include <vector>

#include "qvtools/dxf/model/document.h"

namespace qv::detail {

enum class PieceKind : std::uint8_t { Point, Line, Arc, Circle, Text, Solid, Face, Own };

/// A piece as the walk of a drawing meets it; its names are the records' own. An arc has its ends and its middle, what
/// is of a program's own kind the corners of its extent.
struct SeenPiece {
  PieceKind kind;
  int count;
  Point3 at[4];
  float size[3];  ///< a radius; the height, the rotation in [0, 360) and the width factor of a text; widths at the ends
  int entity;     ///< that it belongs to, from 0
  std::string_view layer;
  std::string_view ltype;
  int color;
  std::string_view words;
  std::string_view style;
};

/// Calls f for every piece of a drawing, in drawing order.
void for_each_piece(DXF& dxf, const std::function<void(const SeenPiece&)>& f);

/// Numbers for equal things, the same in both drawings.
class PieceNames {
 public:
  std::uint32_t look_of(const SeenPiece& piece);
  std::uint32_t words_of(const SeenPiece& piece);

 private:
  std::uint32_t name(std::string_view text) {
    return names_.try_emplace(text, static_cast<std::uint32_t>(names_.size() + 1)).first->second;
  }
  struct LastLook {
    std::string_view layer;
    std::string_view ltype;
    int color = 0;
    std::uint32_t look = 0;
  };
  struct Key {
    std::uint32_t a;
    std::uint32_t b;
    int c;
    friend bool operator==(const Key&, const Key&) = default;
  };
  struct KeyHash {
    std::size_t operator()(const Key& k) const {
      const std::uint64_t mixed = (std::uint64_t{k.a} * 0x9E3779B97F4A7C15U ^ k.b) * 0x9E3779B97F4A7C15U;
      return static_cast<std::size_t>(mixed ^ static_cast<std::uint64_t>(k.c));
    }
  };
  std::unordered_map<std::string_view, std::uint32_t> names_;
  std::unordered_map<Key, std::uint32_t, KeyHash> looks_;
  std::unordered_map<Key, std::uint32_t, KeyHash> words_;
  LastLook last_;
};

/// A piece as it is kept. The points of a line, an arc and a face run from their least end, or corner.
struct Piece {
  std::uint32_t look;
  std::uint32_t words;  ///< 0 without a text
  std::uint32_t first;  ///< of its points
  int entity;
  float size[3];
  float length;  ///< of a text, about
  PieceKind kind;
  std::uint8_t count;
};

/// All pieces of a drawing.
struct Pieces {
  std::vector<Piece> all;
  std::vector<Point3> points;

  Pieces(DXF& dxf, PieceNames& names);
  const Point3* points_of(const Piece& piece) const { return &points[piece.first]; }
  /// Where a piece lies.
  CFRect box_of(const Piece& piece) const;
  /// The largest coordinate.
  double reach() const;
};

}  // namespace qv::detail
