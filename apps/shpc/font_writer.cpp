#include "font_writer.h"

#include <algorithm>
#include <cctype>

#include "qvtools/fonts/internal/font_file.h"

namespace shpc {
namespace {

using qv::detail::FontShape;

std::vector<FontShape> records_of(const Font& font) {
  std::vector<FontShape> records;
  for (const Shape& shape : font.shapes) {
    const bool kept = shape.code == 0 || std::none_of(shape.name.begin(), shape.name.end(),
                                                      [](unsigned char c) { return std::islower(c) != 0; });
    std::string record = kept ? shape.name : std::string();
    record += '\0';
    record.append(shape.bytes.begin(), shape.bytes.end());
    records.push_back({shape.code, std::move(record)});
  }
  return records;
}

}  // namespace

std::string text_font(const Font& font, std::vector<Error>& errors) {
  for (const Shape& shape : font.shapes)
    if (shape.code > 255) errors.push_back({shape.line, "a text font has codes up to 255"});
  return qv::detail::text_font_file(records_of(font));
}

std::string big_font(const Font& font, std::vector<Error>& errors) {
  const auto lead = [](const Shape& shape) { return shape.code >> 8; };
  const bool any = font.shapes.size() > 1;
  const int first = font.firstLead ? font.firstLead : any ? lead(font.shapes[1]) : 0;
  const int last = font.lastLead ? font.lastLead : lead(font.shapes.back());
  for (const Shape& shape : font.shapes)
    if (shape.code != 0 && (lead(shape) < std::max(first, 1) || lead(shape) > last))
      errors.push_back({shape.line, "the code's first byte lies outside the big font's range"});
  return qv::detail::big_font_file(records_of(font), first, last);
}

}  // namespace shpc
