#include <cstdio>
#include <nlohmann/json.hpp>
#include <stdexcept>

#include "commands.h"
#include "common/picture_file.h"
#include "common/plotting.h"
#include "drawing_file.h"
#include "progress.h"

namespace qvdraw {

namespace {

using Json = nlohmann::ordered_json;

/// By the numbers of `qv::ChangeKind`.
constexpr const char* kChanges[] = {"removed", "added", "moved", "changed"};

/// A drawing and its entities by their numbers.
struct Side {
  std::unique_ptr<DXF> dxf;
  std::vector<ACAD_ENTITY*> entities;

  Side(const std::string& path, const qv::ImportOptions& options) {
    qv::ImportReport report;
    dxf = load_drawing(path, options, report);
    for_each<ACAD_ENTITY>(dxf->m_EntityList, [&](ACAD_ENTITY& entity) { entities.push_back(&entity); });
  }
  ACAD_ENTITY& operator[](int i) const { return *entities[static_cast<std::size_t>(i)]; }
};

std::string words_of(ACAD_ENTITY& entity) {
  std::string words;
  qv::visit_entity(entity, [&](auto& record) {
    if constexpr (requires { record.m_szText; }) words = to_utf8(record.m_szText);
    if constexpr (requires { record.m_szBlock; }) words = to_utf8(record.m_szBlock);
  });
  return words;
}

Json entity_json(const Side& side, int i) {
  Json json{{"entity", i + 1}, {"kind", kind_name(side[i])}, {"layer", to_utf8(layer_of(side[i]))}};
  if (const std::string words = words_of(side[i]); !words.empty()) json["words"] = words;
  return json;
}

Json box_json(const CFRect& r) {
  return {r.x1, r.y1, r.x2, r.y2};
}

void print_json(const qv::Comparison& found, const Side& before, const Side& after) {
  Json differences = Json::array();
  for (const qv::Difference& d : found.differences) {
    Json json{{"change", kChanges[static_cast<int>(d.kind)]}, {"place", d.place + 1}};
    if (d.before >= 0) json["old"] = entity_json(before, d.before);
    if (d.after >= 0) json["new"] = entity_json(after, d.after);
    if (d.kind == qv::ChangeKind::Moved) json["moved"] = {d.moved.x, d.moved.y};
    json["pieces"] = d.pieces;
    json["box"] = box_json(d.box);
    differences.push_back(json);
  }
  Json places = Json::array();
  for (const qv::DifferentPlace& place : found.places) places.push_back(box_json(place.box));
  const Json json{{"same", found.IsSame()},
                  {"pieces_alike", found.same},
                  {"shift", {found.shift.x, found.shift.y}},
                  {"places", places},
                  {"differences", differences}};
  std::puts(json.dump(2, ' ', false, Json::error_handler_t::replace).c_str());
}

/// "TEXT 12 "KL-1" on BEAM".
std::string entity_text(const Side& side, int i) {
  const std::string words = words_of(side[i]);
  return std::string(kind_name(side[i])) + ' ' + std::to_string(i + 1) + (words.empty() ? "" : " \"" + words + '"') +
         " on " + to_utf8(layer_of(side[i]));
}

std::string two_numbers(const CFPoint& p) {
  return qvapps::two_decimals(p.x) + ", " + qvapps::two_decimals(p.y);
}

std::string difference_text(const qv::Difference& d, const Side& before, const Side& after) {
  std::string text = kChanges[static_cast<int>(d.kind)] + std::string(" ");
  text += d.after >= 0 ? entity_text(after, d.after) : entity_text(before, d.before);
  if (d.kind == qv::ChangeKind::Moved) return text + " by " + two_numbers(d.moved);
  if (d.kind == qv::ChangeKind::Changed) return text + ", was " + entity_text(before, d.before);
  return text;
}

void print_text(const qv::Comparison& found, const Side& before, const Side& after) {
  if (found.shift != CFPoint(0, 0)) std::printf("the sheet is shifted by %s\n", two_numbers(found.shift).c_str());
  for (std::size_t p = 0; p < found.places.size(); ++p) {
    const CFRect& box = found.places[p].box;
    std::printf("place %zu of %zu, from (%s) to (%s)\n", p + 1, found.places.size(), two_numbers(box.Nearest()).c_str(),
                two_numbers(box.Furthest()).c_str());
    for (const int d : found.places[p].differences)
      std::printf("  %s\n", difference_text(found.differences[static_cast<std::size_t>(d)], before, after).c_str());
  }
  if (found.IsSame()) return;
  std::printf("%d pieces are the same;", found.same);
  for (int kind = 0; kind < 4; ++kind)
    std::printf("%s %d %s", kind ? "," : "", found.Count(static_cast<qv::ChangeKind>(kind)), kChanges[kind]);
  std::putchar('\n');
}

void write(DXF& drawn, const DiffRequest& request) {
  const auto cannot = [&] { return std::runtime_error(request.out + ": cannot be written"); };
  if (qvapps::has_ending(request.out, ".dxf")) {
    if (!drawn.Write_MemDxf_To_File(request.out.c_str())) throw cannot();
  } else if (qvapps::has_ending(request.out, ".pdf")) {
    qv::PlotOptions options;
    options.colors = qv::PlotColors::Color;
    options.whole = true;
    qv::PlotReport report;
    const std::string name = request.before + " - " + request.after;
    if (!qv::Plot({{{&drawn, nullptr, name, 1}}}, request.out, options, report))
      throw std::runtime_error(request.out + ": " + report.problem);
  } else {
    save_picture(drawn, request.out, request.options);
  }
}

}  // namespace

int run_diff(const DiffRequest& request) {
  const Side before(request.before, request.import), after(request.after, request.import);
  qv::CompareOptions options;
  options.tolerance = request.tolerance;
  const qv::Comparison found = qv::Compare(*before.dxf, *after.dxf, options);
  if (found.same < 0) throw std::runtime_error("not enough memory");
  request.json ? print_json(found, before, after) : print_text(found, before, after);
  if (!request.out.empty()) {
    const std::unique_ptr<DXF> drawn = qv::DrawComparison(*before.dxf, *after.dxf, found);
    if (!drawn) throw std::runtime_error("not enough memory");
    write(*drawn, request);
  }
  return found.IsSame() ? 0 : 1;
}

}  // namespace qvdraw
