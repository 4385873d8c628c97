#include "qvtools/import/internal/job.h"

namespace qv::importing {

Common common_of(const Record& record) {
  Common common;
  for (const Tag& tag : record.tags) common.take(tag);
  return common;
}

namespace {

bool is_word(std::string_view text, std::string_view upper) {
  if (text.size() != upper.size()) return false;
  for (std::size_t i = 0; i < text.size(); ++i)
    if ((text[i] >= 'a' && text[i] <= 'z' ? text[i] - 'a' + 'A' : text[i]) != upper[i]) return false;
  return true;
}

}  // namespace

void Job::dress(const Common& common) {
  Look& look = out.look;
  const bool zero = common.layer.empty() || common.layer == "0";
  look.layer = inBlock && zero ? inherited.layer : tables.layer(zero ? "0" : common.layer);
  // What stands in the reference's stead takes its layer's properties with it, unless it is on that layer itself.
  const bool sameLayer = look.layer == inherited.layer;
  const bool ofReferencesLayer = inBlock && !sameLayer;
  look.trueColor = -1;
  if (common.trueColor >= 0) {
    look.set_true_color(common.trueColor);
  } else if (common.color == 0 && inBlock) {
    look.trueColor = inherited.trueColor;
    look.color = inherited.color;
    if (inherited.color == kByLayer && ofReferencesLayer) {
      look.color = std::abs(tables.layer_record(inherited.layer).m_nColor);
      look.trueColor = file.layers[static_cast<std::size_t>(inherited.layer)].trueColor;
    }
  } else {
    look.color = common.color == 0 ? 7 : common.color > 0 && common.color < 256 ? common.color : kByLayer;
  }
  look.lineWeight = common.lineWeight;
  if (common.lineWeight == kWeightByBlock) {
    look.lineWeight = inBlock ? inherited.lineWeight : kDefaultWeight;
    if (look.lineWeight == kWeightByLayer && ofReferencesLayer)
      look.lineWeight = file.layers[static_cast<std::size_t>(inherited.layer)].lineWeight;
  }
  const double scale = common.lineTypeScale > 0 && std::isfinite(common.lineTypeScale) ? common.lineTypeScale : 1;
  if (common.lineType.empty() || is_word(common.lineType, "BYLAYER")) {
    look.lineType = -1;
    if (scale != 1) {
      const std::string_view layerType = file.layers[static_cast<std::size_t>(look.layer)].lineType;
      look.lineType = layerType.empty() ? -1 : tables.line_type(tables.file_line_type(layerType), scale);
    } else if (tables.is_beyond(tables.layer_line_type(look.layer))) {
      look.lineType = tables.layer_line_type(look.layer);
    }
  } else if (is_word(common.lineType, "BYBLOCK")) {
    const bool own = inBlock && (inherited.lineType >= 0 || sameLayer);
    look.lineType = own ? inherited.lineType : inBlock ? tables.layer_line_type(inherited.layer) : 0;
  } else {
    look.lineType = tables.line_type(tables.file_line_type(common.lineType), scale);
  }
}

void Job::convert(const Record& record) {
  report.place = record.place;
  report.count(record.name, converter_of(record.name)(*this, record), record.place);
}

bool Job::is_hidden(std::string_view layer) {
  const auto index = static_cast<std::size_t>(tables.layer(layer.empty() ? "0" : layer));
  return index < hiddenLayers.size() && hiddenLayers[index];
}

bool Job::admits(std::string_view kind, const Common& common, std::size_t begin) {
  if (!hiddenLayers.empty() && is_hidden(common.layer)) return false;
  if (space_ != Space::All && common.paper != (space_ == Space::Paper)) return false;
  report.place = begin;
  if (common.invisible) {
    report.count(kind, left_out("invisible"), begin);
    return false;
  }
  dress(common);
  return true;
}

void Job::convert_all(Span span, Space space, const std::function<bool(double)>& progress) {
  constexpr int kBetweenReports = 4096;
  int unreported = 0;
  Record record;
  TagReader& in = file.in;
  in.seek(span.from);
  while (in.next_place() < span.to && in.next()) {
    if (in.tag().code != 0) continue;
    const std::string_view name = word_of(in.tag());
    const std::size_t begin = in.place();
    space_ = space;
    if (name == "LINE") {
      convert_line(*this);
    } else if (name == "ENDSEC" || name == "EOF" || name == "ENDBLK" || name == "SECTION") {
      break;
    } else if (name != "SEQEND" && name != "VERTEX" && name != "ATTRIB") {  // those alone, without what they belong to
      in.unread();
      read_record(in, record);
      if (admits(name, common_of(record), begin)) convert(record);
    }
    if (!progress || ++unreported < kBetweenReports) continue;
    unreported = 0;
    cancelled = !progress(static_cast<double>(begin) / static_cast<double>(std::max<std::size_t>(1, span.to)));
    if (cancelled) return;
  }
}

}  // namespace qv::importing
