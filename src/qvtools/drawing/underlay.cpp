#include "qvtools/drawing/underlay.h"

#include <cstring>
#include <map>
#include <memory>
#include <new>
#include <set>
#include <utility>

#include "qvtools/dxf/model/visit.h"
#include "qvtools/import/internal/float_steps.h"
#include "qvtools/services/internal/out_of_memory.h"
#include "qvtools/text/gbk_text.h"

namespace qv {

namespace {

using Names = std::set<std::string>;

/// Does something with every record of a list.
void each(const CPtrList& list, const auto& f) {
  for (POSITION at = list.GetHeadPosition(); at;) f(*static_cast<ACAD_ENTITY*>(list.GetNext(at)));
}
void each_block(const DXF& drawing, const auto& f) {
  for (POSITION at = drawing.m_BlockList.GetHeadPosition(); at;)
    f(*static_cast<ACAD_BLOCK*>(drawing.m_BlockList.GetNext(at)));
}

std::string cut(const std::string& name) {
  return name.substr(0, cut_length(name.c_str(), kNameSize - 1));
}

/// The name, or one like it that is not taken yet; it is taken then.
std::string free_name(const std::string& name, Names& taken) {
  std::string free = cut(name);
  for (int i = 2; !taken.insert(free).second; ++i) {
    const std::string ending = "-" + std::to_string(i);
    free = name.substr(0, cut_length(name.c_str(), kNameSize - 1 - ending.size())) + ending;
  }
  return free;
}

/// What becomes of the copy before it is inserted.
class Change {
 public:
  Change(DXF& copy, double scale, const UnderlayLayer& layer)
      : copy_(copy), scale_(static_cast<float>(scale)), layer_(layer) {
    for (int i = 0; i < copy.m_nLayer; ++i) layers_[copy.m_pLayer[i].m_szName] = copy.m_pLayer[i];
  }

  /// Patterns are scaled, so that they are line types of their own.
  void take_line_types(const CBase_SGT& composer) {
    Names taken{"CONTINUOUS", "BYLAYER"};
    for (int i = 0; i < composer.m_nLType; ++i) taken.insert(composer.m_pLType[i].m_szName);
    for (int i = 0; i < copy_.m_nLType; ++i) {
      ACAD_LTYPE& entry = copy_.m_pLType[i];
      if (entry.m_nElements == 0) continue;
      entry.m_fLength *= scale_;
      for (int k = 0; k < entry.m_nElements; ++k) entry.m_fElement[k] *= scale_;
      const std::string name = free_name(entry.m_szName, taken);
      ltypes_[entry.m_szName] = name;
      copy_text(entry.m_szName, name.c_str());
    }
    for (auto& [name, entry] : layers_) rename_line_type(entry.m_szLType);
  }

  void take_blocks(const CBase_SGT& composer) {
    Names taken;
    each_block(composer, [&](const ACAD_BLOCK& block) { taken.insert(block.m_szName); });
    each_block(copy_, [&](ACAD_BLOCK& block) {
      const std::string name = free_name(block.m_szName, taken);
      blocks_[block.m_szName] = name;
      copy_text(block.m_szName, name.c_str());
      for (float* const value : {&block.m_Base.x, &block.m_Base.y, &block.m_Base.z}) *value *= scale_;
      copy_text(block.m_szLayer, layer_of(block.m_szLayer, true).c_str());
      keep_shown(block.m_EntityList, true);
    });
    keep_shown(copy_.m_EntityList, false);
  }

  /// The layers of the copy: one, or its own with the prefix.
  void take_layers() {
    if (!layer_.prefix) {
      ACAD_LAYER& only = copy_.m_pLayer[0];
      only = ACAD_LAYER();
      copy_text(only.m_szName, cut(layer_.name).c_str());
      only.m_nColor = layer_.color == kByLayer ? 7 : layer_.color;
      copy_.m_nLayer = 1;
      return;
    }
    for (int i = 0; i < copy_.m_nLayer; ++i) {
      ACAD_LAYER& entry = copy_.m_pLayer[i];
      copy_text(entry.m_szLType, layers_[entry.m_szName].m_szLType);
      if (layer_.color != kByLayer) entry.m_nColor = entry.m_nColor < 0 ? -layer_.color : layer_.color;
      copy_text(entry.m_szName, cut(layer_.name + entry.m_szName).c_str());
    }
  }

 private:
  static bool is_hidden(const ACAD_LAYER& layer) { return layer.m_nColor < 0 || (layer.m_nFlags & 1) != 0; }

  /// What lies on layer 0 of a block lies on the layer of its insert.
  std::string layer_of(const char* name, bool inBlock) const {
    if (!layer_.prefix) return cut(layer_.name);
    return inBlock && std::strcmp(name, "0") == 0 ? "0" : cut(layer_.name + name);
  }

  void rename_line_type(char (&name)[kNameSize]) const {
    const auto found = ltypes_.find(name);
    if (found != ltypes_.end()) copy_text(name, found->second.c_str());
  }

  void keep_shown(CPtrList& list, bool inBlock) {
    for (int left = list.GetCount(); left > 0; --left) {
      std::unique_ptr<ACAD_ENTITY> entity(static_cast<ACAD_ENTITY*>(list.RemoveHead()));
      if (!visit_entity(*entity, [&](auto& record) { return changed(record, inBlock); })) continue;
      if (!list.AddTail(entity.get())) throw std::bad_alloc();
      entity.release();
    }
  }

  /// Scales a record and gives it its layer and look; false when it is not seen and has no layer to hide it any more.
  template <class Record>
  bool changed(Record& record, bool inBlock) {
    const auto found = layers_.find(record.m_szLayer);
    const ACAD_LAYER own = found == layers_.end() ? ACAD_LAYER() : found->second;
    if (!layer_.prefix && is_hidden(own)) return false;
    const float matrix[9] = {scale_, 0, 0, 0, scale_, 0, 0, 0, scale_};
    record.Transfer(matrix, nullptr);
    if constexpr (requires { record.m_fRadius; }) record.m_fRadius *= scale_;
    if constexpr (requires { record.m_fHeight; }) record.m_fHeight *= scale_;
    if constexpr (requires { record.m_Vertices; }) {
      record.m_fStartWidth *= scale_;
      record.m_fEndWidth *= scale_;
      for (int i = 0; i < record.m_Vertices.GetSize(); ++i) {
        record.m_Vertices[i].m_fStartWidth *= scale_;
        record.m_Vertices[i].m_fEndWidth *= scale_;
      }
    }
    if constexpr (requires { record.m_szBlock; }) {
      const auto block = blocks_.find(record.m_szBlock);
      if (block != blocks_.end()) copy_text(record.m_szBlock, block->second.c_str());
    }
    if constexpr (requires { record.m_szLType; }) {
      if (!layer_.prefix && std::strcmp(record.m_szLType, "BYLAYER") == 0)
        copy_text(record.m_szLType, own.m_szLType);
      else
        rename_line_type(record.m_szLType);
    }
    if constexpr (requires { record.m_nColor; }) {
      if (layer_.color != kByLayer)
        record.m_nColor = kByLayer;
      else if (!layer_.prefix && record.m_nColor == kByLayer)
        record.m_nColor = own.m_nColor;
    }
    copy_text(record.m_szLayer, layer_of(record.m_szLayer, inBlock).c_str());
    return true;
  }

  DXF& copy_;
  float scale_;
  const UnderlayLayer& layer_;
  std::map<std::string, ACAD_LAYER> layers_;
  std::map<std::string, std::string> ltypes_;
  std::map<std::string, std::string> blocks_;
};

}  // namespace

int Underlay(CBase_SGT& composer, DXF& drawing, const UnderlayPlace& place, double scale, const UnderlayLayer& layer) {
  if (!composer.m_nMemFlag || !drawing.m_nMemFlag || !(scale > 0)) return 0;
  return detail::unless_out_of_memory(
      [&] {
        DXF copy;
        copy.Open_MemDxf();
        if (!copy.InsertDxf(&drawing, nullptr, nullptr) || copy.m_nLayer < 1) return 0;
        Change change(copy, scale * static_cast<double>(composer.m_fLenFactor), layer);
        change.take_line_types(composer);
        change.take_blocks(composer);
        change.take_layers();
        float x = place.x;
        float y = place.y;
        composer.Convert_XY(x, y);
        const int mode = std::exchange(composer.m_nOpenMode, 1);  // the tables of a document that is read grow
        const int done = composer.InsertDxf(&copy, x, y, place.angle + composer.m_fRotAngle);
        composer.m_nOpenMode = mode;
        return done;
      },
      0);
}

double UnitFactor(Unit from, Unit to) {
  if (from == Unit::None || to == Unit::None) return 1;
  return importing::millimetres(from) / importing::millimetres(to);
}

}  // namespace qv
