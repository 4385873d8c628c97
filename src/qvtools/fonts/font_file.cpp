#include "qvtools/fonts/internal/font_file.h"

namespace qv::detail {

namespace {

void put(std::string& out, std::size_t value, int bytes) {
  for (int i = 0; i < bytes; ++i) out += static_cast<char>(value >> (8 * i) & 255);
}

std::string first_line(std::string_view mark) {
  std::string line(mark);
  for (const char c : {'0', '\r', '\n', '\x1a'}) line += c;
  return line;
}

std::string joined_records(const std::vector<FontShape>& shapes) {
  std::string records;
  for (const FontShape& shape : shapes) records += shape.record;
  return records;
}

}  // namespace

std::string text_font_file(const std::vector<FontShape>& shapes) {
  std::string file = first_line(kShapesMark);
  put(file, static_cast<std::size_t>(shapes.front().code), 2);
  put(file, static_cast<std::size_t>(shapes.back().code), 2);
  put(file, shapes.size(), 2);
  for (const FontShape& shape : shapes) {
    put(file, static_cast<std::size_t>(shape.code), 2);
    put(file, shape.record.size(), 2);
  }
  return file + joined_records(shapes);
}

std::string big_font_file(const std::vector<FontShape>& shapes, int firstLead, int lastLead) {
  constexpr std::size_t kEntrySize = 8;
  constexpr std::size_t kEntries = 35;  // where they begin
  std::string file = first_line(kBigFontMark);
  put(file, kEntrySize, 2);
  put(file, shapes.size(), 2);
  put(file, 1, 2);
  put(file, static_cast<std::size_t>(firstLead), 2);
  put(file, static_cast<std::size_t>(lastLead), 2);
  std::size_t at = kEntries + kEntrySize * shapes.size();
  for (const FontShape& shape : shapes) {
    put(file, static_cast<std::size_t>(shape.code >> 8), 1);
    put(file, static_cast<std::size_t>(shape.code & 255), 1);
    put(file, shape.record.size(), 2);
    put(file, at, 4);
    at += shape.record.size();
  }
  return file + joined_records(shapes);
}

}  // namespace qv::detail
