#include <cstdio>
#include <map>

#include "commands.h"
#include "drawing_file.h"
#include "json.h"
#include "qvtools.h"

namespace qvdraw {

namespace {

constexpr const char* kKindNames[] = {"POINT",    "LINE",  "TEXT",   "CIRCLE", "ARC",
                                      "POLYLINE", "SOLID", "3DFACE", "INSERT"};

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
    ++s.kinds[kKindNames[entity.GetType()]];
    ++s.perLayer[to_utf8(layer_of(entity))];
  });
  s.extent = dxf.GetFRect();
  return s;
}

std::string value_of(int n) {
  return std::to_string(n);
}
std::string value_of(const std::string& text) {
  return quoted(text);
}

/// {"name": value, …}
template <class Pairs>
std::string object(const Pairs& pairs) {
  std::string out = "{";
  for (const auto& [name, value] : pairs) out += (out.size() > 1 ? ", " : "") + quoted(name) + ": " + value_of(value);
  return out + "}";
}

std::string list(const std::vector<std::string>& texts) {
  std::string out = "[";
  for (const std::string& text : texts) out += (out.size() > 1 ? ", " : "") + quoted(text);
  return out + "]";
}

std::string extent_text(const CFRect& r, const char* format) {
  char text[256];
  qv::format_text(text, sizeof text, format, static_cast<double>(r.x1), static_cast<double>(r.y1),
                  static_cast<double>(r.x2), static_cast<double>(r.y2));
  return text;
}

void print_json(const Summary& s) {
  std::printf(
      "{\n  \"ltypes\": %s,\n  \"layers\": %s,\n  \"styles\": %s,\n  \"blocks\": %s,\n  \"entities\": %s,\n"
      "  \"entities_on_layers\": %s,\n  \"extent\": %s\n}\n",
      list(s.ltypes).c_str(), object(s.layers).c_str(), object(s.styles).c_str(), object(s.blocks).c_str(),
      object(s.kinds).c_str(), object(s.perLayer).c_str(), extent_text(s.extent, "[%.2f, %.2f, %.2f, %.2f]").c_str());
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

void print_text(const Summary& s) {
  std::puts("line types");
  for (const std::string& name : s.ltypes) std::printf("  %s\n", name.c_str());
  print_lines("layers (colour)", s.layers);
  print_lines("styles (fonts)", s.styles);
  print_lines("blocks (entities)", s.blocks);
  print_lines("entities", s.kinds);
  print_lines("entities on layers", s.perLayer);
  std::puts(extent_text(s.extent, "extent\n  (%.2f, %.2f) to (%.2f, %.2f)").c_str());
}

}  // namespace

int run_info(const Arguments& arguments) {
  arguments.expect(1, {}, {"--json"});
  const std::unique_ptr<DXF> dxf = load_drawing(arguments.operand(0));
  const Summary summary = summarize(*dxf);
  arguments.has("--json") ? print_json(summary) : print_text(summary);
  return 0;
}

}  // namespace qvdraw
