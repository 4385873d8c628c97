// Texts of any bytes through everything that reads fields, numbers and paths.

#include <cmath>
#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <string>

#include "../harness.h"
#include "qvtools/services/services.h"
#include "qvtools/system/filesystem.h"
#include "qvtools/text/gbk_text.h"
#include "qvtools/text/numbers.h"

namespace {

using qvfuzz::require;

void read_fields(const std::string& text) {
  int i = 0;
  long l = 0;
  float f = 0;
  double d = 0;
  char s[100];
  const int n = qv::vsscanf(text.c_str(), "%d,%l,%f,%g,%*,%s", &i, &l, &f, &d, s);
  require(n >= 0 && n <= 5 && std::strlen(s) < sizeof s);
  sscanf_next_begin();
  std::size_t fields = 0;
  while (sscanf_next(text.c_str(), "%s", s)) require(++fields <= text.size());
  if (text.size() < 40) {
    CArray<int, int> numbers;
    FenXi_String1(text.c_str(), &numbers);
  }
}

void read_units(const std::string& text) {
  char unit[101];
  int position = 0;
  for (std::size_t units = 0; read_one_unit_from_string(unit, text.c_str(), &position), *unit; ++units) {
    require(units <= text.size() && std::strlen(unit) <= 100);
  }
  require(static_cast<std::size_t>(position) == text.size());
}

void read_stream(const std::uint8_t* data, std::size_t size) {
  if (size == 0) return;
  std::FILE* const file = fmemopen(const_cast<std::uint8_t*>(data), size, "rb");
  char line[64];
  for (std::size_t n = 0; !std::feof(file); ++n) {
    if (n % 2) {
      fgets_skip_comment(line, n % 3 ? 64 : 2, file);
    } else {
      char unit[101];
      read_one_unit(unit, file);
    }
    require(n <= 4 * size + 4);
  }
  std::fclose(file);
}

/// The C library agrees on every text that is no word or hexadecimal number.
void parse_numbers(const std::string& text) {
  if (text.find_first_of("xXnN") != std::string::npos) return;
  const double expected = std::strtod(text.c_str(), nullptr);
  const double v = qv::parse_real(text.c_str());
  require(v == expected && std::signbit(v) == std::signbit(expected));
  qv::parse_int(text.c_str());
}

void cut_texts(const std::string& text) {
  char field[8];
  qv::copy_text(field, text.c_str());
  require(qv::equals_field(field, qv::cut_to_field(text.c_str(), sizeof field)));
  const qv::PathParts parts = qv::split_path(text.c_str());
  const std::size_t length = parts.drive.size() + parts.directory.size() + parts.base.size() + parts.extension.size();
  require(length == text.size());
  require(!ConfirmFileExt(text.c_str(), "dxf").IsEmpty());
  qv::format_text(field, sizeof field, "%d %s|%8.3f", 12, text.c_str(), 0.5);
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  static qvfuzz::QuietHost host;
  qv::SetHost(&host);
  const std::string text(reinterpret_cast<const char*>(data), strnlen(reinterpret_cast<const char*>(data), size));
  read_fields(text);
  read_units(text);
  read_stream(data, size);
  parse_numbers(text);
  cut_texts(text);
  return 0;
}
