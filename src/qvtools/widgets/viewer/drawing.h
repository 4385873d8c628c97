#pragma once

/// A drawing as the viewer shows it: the document with its layers switched on and off and its colours resolved for the
/// background. Nothing here needs a screen.

#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "qvtools.h"
#include "qvtools/dxf/view/prepared_drawing.h"
#include "qvtools/plot/plot.h"
#include "qvtools/widgets/viewer/display_form.h"
#include "qvtools/widgets/viewer/picture_maker.h"

namespace qv::viewer {

using qv::ViewAngles;

/// A layer as the viewer shows it.
struct Layer {
  std::string name;  ///< GBK
  int color = 7;     ///< of the table
  bool on = true;    ///< whether it is shown
  int entities = 0;  ///< in the drawing itself, those of blocks not counted
};

/// A document that is shown, and which of its layers are on.
class Drawing {
 public:
  /// Takes a loaded document, with what its import noted and its unit in mm. Layers that it marks as off or frozen are
  /// off.
  Drawing(std::unique_ptr<DXF> document, bool lightBackground, qv::DrawingNotes notes = {}, double unit = 1);
  ~Drawing();
  Drawing(const Drawing&) = delete;
  Drawing& operator=(const Drawing&) = delete;

  /// The document's layers, followed by those that only entities name.
  const std::vector<Layer>& layers() const { return layers_; }
  /// Switches layers; `on` has an entry for each.
  void show_layers(const std::vector<bool>& on);
  /// Switches the layers as those of the same names in another drawing are.
  void show_layers_as(const Drawing& other);
  /// Shows it on white or on black.
  void set_background(bool light);

  /// Entities are known by their index in the document, from 0.
  int count() const { return static_cast<int>(items_.size()); }
  /// How many are shown, and whether one is.
  int shown_count() const { return shownCount_; }
  bool is_shown(int entity) const;
  /// The record of an entity, which is not to be changed but while a `Still` lives, and its layer.
  ACAD_ENTITY& entity(int entity) const { return *items_[static_cast<std::size_t>(entity)].record; }
  const Layer& layer_of(int entity) const { return layers_[items_[static_cast<std::size_t>(entity)].layer]; }
  /// The colour that the document gives it; `qv::kByLayer` for its layer's.
  int own_color(int entity) const { return items_[static_cast<std::size_t>(entity)].ownColor; }

  /// The line type that the document gives it; empty for a kind without any.
  const std::string& own_line_type(int entity) const;
  /// The entities of an insert's block; 0 for another kind.
  int count_in_block(int entity) const;
  /// Calls f with every text that an insert shows, and how far it is moved in the plane of the view.
  void for_each_text_in(int insert, const ViewAngles& angles, const std::function<void(ACAD_TEXT&, CFPoint)>& f) const;
  /// The entities as a drawing of their own, as they were loaded, with the tables and their blocks; null when memory
  /// runs out.
  std::unique_ptr<DXF> part(const std::vector<int>& entities);
  /// What is shown, ready to be drawn, picked and caught from a direction; another one after any change.
  qv::PreparedDrawing& prepared(const ViewAngles& angles);

  /// The extent of what is shown, or of one entity, seen from a direction.
  CFRect extent(const ViewAngles& angles);
  CFRect extent_of(int entity, const ViewAngles& angles);

  /// Draws what is shown; texts too low to be read as lines, unless every letter is asked for.
  void draw(CDC& dc, const CFCoor& coor, const ViewAngles& angles, bool everyLetter = false);
  /// The shape fonts have changed; while they do, a `Still` lives.
  void fonts_changed();
  /// Draws entities of the drawing so that they are highlighted; false when `goesOn` (null: never) said no.
  bool highlight(CDC& dc, const CFCoor& coor, const ViewAngles& angles, const std::vector<int>& entities,
                 const std::function<bool()>& goesOn = nullptr);
  /// A picture of what is shown and highlighted, drawn in a thread of its own; see `PictureMaker::Make`. Another one
  /// after any change.
  std::shared_ptr<const Picture> picture(const PictureOf& of, PictureMaker::Clock::duration patience,
                                         std::function<void()> ready);

  /// While one lives, no picture is drawn in the other thread.
  class Still {
   public:
    /// Stops the drawing of its pictures, until the end of this.
    explicit Still(Drawing& drawing) : maker_(drawing.maker_) { maker_.Rest(); }
    ~Still() { maker_.GoOn(); }
    Still(const Still&) = delete;
    Still& operator=(const Still&) = delete;

   private:
    PictureMaker& maker_;
  };

  /// The document for a plot, with its layers as they are switched: while this lives, its records look as they were
  /// loaded, and not as they are shown.
  class AsLoaded {
   public:
    /// From here on the records look as they were loaded.
    explicit AsLoaded(Drawing& drawing);
    ~AsLoaded();
    AsLoaded(const AsLoaded&) = delete;
    AsLoaded& operator=(const AsLoaded&) = delete;
    /// What `qv::Plot` takes, under the name for bookmarks.
    qv::PlotSource source(const std::string& name) const;

   private:
    Still still_;
    Drawing& drawing_;
  };

  /// The shown entities that lie wholly inside the rectangle, with `crossing` also those that touch it, in drawing
  /// order.
  std::vector<int> pick(const CFRect& rect, bool crossing, const ViewAngles& angles);

 private:
  /// A record of the document and what it was before it was resolved.
  struct Item {
    ACAD_ENTITY* record;
    std::size_t layer;
    int ownColor = qv::kByLayer;
    int ownLineType = -1;  // an index of `lineTypes_`; -1 for a kind without any
    bool shown = true;
  };
  /// A point to be drawn in its layer's colour: the library draws points black.
  struct Mark {
    qv::Point3 at;
    std::size_t layer;
  };
  class Shown;
  class LayerIndex;

  std::vector<Item> take_items(const CPtrList& list, LayerIndex& index);
  template <class F>
  void for_each_item(const F& f);
  /// Gives all records the look in which they are shown.
  void resolve();
  void recolor(std::vector<Item>& items);
  void rebuild();
  bool is_seen_in_block(const Item& item, bool insertOn) const;
  void show_insert(Item& item, const ACAD_INSERT& insert);
  void collect_marks();
  bool draw_all(CDC& dc, const CFCoor& coor, qv::PreparedDrawing& prepared, const std::function<bool()>& goesOn);
  void draw_marks(CDC& dc, const CFCoor& coor);
  void draw_entity(ACAD_ENTITY& entity, CDC& dc, CFCoor& coor, const ViewAngles& angles) const;

  std::unique_ptr<DXF> document_;
  qv::LinePatterns patterns_;
  qv::DrawingNotes notes_;
  double unit_;
  bool light_;
  std::vector<Layer> layers_;
  std::vector<std::string> lineTypes_;  // that records name
  std::vector<Item> items_;
  std::vector<std::vector<Item>> blocks_;  // of each block, in the document's order
  std::vector<Mark> marks_;
  std::unique_ptr<Shown> shown_;
  std::optional<qv::PreparedDrawing> prepared_;  // of the shown document, from one direction; absent until asked for
  ViewAngles preparedAngles_;
  int shownCount_ = 0;
  PictureMaker maker_;  // the last: it draws from all of the others
};

}  // namespace qv::viewer
