#include <cstdio>
#include <map>
#include <nlohmann/json.hpp>

#include "commands.h"
#include "drawing_file.h"
#include "qvtools.h"

namespace qvdraw {

namespace {

using Json = nlohmann::ordered_json;

/// What is told of a drawing.
struct Summary {
  std::vector<std::string> ltypes;
  std::vector<std::pair<std::string, int>> layers;          // with their colours
  std::vector<std::pair<std::string, std::string>> styles;  // with their fonts
  std::vector<std::pair<std::string, int>> blocks;          // with their numbers of entities
  std::map<std::string, int> kinds;
  std::map<std::string, int> perLayer;
  CFRect extent;
};

Summary summarize(DXF& dxf) {
  Summary s;
  const auto each = [](int n, const auto& table, const auto& f) {
    for (int i = 0; table && i < n; ++i) f(table[static_cast<std::size_t>(i)]);
  };
  each(dxf.m_nLType, dxf.m_pLType, [&](const ACAD_LTYPE& l) { s.ltypes.push_back(to_utf8(l.m_szName)); });
  each(dxf.m_nLayer, dxf.m_pLayer,
       [&](const ACAD_LAYER& l) { s.layers.emplace_back(to_utf8(l.m_szName), l.m_nColor); });
  each(dxf.m_nStyle, dxf.m_pStyle, [&](const ACAD_STYLE& t) {
    s.styles.emplace_back(to_utf8(t.m_szName),
                          to_utf8(t.m_szFont) + (*t.m_szBigFont ? "," + to_utf8(t.m_szBigFont) : ""));
  });
  for_each<ACAD_BLOCK>(dxf.m_BlockList, [&](ACAD_BLOCK& block) {
    s.blocks.emplace_back(to_utf8(block.m_szName), block.m_EntityList.GetCount());
  });
  for_each<ACAD_ENTITY>(dxf.m_EntityList, [&](ACAD_ENTITY& entity) {
    ++s.kinds[kind_name(entity)];
    ++s.perLayer[to_utf8(layer_of(entity))];
  });
  s.extent = dxf.GetFRect();
  return s;
}

std::string extent_text(const CFRect& r, const char* format) {
  char text[256];
  qv::format_text(text, sizeof text, format, static_cast<double>(r.x1), static_cast<double>(r.y1),
                  static_cast<double>(r.x2), static_cast<double>(r.y2));
  return text;
}

/// {"name": value, …} in the order of the pairs.
template <class Pairs>
Json object(const Pairs& pairs) {
  Json json = Json::object();
  for (const auto& [name, value] : pairs) json[name] = value;
  return json;
}

Json report_json(const qv::ImportReport& r) {
  Json kinds = Json::array();
  for (const qv::ImportReport::Kind& k : r.kinds)
    kinds.push_back({{"kind", k.name},
                     {"taken", k.taken},
                     {"converted", k.converted},
                     {"becomes", k.becomes},
                     {"left_out", k.leftOut},
                     {"reason", k.reason},
                     {"line", k.line}});
  Json remarks = Json::array();
  for (const qv::ImportReport::Remark& remark : r.remarks)
    remarks.push_back({{"text", remark.text}, {"count", remark.count}, {"line", remark.line}});
  return {{"release", r.release},
          {"binary", r.binary},
          {"encoding", qv::code_page_name(r.encoding)},
          {"encoding_known", r.encodingSource},
          {"unit", static_cast<int>(r.unit)},
          {"scale", r.scale},
          {"offset", {r.offset[0], r.offset[1]}},
          {"sheets", r.layouts},
          {"complete", r.complete},
          {"kinds", kinds},
          {"remarks", remarks}};
}

void print_json(const Summary& s, const qv::ImportReport& report) {
  const Json json{{"ltypes", s.ltypes},
                  {"layers", object(s.layers)},
                  {"styles", object(s.styles)},
                  {"blocks", object(s.blocks)},
                  {"entities", object(s.kinds)},
                  {"entities_on_layers", object(s.perLayer)},
                  {"extent", Json::parse(extent_text(s.extent, "[%.2f, %.2f, %.2f, %.2f]"))},
                  {"file", report_json(report)}};
  std::puts(json.dump(2, ' ', false, Json::error_handler_t::replace).c_str());
}

template <class Pairs>
void print_lines(const char* title, const Pairs& pairs) {
  std::printf("%s\n", title);
  for (const auto& [name, value] : pairs) {
    if constexpr (std::is_same_v<std::decay_t<decltype(value)>, int>)
      std::printf("  %-30s %d\n", name.c_str(), value);
    else
      std::printf("  %-30s %s\n", name.c_str(), value.c_str());
  }
}

void print_text(const Summary& s, const qv::ImportReport& report) {
  std::puts("line types");
  for (const std::string& name : s.ltypes) std::printf("  %s\n", name.c_str());
  print_lines("layers (colour)", s.layers);
  print_lines("styles (fonts)", s.styles);
  print_lines("blocks (entities)", s.blocks);
  print_lines("entities", s.kinds);
  print_lines("entities on layers", s.perLayer);
  std::puts(extent_text(s.extent, "extent\n  (%.2f, %.2f) to (%.2f, %.2f)").c_str());
  std::fputs(report.text().c_str(), stdout);
}

}  // namespace

void run_info(const InfoRequest& request) {
  qv::ImportReport report;
  const std::unique_ptr<DXF> dxf = load_drawing(request.drawing, request.import, report);
  const Summary summary = summarize(*dxf);
  request.json ? print_json(summary, report) : print_text(summary, report);
}

}  // namespace qvdraw
