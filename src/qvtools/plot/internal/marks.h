#pragma once

/// A drawing as marks on paper. Points are taken from the records in double, and cut to the window, so that nothing
/// outside of it is in the file.

#include <map>
#include <utility>

#include "qvtools/display/internal/path.h"
#include "qvtools/plot/internal/looks.h"

namespace qv::detail {

/// The plane of two view angles, as `TouYing3Dto2D` has it.
class Projection {
 public:
  Projection(double a, double b) : ca_(std::cos(a)), sa_(std::sin(a)), cb_(std::cos(b)), sb_(std::sin(b)) {}
  double u(double x, double y) const { return x * ca_ + y * sa_; }
  double v(double x, double y, double z) const { return (y * ca_ - x * sa_) * sb_ + z * cb_; }

 private:
  double ca_, sa_, cb_, sb_;
};

/// Where a drawing lies on a page, seen in plan or projected.
struct Placement {
  double x = 0;  ///< the point of the plane that lies at `at`
  double y = 0;
  PathPoint at;
  double scale = 1;                  ///< mm of paper per drawing unit
  PathRect window;                   ///< what is shown, on paper
  const Projection* view = nullptr;  ///< null in plan
  double shift[3] = {0, 0, 0};       ///< of an insert's entities, in space

  /// A point of the plane on paper.
  PathPoint plane(double u, double v) const { return {at.x + (u - x) * scale, at.y + (v - y) * scale}; }
  PathPoint operator()(const Point3& p) const {
    const double px = p.x + shift[0];
    const double py = p.y + shift[1];
    return view ? plane(view->u(px, py), view->v(px, py, p.z + shift[2])) : plane(px, py);
  }
};

/// What was not drawn.
struct MarkCounts {
  long hidden = 0;      ///< on layers that are off, frozen or not plotted
  long outside = 0;     ///< wholly outside of the window
  long notNumbers = 0;  ///< with coordinates that are none
  long ownKinds = 0;    ///< of a program's own kind
  long letterless = 0;  ///< texts without a font
  int shortPatterns = 0;
};

/// Draws a document on the page that the canvas is at.
class Marks {
 public:
  Marks(DXF& dxf, const DrawingNotes* notes, const LookOptions& options, Canvas& canvas);

  /// Keeps blocks that are placed often, where the canvas can. Comes before the page begins.
  void keep_figures(const Placement& placement);
  void draw(const Placement& placement);
  const MarkCounts& counts() const { return counts_; }

 private:
  void draw_list(const CPtrList& list, const Placement& placement, const Inherited* inherited);
  void draw_insert(const ACAD_INSERT& insert, const Placement& placement);
  /// The box of a block on paper where it is placed at its base; and moved, for an insert.
  PathRect placed_box(ACAD_BLOCK& block, const ACAD_INSERT& insert, const Placement& placement);
  template <class Record>
  void draw_record(const Record& record, const Placement& placement, const Inherited* inherited);

  void add(const ACAD_POINT& r, const Placement& to);
  void add(const ACAD_LINE& r, const Placement& to);
  void add(const ACAD_CIRCLE& r, const Placement& to);
  void add(const ACAD_ARC& r, const Placement& to);
  void add(const ACAD_SOLID& r, const Placement& to);
  void add(const ACAD_3DFACE& r, const Placement& to);
  void add(const ACAD_POLYLINE& r, const Placement& to);
  void add(const ACAD_TEXT& r, const Placement& to);

  /// Strokes `path_`, dashed where there is a pattern, cut to the window.
  void stroke(const Stroke& stroke, const DashPattern* pattern, const Placement& to);
  void fill(const Placement& to);
  /// Goes to the layer of the present look, when what was to be filled before it is filled.
  void set_layer();
  void flush_fills();
  void go_to_layer(int of_looks);

  DXF& dxf_;
  const DrawingNotes* notes_;
  Looks looks_;
  Canvas& canvas_;
  InsertedBlocks blocks_;
  std::vector<int> canvas_layers_;
  MarkCounts counts_;
  const Look* look_ = nullptr;  // of the present entity
  const ACAD_ENTITY* entity_ = nullptr;
  Path path_;
  Path dashed_;
  Path clipped_;
  // Neighbours of one look are filled as one path, so that no seam shows between them.
  Path fills_;
  Look fills_look_;
  std::map<ACAD_BLOCK*, CFRect> extents_;                        // of blocks where they are defined
  std::map<std::pair<const ACAD_BLOCK*, Inherited>, int> kept_;  // figures of the canvas
};

}  // namespace qv::detail
