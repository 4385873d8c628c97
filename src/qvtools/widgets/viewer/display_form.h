#pragma once

/// The look of entities whose colour or line type is that of their layer. The library draws records as they are, so the
/// layers' colours and line types are written into them before a drawing is shown.

#include <functional>
#include <string>
#include <string_view>
#include <unordered_map>

#include "qvtools/widgets/viewer/records.h"

namespace qv::viewer {

/// A map from names, looked up without making a text of each.
struct NameHash : std::hash<std::string_view> {
  using is_transparent = void;
};
/// The map.
template <class Value>
using NameMap = std::unordered_map<std::string, Value, NameHash, std::equal_to<>>;

/// The layers of a drawing by their names.
class LayerTable {
 public:
  /// The layers of a drawing, which must outlive the table.
  explicit LayerTable(const DXF& dxf);
  /// The index of the layer; -1 when the drawing has no layer of the name.
  int find(std::string_view name) const;
  /// The colour of a layer (0 and up, also where the layer is marked as off); white for index -1.
  int color(int index) const;
  /// The line type of a layer; null for index -1.
  const char* line_type(int index) const;

 private:
  const DXF& dxf_;
  NameMap<int> indices_;
};

/// The colour number that shows a record's own colour (`qv::kByLayer`: the layer's): on a light background white is
/// shown as black, on a dark one black as white.
int shown_color(int own, int layerColor, bool lightBackground);

/// Writes into a record what shows it: the line type of its layer (by its index) where it takes that one, solid for
/// texts; its colour; the polyline's width at vertices without one of their own; characters for "\\U+XXXX" where they
/// are known. Returns the colour that it had.
int resolve(ACAD_ENTITY& entity, int layer, const LayerTable& layers, bool lightBackground);

/// The same for all entities of the drawing and of its blocks.
void resolve_for_display(DXF& dxf, bool lightBackground);

/// Gives each insert its block as it shows it there: what is on layer "0" of the block lies on the insert's layer, and
/// colour 0 is the insert's colour. Blocks that look alike at several inserts are kept once.
void place_blocks(DXF& dxf);

/// Deletes the entities whose layers are off or frozen. An insert on a layer that is off still shows what lies on other
/// layers of its block, which is placed (`place_blocks`) before.
void drop_hidden(DXF& dxf);

/// How drawings are shown in pictures and on screen: in the standard palette from 16 on, below it in the library's own;
/// dashed by the patterns, which stay the caller's.
qv::Appearance appearance(const qv::LinePatterns& patterns);

/// The extent of a drawing with a margin around it, never empty and always finite: what to fit into a picture.
CFRect with_margin(const CFRect& extent);
/// The same without the margin.
CFRect never_empty(const CFRect& extent);

/// The transform that fits a world rectangle into the middle of a picture.
CFCoor fitted(const CFRect& rect, CSize picture);

}  // namespace qv::viewer
