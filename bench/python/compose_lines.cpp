// The baseline of compose_lines.py: a million lines from arrays, by a loop of calls. Prints the milliseconds of each
// way.

#include <chrono>
#include <cstdio>
#include <memory>
#include <random>

#include "qvtools.h"

namespace {

template <class Draw>
void measure(const char* name, const Draw& draw) {
  const auto begin = std::chrono::steady_clock::now();
  draw();
  std::printf("%s %.1f\n", name,
              std::chrono::duration<double, std::milli>(std::chrono::steady_clock::now() - begin).count());
}

}  // namespace

int main() {
  constexpr std::size_t kLines = 1000000;
  std::mt19937 random(1);
  std::uniform_real_distribution<float> place(0, 9000);
  std::vector<float> start(2 * kLines), end(2 * kLines);
  for (float& v : start) v = place(random);
  for (float& v : end) v = place(random);

  DXF document;
  document.New_MemDxf();
  measure("Document.add_lines", [&] {
    for (std::size_t i = 0; i < 2 * kLines; i += 2)
      document.Write_Line(start[i], start[i + 1], 0, end[i], end[i + 1], 0, "0", "BYLAYER", "BYLAYER");
  });
  const std::unique_ptr<CBase_SGT> sgt(NewMemDxf());
  sgt->SetBiLiChi(50);
  measure("Composer.lines", [&] {
    for (std::size_t i = 0; i < 2 * kLines; i += 2) sgt->Draw_Line(start[i], start[i + 1], end[i], end[i + 1]);
  });
}
