#include "font_writer.h"

#include <algorithm>
#include <cctype>

namespace shpc {
namespace {

constexpr std::size_t kBigEntrySize = 8;
constexpr std::size_t kBigEntries = 35;  // where they begin

void put(std::string& out, std::size_t value, int bytes) {
  for (int i = 0; i < bytes; ++i) out += static_cast<char>(value >> (8 * i) & 255);
}

std::string record(const Shape& shape) {
  const bool kept = shape.code == 0 || std::none_of(shape.name.begin(), shape.name.end(),
                                                    [](unsigned char c) { return std::islower(c) != 0; });
  std::string bytes = kept ? shape.name : std::string();
  bytes += '\0';
  bytes.append(shape.bytes.begin(), shape.bytes.end());
  return bytes;
}

}  // namespace

std::string text_font(const Font& font, std::vector<Error>& errors) {
  std::string file = "AutoCAD-86 shapes 1.0\r\n\x1a";
  put(file, static_cast<std::size_t>(font.shapes.front().code), 2);
  put(file, static_cast<std::size_t>(font.shapes.back().code), 2);
  put(file, font.shapes.size(), 2);
  std::string records;
  for (const Shape& shape : font.shapes) {
    if (shape.code > 255) errors.push_back({shape.line, "a text font has codes up to 255"});
    const std::string bytes = record(shape);
    put(file, static_cast<std::size_t>(shape.code), 2);
    put(file, bytes.size(), 2);
    records += bytes;
  }
  return file + records;
}

std::string big_font(const Font& font, std::vector<Error>& errors) {
  const auto lead = [](const Shape& shape) { return shape.code >> 8; };
  const bool any = font.shapes.size() > 1;
  const int first = font.firstLead ? font.firstLead : any ? lead(font.shapes[1]) : 0;
  const int last = font.lastLead ? font.lastLead : lead(font.shapes.back());
  std::string file = "AutoCAD-86 bigfont 1.0\r\n\x1a";
  put(file, kBigEntrySize, 2);
  put(file, font.shapes.size(), 2);
  put(file, 1, 2);
  put(file, static_cast<std::size_t>(first), 2);
  put(file, static_cast<std::size_t>(last), 2);
  std::string records;
  const std::size_t start = kBigEntries + kBigEntrySize * font.shapes.size();
  for (const Shape& shape : font.shapes) {
    if (shape.code != 0 && (lead(shape) < std::max(first, 1) || lead(shape) > last)) {
      errors.push_back({shape.line, "the code's first byte lies outside the big font's range"});
    }
    const std::string bytes = record(shape);
    put(file, static_cast<std::size_t>(lead(shape)), 1);
    put(file, static_cast<std::size_t>(shape.code & 255), 1);
    put(file, bytes.size(), 2);
    put(file, start + records.size(), 4);
    records += bytes;
  }
  return file + records;
}

}  // namespace shpc
