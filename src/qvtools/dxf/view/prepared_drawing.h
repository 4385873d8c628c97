#pragma once

#include <cstdint>
#include <functional>
#include <vector>

#include "qvtools/dxf/model/document.h"
#include "qvtools/dxf/view/box_grid.h"
#include "qvtools/dxf/view/catch.h"

namespace qv {

namespace detail {
class DrawingContext;
class Plane;
}  // namespace detail

/// An in-memory drawing made ready to be drawn and picked many times: it knows where every entity lies, in plan or
/// projected for two view angles, and looks only at those that a window can show. Making it takes about as long as
/// drawing everything once, and some 50 bytes an entity, a text 20 more. A block of many entities that is drawn many
/// times on a screen or a bitmap is drawn once, and its pixels are copied.
///
/// It stands on the document, which must outlive it. When the document's entities or blocks, or the shape fonts,
/// change, it is to be made anew. An entity of a program's own kind is always drawn. When memory runs out, report 301:
/// one that is being made shows nothing then, and a pick takes nothing.
///
/// While one thread draws it, another may pick and catch.
class QV_API PreparedDrawing {
 public:
  /// In plan.
  explicit PreparedDrawing(DXF& dxf);
  /// Projected for the view angles a and b, in radians.
  PreparedDrawing(DXF& dxf, float a, float b);

  /// Draws what `DXF::Draw` (or `DXF::Draw3D`) draws, in the same order: the same picture, but for where the dashes of
  /// joined dashed lines begin, and but for blocks that are copied, parts of which may lie a pixel aside.
  void Draw(CDC* dc, CFCoor* coor) { Draw(dc, coor, {}); }
  /// The same, shown as the appearance says.
  void Draw(CDC* dc, CFCoor* coor, const Appearance& appearance) { Draw(dc, coor, appearance, nullptr); }
  /// The same, asking `goesOn` (null: never) after every thousand entities or so. Returns false when its answer was no,
  /// and the drawing was given up, or when memory ran out.
  bool Draw(CDC* dc, CFCoor* coor, const Appearance& appearance, const std::function<bool()>& goesOn);
  /// The entities that a pick takes, in drawing order: those wholly in the rectangle, and with a mode other than 0
  /// those that cross its border as well. The rectangle lies in the plane of the view.
  std::vector<ACAD_ENTITY*> Pick(const CFRect& rect, int mode);
  /// The points that a pointer catches: those within its reach first, the nearest before the others, then those that a
  /// curve within its reach has elsewhere (its centre, the foot of a perpendicular), then points of curves. None comes
  /// twice. Inserts show what their blocks have; texts are caught by their insertion points. In a projected view what
  /// is seen counts. A program's own kinds are not caught. Empty also when memory runs out (report 301).
  std::vector<CaughtPoint> Catch(const CatchQuery& query);
  /// Chooses what is drawn and picked from now on (at first everything): calls `shown` for each entity of the drawing,
  /// inserts among them.
  void Show(const std::function<bool(ACAD_ENTITY&)>& shown);
  /// Texts lower than this many pixels, which nobody can read, are drawn as a line along their base from now on: most
  /// of the strokes of a large drawing seen as a whole. 0, at first, draws all texts in letters. Texts in blocks keep
  /// their letters.
  void SetReadableHeight(int pixels) { readable_ = pixels; }

 private:
  using Box = detail::Box;
  enum class Kind : std::uint8_t { Line, Text, Insert, Other };
  struct Item {
    Box box;  // of a line its start and end, as they are drawn
    ACAD_ENTITY* entity;
    int color;  // of a line or a text
    int index;  // of an insert's block, of a text's base line
    Kind kind;
    PenStyle style;
    bool shown;
  };
  struct BaseLine {
    Box ends;
    float height;
  };
  /// A block that is inserted: how far it reaches where no insert has moved it, and what it holds.
  struct Block {
    ACAD_BLOCK* block;
    Box reach;
    int entities;
  };
  using Marks = std::vector<std::uint64_t>;  // a bit an item, for one call
  struct Builder;
  class Blocks;

  void draw(CFCoor* coor, detail::DrawingContext& to);
  void pick(const CFRect& rect, int mode, std::vector<ACAD_ENTITY*>& taken);
  void prepare(DXF& dxf, const detail::Plane& plane);
  template <class Misses, class F>
  void for_each_shown(Marks& marks, const Misses& misses, const F& f);
  template <class Misses, class F>
  void for_each_in_cells(Marks& marks, const std::vector<std::uint32_t>& cells, const Misses& misses, const F& f);
  /// What is shown and may lie in a window, in drawing order.
  std::vector<const Item*> items_in(const Box& window);
  bool picks(const Item& item, const CFRegion& region, int mode) const;

  bool plan_;
  float a_;
  float b_;
  float longestText_ = 0;  // in its heights
  float highest_ = 0;      // of all Z coordinates, without their signs
  std::vector<Item> items_;
  std::vector<Block> blocks_;
  std::vector<BaseLine> baseLines_;
  int readable_ = 0;
  detail::BoxGrid grid_;  // over the items
  Marks drawn_;           // of what is drawn
  Marks asked_;           // of what is picked or caught
};

}  // namespace qv
