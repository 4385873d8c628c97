#include <benchmark/benchmark.h>

#include <cstdio>
#include <cstdlib>
#include <random>
#include <string>
#include <vector>

#include "baseline.h"
#include "qvtools/text/numbers.h"

namespace {

constexpr std::size_t kCount = 200000;

std::vector<float> coordinates() {
  std::mt19937 random(5);
  std::vector<float> values(kCount);
  for (float& v : values) v = static_cast<float>(random() % 20000000) / 200.0f - 20000.0f;
  return values;
}

/// The coordinates as text, each in a field of 16 bytes.
std::vector<char> texts(const std::vector<float>& values) {
  std::vector<char> fields(16 * values.size());
  for (std::size_t i = 0; i < values.size(); ++i) *qv::format_fixed2(&fields[16 * i], values[i]) = '\0';
  return fields;
}

/// Counters: nanoseconds a number, and how many times faster than the C library.
void report(benchmark::State& state, double own, double baseline) {
  state.counters["ns"] = own / static_cast<double>(kCount) * 1e9;
  state.counters["ratio"] = baseline / own;
}

void FormatFixed2(benchmark::State& state) {
  const std::vector<float> values = coordinates();
  std::vector<char> out(16 * kCount);
  const auto own = [&] {
    char* p = out.data();
    for (const float v : values) p = qv::format_fixed2(p, v);
    benchmark::DoNotOptimize(p);
  };
  for (auto _ : state) own();
  report(state, qvbench::seconds(own), qvbench::seconds([&] {
           for (const float v : values) std::snprintf(out.data(), 16, "%.2f", static_cast<double>(v));
         }));
}
BENCHMARK(FormatFixed2);

void ParseReal(benchmark::State& state) {
  const std::vector<char> fields = texts(coordinates());
  const auto sum = [&](auto parse) {
    double total = 0;
    for (std::size_t i = 0; i < kCount; ++i) total += parse(&fields[16 * i]);
    benchmark::DoNotOptimize(total);
  };
  for (auto _ : state) sum(qv::parse_real);
  report(state, qvbench::seconds([&] { sum(qv::parse_real); }),
         qvbench::seconds([&] { sum([](const char* text) { return std::atof(text); }); }));
}
BENCHMARK(ParseReal);

}  // namespace
