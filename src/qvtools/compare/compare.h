#pragma once

/// What differs between two drawings.
///
/// Flat drawings have no handles, so things are known by what they are. Both drawings are taken to pieces: a polyline
/// to its segments, an insert to what its block shows there. A piece has a kind, a look (layer, colour, line type), its
/// points, its sizes, a text its words; numbers count as equal within a tolerance. The order of the entities, the
/// direction of a line, and what is put together to a polyline or a block do not matter. Pieces are matched in these
/// steps, each with what the one before left over:
///   1. the same piece at the same place;
///   2. when most is left over: the shift of the whole sheet that matches more, and the same again;
///   3. lines that show the same in other pieces: one in two, two in three;
///   4. the same points with another look or another size: changed;
///   5. the same piece at another place: moved;
///   6. a text with other words in its place: changed.
/// What is left over then was removed from the old drawing or added to the new one.
///
/// The definitions of layers and line types are not compared, nor is what cannot be seen (the alignment point of a
/// text).

#include <cstdint>
#include <memory>
#include <vector>

#include "qvtools/dxf/model/document.h"

namespace qv {

/// What is asked of a comparison.
struct CompareOptions {
  /// How far coordinates and sizes may differ, in drawing units. Coordinates so large that floats are coarser than
  /// this are compared as finely as floats can.
  double tolerance = 0.01;
  /// Whether a shift of the whole sheet is looked for.
  bool findShift = true;
  /// Differences nearer than this to each other are one place, in drawing units; 0 takes a fiftieth of the diagonal of
  /// both drawings.
  double gather = 0;
};

/// What became of a thing.
enum class ChangeKind : std::uint8_t { Removed, Added, Moved, Changed };

/// What became of one entity, or of those of its pieces that share a fate.
struct Difference {
  ChangeKind kind = ChangeKind::Added;
  int before = -1;      ///< the entity in the old drawing, counted from 0 in drawing order; -1 for what was added
  int after = -1;       ///< the entity in the new drawing; -1 for what was removed
  int pieces = 1;       ///< how many of its pieces
  bool words = false;   ///< of a changed text: its words differ, not its look or size
  CFPoint moved{0, 0};  ///< how far, for what was moved
  CFRect box;           ///< where it lies; for what was removed where it lay, on the sheet as it is now
  int place = 0;        ///< which of the places it belongs to
};

/// Differences that lie near to each other.
struct DifferentPlace {
  CFRect box;                    ///< around them
  std::vector<int> differences;  ///< indices of `Comparison::differences`
};

/// What two drawings have and have not in common.
struct Comparison {
  std::vector<Difference>
      differences;                     ///< what was removed in the order of the old drawing, then the rest in the new's
  std::vector<DifferentPlace> places;  ///< from the top left to the bottom right of the sheet
  CFPoint shift{0, 0};                 ///< of the whole sheet, from the old drawing to the new one
  int same = 0;                        ///< pieces that both drawings have at the same place
  /// Whether nothing differs, not even the place of the sheet.
  bool IsSame() const { return differences.empty() && shift == CFPoint(0, 0); }
  /// How many differences are of a kind.
  QV_API int Count(ChangeKind kind) const;

  /// What became of a piece, for `DrawComparison`; removed stands for added in the new drawing.
  enum class Fate : std::uint8_t { Same, Alone, Moved, Changed };
  std::vector<Fate> before;  ///< of each piece of the old drawing
  std::vector<Fate> after;   ///< of each piece of the new drawing
};

/// Compares two in-memory drawings in plan. When memory runs out it reports 301 and gives a comparison without
/// differences whose `same` is -1.
QV_API Comparison Compare(DXF& before, DXF& after, const CompareOptions& options = {});

/// The layers of a drawing of a comparison.
inline constexpr const char* kSameLayer = "SAME";        ///< grey, colour 8
inline constexpr const char* kOldLayer = "OLD_ONLY";     ///< red (1) and dashed
inline constexpr const char* kNewLayer = "NEW_ONLY";     ///< green, 3
inline constexpr const char* kMovedLayer = "MOVED";      ///< cyan, 4
inline constexpr const char* kChangedLayer = "CHANGED";  ///< magenta, 6
inline constexpr const char* kPlacesLayer = "PLACES";    ///< the numbered frames of the places, orange, 30

/// A drawing of both over each other, on the sheet of the new one: what both have in grey, then what differs, each kind
/// on its layer, and around every place a frame with its number. Of what was moved or changed the new state is drawn.
/// The documents must be as they were compared. Null when memory runs out.
QV_API std::unique_ptr<DXF> DrawComparison(DXF& before, DXF& after, const Comparison& comparison);

}  // namespace qv
