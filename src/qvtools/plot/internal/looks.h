#pragma once

/// How entities look on paper: what their layers, line types, pens and notes make of them.

#include <compare>
#include <functional>
#include <string_view>
#include <unordered_map>
#include <vector>

#include "qvtools/display/appearance.h"
#include "qvtools/dxf/model/document.h"
#include "qvtools/dxf/model/internal/name_index.h"
#include "qvtools/import/import.h"
#include "qvtools/plot/internal/canvas.h"
#include "qvtools/plot/pens.h"

namespace qv::detail {

struct LookOptions {
  const PenTable* pens = nullptr;  ///< null for line weights and colours of the drawing
  PlotColors colors = PlotColors::Black;
  double penScale = 1;
  double scale = 1;  ///< mm of paper per drawing unit
  /// A width for everything but wide polylines; 0 for those of pens and line weights.
  double width = 0;
  Appearance appearance = {nullptr, nullptr, kShortestPlotted};
  bool dark = false;  ///< on a dark background, where black is white
  /// Which layers are shown, by their GBK names; null for those that the drawing shows.
  std::function<bool(const char* layer)> shows = nullptr;
};

/// What an entity says of itself: numbers and names, "by layer" and "by block" among them.
struct Attributes {
  std::string_view layer = "0";
  std::string_view ltype = "BYLAYER";
  int color = kByLayer;
  int lineWeight = -1;  ///< as `DrawingNotes` has it
  int trueColor = -1;
};

struct Look {
  bool shown = true;
  int layer = 0;  ///< an index of `Looks::layers`
  Stroke stroke;
  const DashPattern* pattern = nullptr;  ///< null for a solid line
};

/// What a block's entities take from the reference that places it.
struct Inherited {
  std::string_view layer;
  int color = 7;
  int lineWeight = -3;
  int trueColor = -1;
  auto operator<=>(const Inherited&) const = default;
};

class Looks {
 public:
  Looks(const DXF& dxf, const DrawingNotes* notes, const LookOptions& options);

  /// The look of an entity, of a block's one with what that inherits.
  const Look& of(const Attributes& attributes, const Inherited* inherited);
  /// What the entities of a block take from a reference; `frozen` when they are not shown at all.
  Inherited inherited(const Attributes& insert, bool& frozen);
  Attributes attributes(const ACAD_ENTITY& entity, std::string_view layer, std::string_view ltype, int color) const;

  struct Layer {
    const ACAD_LAYER* record = nullptr;
    std::string name;  // UTF-8
    int color = 7;
    int lineWeight = -3;
    int trueColor = -1;
    bool off = false;
    bool frozen = false;
    bool plotted = true;
  };
  const std::vector<Layer>& layers() const { return layers_; }
  /// Line types that are too short to be drawn, and are drawn solid.
  int short_patterns() const { return short_patterns_; }

 private:
  struct Key {
    int layer, color, ltype, lineWeight, trueColor;
    bool operator==(const Key&) const = default;
  };
  struct Hash {
    std::size_t operator()(const Key& key) const;
  };
  DashPattern pattern_of(const ACAD_LTYPE& record) const;
  void take_notes(const std::vector<DrawingNotes::Layer>& notes);
  int layer_index(std::string_view name) const;
  int ltype_index(std::string_view name) const;
  Look make(const Key& key) const;
  Ink ink(int color, int trueColor, const PenRule* rule) const;

  const DrawingNotes* notes_;
  LookOptions options_;
  const DXF& dxf_;
  NameIndex<ACAD_LAYER> layer_names_;
  NameIndex<ACAD_LTYPE> ltype_names_;
  std::vector<Layer> layers_;  // the last one for names that no table has
  std::vector<DashPattern> patterns_;
  int short_patterns_ = 0;
  std::unordered_map<Key, Look, Hash> looks_;
  // The attributes of the last entity: most have those of the one before.
  Attributes last_;
  const Inherited* last_inherited_ = nullptr;
  const Look* last_look_ = nullptr;
};

}  // namespace qv::detail
