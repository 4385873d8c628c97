// Shape sources of any bytes: what is accepted must compile to a font that loads.

#include <cstddef>
#include <cstdint>
#include <string>

#include "font_writer.h"
#include "shape_source.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  std::vector<shpc::Error> errors;
  const shpc::Font font = shpc::parse(std::string(reinterpret_cast<const char*>(data), size), errors);
  if (!errors.empty()) return 0;
  const std::string text = shpc::text_font(font, errors);
  const std::string big = shpc::big_font(font, errors);
  std::size_t codes = 0;
  for (const shpc::Shape& shape : font.shapes) codes += shape.bytes.size();
  if (text.size() < 30 + codes || big.size() < 43 + codes) __builtin_trap();
  return 0;
}
