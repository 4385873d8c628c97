#include "qvtools/import/internal/output_tables.h"

#include <algorithm>
#include <cmath>
#include <cstring>

#include "qvtools/text/gbk_text.h"
#include "qvtools/text/numbers.h"

namespace qv::importing {

namespace {

constexpr std::size_t kLongest = kNameSize - 1;

/// The flat reader finds its sections by these words wherever they stand as names.
bool is_section_word(const std::string& name) {
  return name == "TABLES" || name == "BLOCKS" || name == "ENTITIES";
}

std::string shortened(const std::string& name, std::size_t most) {
  return name.substr(0, cut_length(name.c_str(), most));
}

/// Letters that the code page lacks stand as their numbers: a backslash is no part of a name.
std::string without_escapes(std::string name) {
  for (std::size_t at = 0; (at = name.find("\\U+", at)) != std::string::npos;) name.replace(at, 3, "_");
  return name;
}

}  // namespace

std::string Names::take(const std::string& original) {
  const std::string wanted = without_escapes(original);
  std::string name = shortened(wanted, kLongest);
  if (name.size() < wanted.size()) report_.remark("a name longer than 29 bytes was shortened");
  if (is_section_word(name)) {
    report_.remark("a name that readers take for a section was changed");
    name += '_';
  }
  if (name.empty()) name = "_";
  std::string upper = name;
  upper_case(upper.data());
  if (taken_.insert(upper).second) return name;
  for (int& n = numbers_.try_emplace(upper, 2).first->second;; ++n) {
    const std::string suffix = "_" + std::to_string(n);
    name = shortened(wanted, kLongest - suffix.size()) + suffix;
    upper = name;
    upper_case(upper.data());
    if (taken_.insert(upper).second) return name;
  }
}

OutputTables::OutputTables(Drawing& file, ReportBuilder& report, double scale)
    : file_(file),
      report_(report),
      scale_(scale),
      layerNames_(report),
      lineTypeNames_(report),
      styleNames_(report),
      blockNames_(report) {
  lineTypes_.emplace_back();
  lineTypeNames_.take("CONTINUOUS");
  if (file_.layerNames.find("0", file_.decoder) < 0) {
    file_.layerNames.add("0", static_cast<int>(file_.layers.size()), file_.decoder);
    file_.layers.emplace_back().name = "0";
    file_.layers.back().fullName = "0";
  }
  for (std::size_t i = 0; i < file_.lineTypes.size(); ++i) line_type(static_cast<int>(i), 1);
  for (const FileLayer& layer : file_.layers) add_layer(layer);
  add_standard_style();
  for (std::size_t i = 0; i < file_.styles.size(); ++i)
    style({static_cast<int>(i), false, file_.styles[i].oblique, file_.styles[i].generation & 6});
}

void OutputTables::add_standard_style() {
  const int standard = file_.styleNames.find("STANDARD", file_.decoder);
  styles_.push_back(standard < 0 ? ACAD_STYLE() : style_record({standard}));
  if (standard >= 0) {
    const FileStyle& from = file_.styles[static_cast<std::size_t>(standard)];
    styles_[0].m_fOblique = static_cast<float>(from.oblique);
    styles_[0].m_nGeneration = from.generation & 6;
    copy_text(styles_[0].m_szName, from.name.c_str());
    styleIndex_[{standard, false, from.oblique, from.generation & 6}] = 0;
  }
  styleNames_.take(styles_[0].m_szName);
  styleIndex_[{}] = 0;
}

int OutputTables::add_layer(const FileLayer& from) {
  ACAD_LAYER layer;
  copy_text(layer.m_szName, layerNames_.take(from.name).c_str());
  layer.m_nColor = from.color;
  layer.m_nFlags = 64 | from.flags;
  const int type = line_type(from.lineType.empty() ? -1 : file_line_type(from.lineType), 1);
  std::memcpy(layer.m_szLType, line_type_record(is_beyond(type) ? 0 : type).m_szName, sizeof layer.m_szLType);
  layers_.push_back(layer);
  layerLineTypes_.push_back(type);
  return static_cast<int>(layers_.size()) - 1;
}

int OutputTables::layer(std::string_view raw) {
  const int found = file_.layerNames.find(raw, file_.decoder);
  if (found >= 0) return found;
  if (raw.empty()) return layer("0");
  FileLayer added;
  added.name = file_.decoder.gbk(raw);
  added.fullName = file_.decoder.utf8(raw);
  file_.layers.push_back(added);
  const int index = add_layer(added);
  file_.layerNames.add(raw, index, file_.decoder);
  report_.remark("a layer that the table lacks was added");
  return index;
}

int OutputTables::line_type(int fileIndex, double scale) {
  if (fileIndex < 0) return 0;
  const auto [at, isNew] = scaledTypes_.try_emplace({fileIndex, scale}, 0);
  if (!isNew) return at->second;
  const FileLineType& from = file_.lineTypes[static_cast<std::size_t>(fileIndex)];
  std::string upper = from.name;
  upper_case(upper.data());
  if (from.elements.empty() || upper == "BYLAYER" || upper == "BYBLOCK" || upper == "CONTINUOUS") return at->second = 0;
  ACAD_LTYPE type;
  copy_text(type.m_szDescription, from.description.c_str());
  if (from.hasShapes) report_.loss("texts and shapes within a line type were left out");
  if (from.elements.size() > kMaxPatternElements) report_.loss("a line type of more than 30 dashes was shortened");
  type.m_nElements = static_cast<int>(std::min<std::size_t>(from.elements.size(), kMaxPatternElements));
  const double k = scale * scale_ * file_.header.ltScale;
  double total = 0;
  for (int i = 0; i < type.m_nElements; ++i) {
    const double element = from.elements[static_cast<std::size_t>(i)] * k;
    type.m_fElement[i] = static_cast<float>(element);
    total += std::fabs(element);
  }
  type.m_fLength = static_cast<float>(total);
  if (!(total > 0) || !std::isfinite(type.m_fLength)) return at->second = 0;
  if (lineTypes_.size() >= kMost) {
    report_.remark("a line type beyond the 1000th is drawn as its dashes");
    lineTypes_.push_back(type);
    return at->second = static_cast<int>(lineTypes_.size()) - 1;
  }
  std::string wanted = from.name;
  if (scale != 1) {
    char factor[32];
    format_text(factor, sizeof factor, "_%g", scale);
    wanted = shortened(from.name, kLongest - std::strlen(factor)) + factor;
  }
  copy_text(type.m_szName, lineTypeNames_.take(wanted).c_str());
  lineTypes_.push_back(type);
  return at->second = static_cast<int>(lineTypes_.size()) - 1;
}

ACAD_STYLE OutputTables::style_record(const StyleKey& key) const {
  ACAD_STYLE style;
  if (key.style >= 0) {
    const FileStyle& from = file_.styles[static_cast<std::size_t>(key.style)];
    style.m_nFlags = 64 | (from.flags & 4);
    style.m_fHeight = static_cast<float>(from.height * scale_);
    style.m_fWidthFactor = static_cast<float>(from.width);
    copy_text(style.m_szFont, from.font.c_str());
    copy_text(style.m_szBigFont, from.bigFont.c_str());
  }
  style.m_fOblique = static_cast<float>(key.oblique);
  style.m_nGeneration = key.generation;
  if (key.chinese && !*style.m_szBigFont) copy_text(style.m_szBigFont, "hztxt");
  return style;
}

const ACAD_STYLE& OutputTables::style(StyleKey key) {
  const std::string name = key.style < 0 ? styles_[0].m_szName : file_.styles[static_cast<std::size_t>(key.style)].name;
  // The display draws styles of this name with the text font alone: Chinese texts need another.
  key.chinese = key.chinese && name.find("STANDARD") != std::string::npos;
  const auto [at, isNew] = styleIndex_.try_emplace(key, 0);
  if (!isNew) return styles_[static_cast<std::size_t>(at->second)];
  if (styles_.size() >= kMost) {
    report_.loss("a text style beyond the 1000th became the first");
    return styles_[0];
  }
  styles_.push_back(style_record(key));
  copy_text(styles_.back().m_szName, styleNames_.take(key.chinese ? "HZ" : name).c_str());
  at->second = static_cast<int>(styles_.size()) - 1;
  return styles_.back();
}

namespace {

template <class Entry>
std::unique_ptr<Entry[]> table_of(const std::vector<Entry>& entries) {
  auto table = std::make_unique<Entry[]>(entries.size());
  std::copy(entries.begin(), entries.end(), table.get());
  return table;
}

}  // namespace

void OutputTables::install(DXF& document, DrawingNotes& notes) const {
  const std::vector<ACAD_LAYER> layers(layers_.begin(),
                                       layers_.begin() + static_cast<long>(std::min(layers_.size(), kMost)));
  if (layers.size() < layers_.size()) report_.loss("the file has more layers than the 1000 of a table");
  const std::vector<ACAD_LTYPE> lineTypes(lineTypes_.begin(),
                                          lineTypes_.begin() + static_cast<long>(std::min(lineTypes_.size(), kMost)));
  document.Take_Tables(table_of(lineTypes), static_cast<int>(lineTypes.size()), table_of(layers),
                       static_cast<int>(layers.size()), table_of(styles_), static_cast<int>(styles_.size()));
  for (std::size_t i = 0; i < layers_.size(); ++i) {
    const FileLayer& from = file_.layers[i];
    notes.layers.push_back({layers_[i].m_szName, from.fullName, from.color < 0, (from.flags & 1) != 0, from.plotted,
                            from.lineWeight, from.trueColor});
  }
}

}  // namespace qv::importing
