#include "drawing/golden_list.h"

#include <cmath>
#include <cstdlib>
#include <cstring>
#include <fstream>
#include <sstream>

#include "qvtools/dxf/model/visit.h"
#include "qvtools/text/numbers.h"

namespace qvtest {

namespace {

std::string number(double v) {
  char text[64];
  qv::format_text(text, sizeof text, "%.3f", std::fabs(v) < 0.0005 ? 0 : v);
  std::string s = text;
  while (s.find('.') != std::string::npos && (s.back() == '0' || s.back() == '.')) {
    const bool point = s.back() == '.';
    s.pop_back();
    if (point) break;
  }
  return s;
}

std::string escaped(const char* text) {
  std::string out;
  for (; *text; ++text) {
    const auto byte = static_cast<unsigned char>(*text);
    char hex[8];
    qv::format_text(hex, sizeof hex, "<%x>", static_cast<unsigned>(byte));
    out += byte > 126 ? std::string(hex) : std::string(1, *text);
  }
  return out;
}

std::string line_of(ACAD_ENTITY& entity) {
  static constexpr const char* kKinds[] = {"point", "line", "text", "circle", "arc", "", "solid", "face", "insert"};
  std::string line;
  const auto add = [&](auto... values) { ((line += ' ' + number(values)), ...); };
  qv::visit_entity(entity, [&](auto& e) {
    if constexpr (requires { e.m_Vertices; })
      line = e.m_nFlags ? "closed" : "open";
    else
      line = kKinds[entity.GetType()];
    if constexpr (requires { e.m_nColor; }) line += ' ' + std::to_string(e.m_nColor);
    if constexpr (requires { e.m_szLType; }) {
      if (std::strcmp(e.m_szLType, "BYLAYER") != 0) line += std::string(" ") + e.m_szLType;
    }
    line += ':';
    if constexpr (requires { e.m_szText; }) line += std::string(" ") + e.m_szStyle + " \"" + escaped(e.m_szText) + '"';
    if constexpr (requires { e.m_Point.x; }) add(e.m_Point.x, e.m_Point.y);
    if constexpr (requires { e.m_End; }) add(e.m_Start.x, e.m_Start.y, e.m_End.x, e.m_End.y);
    if constexpr (requires { e.m_Center; }) add(e.m_Center.x, e.m_Center.y, e.m_fRadius);
    if constexpr (requires { e.m_fEndAngle; }) add(e.m_fStartAngle, e.m_fEndAngle);
    if constexpr (requires { e.m_szText; }) add(e.m_Insert.x, e.m_Insert.y, e.m_fHeight, e.m_fRotation);
    if constexpr (requires { e.m_Corner; }) {
      for (const qv::Point3& p : e.m_Corner) add(p.x, p.y);
    }
    if constexpr (requires { e.m_Vertices; }) {
      for (const ACAD_VERTEX& v : e.m_Vertices) {
        add(v.m_Point.x, v.m_Point.y, v.m_fStartWidth, v.m_fEndWidth, v.m_fBulge);
        line += ';';
      }
    }
  });
  return line;
}

/// Whether lines agree word for word, numbers up to rounding.
bool agree(const std::string& a, const std::string& b) {
  std::istringstream one(a), other(b);
  std::string v, w;
  while (one >> v) {
    if (!(other >> w)) return false;
    if (v == w) continue;
    char *end_v, *end_w;
    const double x = std::strtod(v.c_str(), &end_v), y = std::strtod(w.c_str(), &end_w);
    if (end_v == v.c_str() || std::strcmp(end_v, end_w) != 0) return false;
    if (!(std::fabs(x - y) <= 0.0021 + 2e-6 * std::fabs(y))) return false;
  }
  return !(other >> w);
}

}  // namespace

std::vector<std::string> drawn(const CBase_SGT& sgt) {
  std::vector<std::string> lines;
  for (POSITION at = sgt.m_EntityList.GetHeadPosition(); at;)
    lines.push_back(line_of(*static_cast<ACAD_ENTITY*>(sgt.m_EntityList.GetNext(at))));
  return lines;
}

void expect_golden(const std::string& name, const std::vector<std::string>& lines) {
  const std::string path = std::string(QV_SOURCE_DIR "/tests/data/") + name;
  if (std::getenv("QV_GOLDEN")) {
    std::ofstream file(path, std::ios::binary);
    for (const std::string& line : lines) file << line << '\n';
    FAIL() << path << " is written anew: review it";
  }
  std::ifstream file(path, std::ios::binary);
  ASSERT_TRUE(file) << path;
  std::string expected, section;
  int wrong = 0;
  for (std::size_t i = 0; i < lines.size() && wrong < 20; ++i) {
    ASSERT_TRUE(std::getline(file, expected)) << "more is drawn than " << path << " has, from " << lines[i];
    if (expected[0] == '[') section = expected;
    if (agree(lines[i], expected)) continue;
    ++wrong;
    ADD_FAILURE() << section << ", line " << i + 1 << " of " << path << "\nexpected " << expected << "\nbut got  "
                  << lines[i];
  }
  EXPECT_TRUE(wrong > 0 || !std::getline(file, expected)) << "not drawn: " << expected;
}

}  // namespace qvtest
