#pragma once

/// SHX font files made byte by byte, for tests of their reader.

#include <string>
#include <utility>
#include <vector>

namespace qvtest {

/// Codes of a shape, as a string of bytes.
inline std::string codes(std::initializer_list<int> values) {
  std::string bytes;
  for (const int v : values) bytes += static_cast<char>(v);
  return bytes;
}

inline void put(std::string& out, std::size_t v, int bytes) {
  for (int i = 0; i < bytes; ++i) out += static_cast<char>(v >> (8 * i) & 255);
}

/// Shapes by their codes: each the codes of a shape without the 0 that ends it.
using Shapes = std::vector<std::pair<int, std::string>>;

inline std::string text_font(const Shapes& shapes, int above, const std::string& name = "test") {
  std::string file(28, '.');
  put(file, shapes.size() + 1, 2);
  put(file, 0, 2);
  put(file, name.size() + 5, 2);
  std::string records = name + codes({0, above, 2, 0, 0});
  for (const auto& [code, shape] : shapes) {
    put(file, static_cast<std::size_t>(code), 2);
    put(file, shape.size() + 2, 2);
    records += '\0' + shape + '\0';
  }
  return file + records;
}

inline std::string big_font(const Shapes& shapes, int height) {
  std::string file(27, '.');
  put(file, shapes.size() + 1, 2);
  put(file, 0, 6);
  std::string records;
  const std::size_t start = 35 + 8 * (shapes.size() + 1);
  const auto add = [&](int code, const std::string& record) {
    put(file, static_cast<std::size_t>(code >> 8), 1);
    put(file, static_cast<std::size_t>(code & 255), 1);
    put(file, record.size(), 2);
    put(file, start + records.size(), 4);
    records += record;
  };
  add(0, "big" + codes({0, height, 0, 0, 0}));
  for (const auto& [code, shape] : shapes) add(code, '\0' + shape + '\0');
  return file + records;
}

}  // namespace qvtest
