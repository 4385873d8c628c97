// The tables, blocks and objects of a foreign drawing.

#include <algorithm>
#include <cmath>

#include "qvtools/import/internal/drawing.h"

namespace qv::importing {

namespace {

double positive(double v, double otherwise) {
  return v > 0 && std::isfinite(v) ? v : otherwise;
}

FileLayer layer_of(const Record& r, const Decoder& decoder) {
  FileLayer layer;
  layer.name = decoder.gbk(r.word(2));
  layer.fullName = decoder.utf8(r.word(2));
  layer.color = r.integer(62, 7);
  if (std::abs(layer.color) > 255 || layer.color == 0) layer.color = 7;
  layer.flags = r.integer(70) & 7;
  layer.trueColor = r.has(420) ? r.integer(420) & 0xFFFFFF : -1;
  layer.lineWeight = r.integer(370, -3);
  layer.plotted = r.integer(290, 1) != 0;
  layer.lineType = r.word(6);
  return layer;
}

FileLineType line_type_of(const Record& r, const Decoder& decoder) {
  FileLineType type;
  type.name = decoder.gbk(r.word(2));
  type.description = decoder.gbk(r.text(3));
  for (const Tag& tag : r.tags) {
    if (tag.code == 49 && std::isfinite(real_of(tag))) type.elements.push_back(real_of(tag));
    if (tag.code == 74 && integer_of(tag) != 0) type.hasShapes = true;
  }
  return type;
}

/// The flag of a style that is no text style: it names a file of shapes.
constexpr int kOfShapes = 1;

FileStyle style_of(const Record& r, const Decoder& decoder) {
  FileStyle style;
  style.name = decoder.gbk(r.word(2));
  style.font = decoder.gbk(r.word(3));
  style.bigFont = decoder.gbk(r.word(4));
  style.flags = r.integer(70);
  style.height = r.real(40);
  style.width = positive(r.real(41, 1), 1);
  style.oblique = r.real(50);
  style.generation = r.integer(71);
  return style;
}

DimStyle dim_style_of(const Record& r) {
  DimStyle style;
  for (const Tag& tag : r.tags) {
    const bool word = (tag.code >= 3 && tag.code <= 7) || (tag.code >= 340 && tag.code <= 349);
    if (word)
      style.words.push_back(tag);
    else if (tag.code >= 40 && tag.code < 300)
      style.values.emplace_back(tag.code, real_of(tag));
  }
  return style;
}

}  // namespace

void Drawing::read_table_record(const Record& r) {
  const auto add = [&](auto& list, NameIndex& names, auto&& entry) {
    if (r.word(2).empty()) return;
    names.add(r.word(2), static_cast<int>(list.size()), decoder);
    list.push_back(std::forward<decltype(entry)>(entry));
  };
  // A dimension style has its handle in another group.
  const Tag* const handle = r.find(r.name == "DIMSTYLE" ? 105 : 5);
  if (handle && !handle->binaryNumber) nameOfHandle.emplace(handle_of(*handle), r.word(2));
  if (r.name == "LAYER")
    add(layers, layerNames, layer_of(r, decoder));
  else if (r.name == "LTYPE")
    add(lineTypes, lineTypeNames, line_type_of(r, decoder));
  else if (r.name == "STYLE" && (r.integer(70) & kOfShapes) != 0)
    shapeFonts.push_back(decoder.gbk(r.word(3)));
  else if (r.name == "STYLE")
    add(styles, styleNames, style_of(r, decoder));
  else if (r.name == "DIMSTYLE")
    add(dimStyles, dimStyleNames, dim_style_of(r));
}

void Drawing::read_tables(Span section) {
  Record record;
  in.seek(section.from);
  while (read_record(in, record) && record.place < section.to) {
    if (record.name == "ENDSEC" || record.name == "EOF") break;
    if (record.name != "TABLE" && record.name != "ENDTAB") read_table_record(record);
  }
}

namespace {

bool is_zero_layer(std::string_view layer) {
  return layer.empty() || layer == "0";
}

}  // namespace

void Drawing::index_block(FileBlock& block, const Record& opening) {
  block.name = decoder.gbk(opening.has(2) ? opening.word(2) : opening.word(3));
  block.base = opening.point(10);
  if (!is_finite(block.base)) block.base = {};
  block.flags = opening.integer(70);
  block.from = block.to = in.next_place();
  auto& children = childNames_.emplace_back();
  while (in.next()) {
    if (in.tag().code != 0) continue;
    block.to = in.place();
    const std::string_view name = word_of(in.tag());
    if (name == "ENDBLK" || name == "BLOCK" || name == "ENDSEC" || name == "SECTION" || name == "EOF") {
      in.unread();
      return;
    }
    block.entities += name != "VERTEX" && name != "SEQEND";
    // Its layer, colour and line type, and the block of a reference.
    bool layer = false;
    std::string_view child;
    double columns = 1;
    double rows = 1;
    const bool refers = name == "INSERT" || name == "DIMENSION" || name == "ACAD_TABLE";
    while (in.next() && in.tag().code != 0) {
      const Tag& tag = in.tag();
      if (tag.code == 8) {
        layer = true;
        block.inherits = block.inherits || is_zero_layer(word_of(tag));
      } else if (tag.code == 62) {
        block.inherits = block.inherits || integer_of(tag) == 0;
      } else if (tag.code == 370) {
        block.inherits = block.inherits || integer_of(tag) == kWeightByBlock;
      } else if (tag.code == 6) {
        block.inherits = block.inherits || word_of(tag) == "BYBLOCK" || word_of(tag) == "ByBlock";
      } else if (refers && tag.code == 2 && child.empty()) {
        child = word_of(tag);
      } else if (refers && tag.code == 70 && name == "INSERT") {
        columns = std::max(1.0, real_of(tag));
      } else if (refers && tag.code == 71 && name == "INSERT") {
        rows = std::max(1.0, real_of(tag));
      }
    }
    if (!layer) block.inherits = true;
    if (!child.empty()) children.emplace_back(child, columns * rows);
    in.unread();
  }
  block.to = source_.size;
}

void Drawing::read_blocks(Span section) {
  Record record;
  in.seek(section.from);
  while (read_record(in, record) && record.place < section.to) {
    if (record.name == "ENDSEC" || record.name == "EOF" || record.name == "SECTION") break;
    if (record.name != "BLOCK") continue;
    const int index = static_cast<int>(blocks.size());
    const std::string_view name = record.has(2) ? record.word(2) : record.word(3);
    blockNames.add(name, index, decoder);
    if (const Tag* const handle = record.find(5)) blockOfHandle.emplace(handle_of(*handle), index);
    if (const Tag* const owner = record.find(330)) blockOfHandle.emplace(handle_of(*owner), index);
    index_block(blocks.emplace_back(), record);
  }
}

void Drawing::read_objects(Span section) {
  Record r;
  in.seek(section.from);
  while (read_record(in, r) && r.place < section.to) {
    if (r.name == "ENDSEC" || r.name == "EOF") break;
    if (r.name == "LAYOUT") {
      // Its own part lies behind the plot settings.
      Layout layout;
      bool own = false;
      for (const Tag& tag : r.tags) {
        if (tag.code == 100) own = word_of(tag) == "AcDbLayout";
        if (!own) continue;
        if (tag.code == 1) layout.name = decoder.utf8(tag.text);
        if (tag.code == 71) layout.order = integer_of(tag);
        if (tag.code != 330) continue;
        const auto found = blockOfHandle.find(handle_of(tag));
        if (found != blockOfHandle.end()) layout.block = found->second;
      }
      if (!layout.name.empty()) layouts.push_back(std::move(layout));
    } else if (r.name == "SPATIAL_FILTER") {
      if (r.integer(71, 1) != 0) clippedReferences.push_back(r.place);
    } else if (r.name == "MLINESTYLE") {
      MLineStyle style;
      style.flags = r.integer(70);
      bool elements = false;
      for (const Tag& tag : r.tags) {
        elements = elements || tag.code == 71;
        if (elements && tag.code == 49) style.offsets.push_back(real_of(tag));
        if (elements && tag.code == 62) style.colors.push_back(integer_of(tag));
      }
      mlineStyleNames.add(r.word(2), static_cast<int>(mlineStyles.size()), decoder);
      if (const Tag* const handle = r.find(5)) nameOfHandle.emplace(handle_of(*handle), r.word(2));
      mlineStyles.push_back(std::move(style));
    }
  }
  std::ranges::sort(layouts, {}, &Layout::order);
}

void Drawing::link_blocks() {
  for (std::size_t i = 0; i < childNames_.size(); ++i)
    for (const auto& [name, times] : childNames_[i])
      if (const int child = blockNames.find(name, decoder); child >= 0) blocks[i].children.emplace_back(child, times);
  childNames_.clear();
}

}  // namespace qv::importing
