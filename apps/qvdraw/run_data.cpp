/// The commands that show engineering data files: databases, materials, fields.

#include <charconv>
#include <cmath>
#include <cstdio>
#include <filesystem>

#include "commands.h"
#include "drawing_file.h"
#include "json.h"
#include "picture.h"
#include "slab_sample.h"

namespace qvdraw {

namespace {

void load_field(CChang& field, const std::string& path) {
  std::FILE* const file = qv::open_text(path.c_str(), "rt");
  if (!file) throw std::runtime_error(path + ": cannot be opened");
  field.LoadData(file);
  std::fclose(file);
  if (field.m_Nodes.GetSize() == 0) throw std::runtime_error(path + ": is no field: it has no nodes");
}

double number(const std::string& word) {
  double value = 0;
  const auto [end, error] = std::from_chars(word.data(), word.data() + word.size(), value);
  if (error != std::errc() || end != word.data() + word.size() || !std::isfinite(value))
    throw UsageError("\"" + word + "\" is no number");
  return value;
}

int value_index(const Arguments& arguments) {
  const double index = arguments.has("--value") ? arguments.numbers("--value", 1)[0] : 0;
  if (index < 0 || index > 4 || index != std::floor(index)) throw UsageError("--value is 0 to 4");
  return static_cast<int>(index);
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
  for (int i = 0; i < file.Get_SegmentCount(); ++i) {
    const std::string name = to_utf8(file.Get_SegmentName(i));
    if (json) {
      std::printf("%s%s", i ? ", " : "[", quoted(name).c_str());
    } else {
      std::puts(name.c_str());
    }
  }
  if (json) std::puts(file.Get_SegmentCount() ? "]" : "[]");
}

void print_items(CDataBaseFile& file, bool json) {
  for (int i = 0; i < file.Get_ItemCount(); ++i) {
    const CString key = file.Get_ItemKey(i);
    const std::string name = to_utf8(key), value = item_value(file, key);
    if (json) {
      std::printf("%s%s: %s", i ? ", " : "{", quoted(name).c_str(), quoted(value).c_str());
    } else {
      std::printf("%s = %s\n", name.c_str(), value.c_str());
    }
  }
  if (json) std::puts(file.Get_ItemCount() ? "}" : "{}");
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

int run_db(const Arguments& arguments) {
  arguments.expect_between(1, 3, {}, {"--json"});
  const std::string& path = arguments.operand(0);
  const bool json = arguments.has("--json");
  CDataBaseFile file;
  if (!file.Open_File(path.c_str(), CDataBaseFile::IO_READ))
    throw std::runtime_error(path + (std::filesystem::exists(path) ? ": is no database with an index at its end"
                                                                   : ": there is no such file"));
  if (arguments.count() == 1) return print_segments(file, json), 0;
  const std::string& segment = arguments.operand(1);
  if (!file.Read_Segment("%s", segment.c_str())) throw std::runtime_error(segment + ": there is no such segment");
  if (arguments.count() == 2) return print_items(file, json), 0;
  const std::string value = item_value(file, arguments.operand(2).c_str());
  std::puts(json ? quoted(value).c_str() : value.c_str());
  return 0;
}

int run_materials(const Arguments& arguments) {
  arguments.expect(0, {"--file"});
  G_bUserOptRead = 1;
  if (arguments.has("--file")) {
    const std::filesystem::path path(arguments.value("--file"));
    if (path.filename() != "UserOpt.dat") throw UsageError("the file of user-defined grades is named UserOpt.dat");
    G_strExePath = path.string().substr(0, path.string().size() - path.filename().string().size()).c_str();
    if (!G_UserOpt.ReadData()) throw std::runtime_error(path.string() + ": cannot be opened");
  }
  std::puts("grade       fc     fcm      ft     fck    fcmk     ftk       Ec       Gc     nu    alpha");
  for (int code = 10; code <= 85; code += 5) print_concrete(code);
  std::puts("\ngrade       fy     fy2     fyk       Es");
  for (int code = 1; code <= 8; ++code) print_reinforcement(code);
  return 0;
}

int run_contour(const Arguments& arguments) {
  arguments.expect(1, {"-o", "--value", "--size"});
  const std::string out = arguments.required("-o");
  CSize size(1200, 800);
  if (arguments.has("--size")) {
    const std::vector<double> sizes = arguments.numbers("--size", 2);
    if (std::min(sizes[0], sizes[1]) < 16 || std::max(sizes[0], sizes[1]) > 16000)
      throw UsageError("--size is 16 to 16000 pixels each way");
    size = CSize(static_cast<int>(sizes[0]), static_cast<int>(sizes[1]));
  }
  CChang field;
  field.m_nValueIndex = value_index(arguments);
  load_field(field, arguments.operand(0));
  save_contour(field, out, size);
  return 0;
}

int run_value(const Arguments& arguments) {
  arguments.expect(3, {"--value"});
  CChang field;
  field.m_nValueIndex = value_index(arguments);
  const auto x = static_cast<float>(number(arguments.operand(1)));
  const auto y = static_cast<float>(number(arguments.operand(2)));
  load_field(field, arguments.operand(0));
  char text[64];
  qv::format_text(text, sizeof text, "%g", static_cast<double>(field.Get_Value(x, y)));
  std::printf("%s%s\n", text, field.PointInChang(x, y) ? "" : "  (outside the field: the nearest node)");
  return 0;
}

}  // namespace qvdraw
