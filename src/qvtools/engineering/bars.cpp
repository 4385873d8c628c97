#include "qvtools/engineering/bars.h"

#include <algorithm>
#include <iterator>

namespace qv {

namespace {

constexpr BarSize kSizes[] = {{6, 28.27, 0.222},  {8, 50.27, 0.395},  {10, 78.54, 0.617}, {12, 113.1, 0.888},
                              {14, 153.9, 1.21},  {16, 201.1, 1.58},  {18, 254.5, 2.00},  {20, 314.2, 2.47},
                              {22, 380.1, 2.98},  {25, 490.9, 3.85},  {28, 615.8, 4.83},  {32, 804.2, 6.31},
                              {36, 1018.0, 7.99}, {40, 1257.0, 9.87}, {50, 1964.0, 15.42}};

}  // namespace

std::span<const BarSize> BarSizes() {
  return kSizes;
}

const BarSize* FindBarSize(int diameter) {
  const auto* const size = std::ranges::lower_bound(kSizes, diameter, {}, &BarSize::diameter);
  return size != std::end(kSizes) && size->diameter == diameter ? size : nullptr;
}

double BarArea(int diameter, int count) {
  const BarSize* const size = FindBarSize(diameter);
  return size ? size->area * count : 0;
}

double BarAreaPerMetre(int diameter, double spacing) {
  return spacing > 0 ? BarArea(diameter) * 1000 / spacing : 0;
}

double BarMass(int diameter, double length) {
  const BarSize* const size = FindBarSize(diameter);
  return size ? size->mass * length : 0;
}

}  // namespace qv
