/// The commands that show engineering data files: databases, materials, fields.

#include <cstdio>
#include <filesystem>
#include <nlohmann/json.hpp>
#include <vector>

#include "commands.h"
#include "drawing_file.h"
#include "failure.h"

namespace qvdraw {

namespace {

using Json = nlohmann::ordered_json;

void print(const Json& json) {
  std::puts(json.dump().c_str());
}

void load_field(CChang& field, const std::string& path) {
  std::FILE* const file = qv::open_text(path.c_str(), "rt");
  if (!file) throw failure(path, "cannot be opened");
  field.LoadData(file);
  std::fclose(file);
  if (field.m_Nodes.GetSize() == 0) throw std::runtime_error(path + ": is no field: it has no nodes");
}

/// A value without the line feed that it was read with.
std::string item_value(CDataBaseFile& file, const char* key) {
  char value[CDataBaseFile::kValueSize];
  if (!file.Get_Item(key, value)) throw std::runtime_error(to_utf8(key) + ": there is no such item");
  std::string text = to_utf8(value);
  if (!text.empty() && text.back() == '\n') text.pop_back();
  return text;
}

void print_segments(const CDataBaseFile& file, bool json) {
  std::vector<std::string> names;
  for (int i = 0; i < file.Get_SegmentCount(); ++i) names.push_back(to_utf8(file.Get_SegmentName(i)));
  if (json) return print(names);
  for (const std::string& name : names) std::puts(name.c_str());
}

void print_items(CDataBaseFile& file, bool json) {
  Json items = Json::object();
  for (int i = 0; i < file.Get_ItemCount(); ++i) {
    const CString key = file.Get_ItemKey(i);
    const std::string name = to_utf8(key), value = item_value(file, key);
    if (json)
      items[name] = value;
    else
      std::printf("%s = %s\n", name.c_str(), value.c_str());
  }
  if (json) print(items);
}

void print_concrete(int code) {
  Con_Prop c{};
  if (!get_rc_property(code, &c)) return;
  const auto d = [](float v) { return static_cast<double>(v); };
  std::printf("%-6s %7.2f %7.2f %7.2f %7.2f %7.2f %7.2f %8.0f %8.0f %6.2f %8.0e\n", _HNT(code).str().c_str(), d(c.fc),
              d(c.fcm), d(c.ft), d(c.fck), d(c.fcmk), d(c.ftk), d(c.Ec), d(c.Gc), d(c.nu), d(c.alpha));
}

void print_reinforcement(int code) {
  Rein_Prop r{};
  if (!get_rein_property(code, &r)) return;
  const auto d = [](float v) { return static_cast<double>(v); };
  std::printf("%-6s %7.1f %7.1f %7.1f %8.0f\n", _GJ(code).str().c_str(), d(r.fy), d(r.fy2), d(r.fyk), d(r.Es));
}

}  // namespace

void run_db(const DatabaseRequest& request) {
  const std::string& path = request.database;
  CDataBaseFile file;
  if (!file.Open_File(path.c_str(), CDataBaseFile::IO_READ))
    throw failure(path, "is no database with an index at its end");
  if (request.segment.empty()) return print_segments(file, request.json);
  if (!file.Read_Named_Segment(request.segment.c_str()))
    throw std::runtime_error(request.segment + ": there is no such segment");
  if (request.key.empty()) return print_items(file, request.json);
  const std::string value = item_value(file, request.key.c_str());
  request.json ? print(value) : static_cast<void>(std::puts(value.c_str()));
}

void run_materials(const MaterialsRequest& request) {
  G_bUserOptRead = 1;
  if (!request.file.empty()) {
    const std::filesystem::path path(request.file);
    if (path.filename() != "UserOpt.dat") throw UsageError("the file of user-defined grades is named UserOpt.dat");
    G_strExePath = path.string().substr(0, path.string().size() - path.filename().string().size()).c_str();
    if (!G_UserOpt.ReadData()) throw std::runtime_error(path.string() + ": cannot be opened");
  }
  std::puts("grade       fc     fcm      ft     fck    fcmk     ftk       Ec       Gc     nu    alpha");
  for (int code = 10; code <= 85; code += 5) print_concrete(code);
  std::puts("\ngrade       fy     fy2     fyk       Es");
  for (int code = 1; code <= 8; ++code) print_reinforcement(code);
}

void run_contour(const ContourRequest& request) {
  CChang field;
  field.m_nValueIndex = request.value;
  load_field(field, request.field);
  save_contour(field, request.picture, request.size);
}

void run_value(const ValueRequest& request) {
  CChang field;
  field.m_nValueIndex = request.value;
  load_field(field, request.field);
  char text[64];
  qv::format_text(text, sizeof text, "%g", static_cast<double>(field.Get_Value(request.x, request.y)));
  std::printf("%s%s\n", text,
              field.PointInChang(request.x, request.y) ? "" : "  (outside the field: the nearest node)");
}

}  // namespace qvdraw
