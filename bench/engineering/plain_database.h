#pragma once

/// The baselines of the database: its bytes by one fprintf an item, and its items by fgets and sscanf.

#include <cstdio>
#include <cstring>
#include <vector>

namespace qvbench {

inline constexpr int kSegments = 100000;
inline constexpr int kItems = 12;
inline constexpr int kLine = 256;

/// What the items hold: one whole number each; five, as the self-check has them; or the record of a beam, with whole
/// numbers, texts, and reals of two and three decimals.
enum class Values { Count, List, Beam };

/// The format of a value, and that of its whole line with the key in front.
struct Format {
  const char* value;
  const char* line;
};
#define QVBENCH_FORMAT(value)   \
  Format {                      \
    value, "%s = " value "\r\n" \
  }

/// Calls f(key, format, values...) for the items of a segment.
template <class F>
void for_each_item(Values values, int segment, const F& f) {
  static constexpr const char* kKeys[kItems] = {"1Num_Liang", "1Num_Zhu", "1Num_Ban", "1Num_Qiang",
                                                "2Num_Liang", "2Num_Zhu", "2Num_Ban", "2Num_Qiang",
                                                "3Num_Liang", "3Num_Zhu", "3Num_Ban", "3Num_Qiang"};
  if (values == Values::Count) {
    for (const char* key : kKeys) f(key, QVBENCH_FORMAT("%d"), segment);
    return;
  }
  if (values == Values::List) {
    for (const char* key : kKeys) f(key, QVBENCH_FORMAT("%d,%d,%d,%d,%d"), segment, 1, 2, 3, 4);
    return;
  }
  const double x = segment * 0.37, y = segment % 977 * 6.0127;
  f("Floor", QVBENCH_FORMAT("%d"), segment / 400);
  f("Name", QVBENCH_FORMAT("%s"), "KL-12(3A)");
  f("Section", QVBENCH_FORMAT("%d,%d"), 250 + segment % 4 * 50, 500 + segment % 9 * 50);
  f("Start", QVBENCH_FORMAT("%.3f,%.3f"), x, y);
  f("End", QVBENCH_FORMAT("%.3f,%.3f"), x + 6.9, y);
  f("Concrete", QVBENCH_FORMAT("C%d"), 20 + segment % 5 * 5);
  f("Steel", QVBENCH_FORMAT("%d"), 2);
  f("Moment", QVBENCH_FORMAT("%.2f"), y * 0.31 - x * 0.01);
  f("Shear", QVBENCH_FORMAT("%.2f"), x * 0.02 + 11.7);
  f("Top", QVBENCH_FORMAT("%.2f,%.2f,%.2f"), x * 0.1 + 402.1, 314.2, 509.3);
  f("Bottom", QVBENCH_FORMAT("%.2f"), y * 0.2 + 763.4);
  f("Stirrups", QVBENCH_FORMAT("%d,%d,%s"), 8, 100 + segment % 2 * 50, "HPB");
}
#undef QVBENCH_FORMAT

#pragma GCC diagnostic push
#pragma GCC diagnostic ignored "-Wformat-nonliteral"
#pragma GCC diagnostic ignored "-Wformat-security"
inline void write_plain_database(const char* path, Values values) {
  std::FILE* const file = std::fopen(path, "wb");
  long at = 0;
  std::vector<long> starts;
  for (int segment = 0; segment < kSegments; ++segment) {
    starts.push_back(at);
    at += std::fprintf(file, "[ Item%d ]\r\n", segment);
    for_each_item(values, segment, [&](const char* key, const Format& format, auto... value) {
      at += std::fprintf(file, format.line, key, value...);
    });
  }
  starts.push_back(at);
  std::fprintf(file, "[Index]\r\n");
  for (std::size_t i = 0; i < kSegments; ++i) {
    std::fprintf(file, "Item%zu = %ld %ld\r\n", i, starts[i], starts[i + 1]);
  }
  std::fprintf(file, "IndexPosition = %12ld\r\n", at);
  std::fclose(file);
}
#pragma GCC diagnostic pop

/// Calls f(key, value) for every item of a database, line by line; its index is not looked at.
template <class F>
void read_plain_database(const char* path, const F& f) {
  std::FILE* const file = std::fopen(path, "rb");
  char line[kLine], key[kLine], value[kLine];
  while (std::fgets(line, kLine, file) && std::strcmp(line, "[Index]\r\n") != 0) {
    if (line[0] != '[' && std::sscanf(line, "%255s = %255[^\r\n]", key, value) == 2) f(key, value);
  }
  std::fclose(file);
}

}  // namespace qvbench
