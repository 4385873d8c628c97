#pragma once

/// The drawings that benchmarks write, read and show.

#include <cmath>
#include <cstdint>
#include <numbers>

#include "qvtools/dxf/model/document.h"

namespace qvbench {

inline constexpr int kEntities = 1000000;

/// A small generator, so that making a number costs next to nothing.
class Random {
 public:
  float below(float limit) {
    state_ = state_ * 6364136223846793005u + 1442695040888963407u;
    return static_cast<float>(state_ >> 40) * (limit / 16777216.0F);
  }

 private:
  std::uint64_t state_ = 20240229;
};

inline void add_layers(DXF& dxf) {
  const float pattern[] = {0.5F, -0.25F};
  dxf.Add_LType("DASHED", "- -", 2, 0.75F, pattern);
  dxf.Add_Layer("BEAM", 3, "CONTINUOUS");
  dxf.Add_Layer("REBAR", 1, "CONTINUOUS");
}

/// 70 % lines, 10 % circles, 5 % arcs, 10 % texts, 5 % polylines of six vertices, by the write calls.
inline void write_mixed(DXF& dxf) {
  Random r;
  const auto at = [&r] { return r.below(30000); };
  for (int i = 0; i < kEntities; ++i) {
    const int kind = i % 20;
    if (kind < 14) {
      dxf.Write_Line(at(), at(), 0, at(), at(), 0, "BEAM", "BYLAYER", "BYLAYER");
    } else if (kind < 16) {
      dxf.Write_Circle(at(), at(), 0, r.below(500), "REBAR", "2", "BYLAYER");
    } else if (kind < 17) {
      dxf.Write_Arc(at(), at(), 0, r.below(500), r.below(360), r.below(360), "BEAM", "BYLAYER", "DASHED");
    } else if (kind < 19) {
      char text[] = "KL-000(2A)";
      for (int k = 5, n = i; k > 2; --k, n /= 10) text[k] = static_cast<char>('0' + n % 10);
      dxf.Write_Text(at(), at(), 0, 350, 90, text, "STANDARD", "REBAR", "BYLAYER", "BYLAYER");
    } else {
      float x[6];
      float y[6];
      const float zero[6] = {};
      for (int k = 0; k < 6; ++k) {
        x[k] = at();
        y[k] = at();
      }
      dxf.Write_Pline(6, x, y, zero, zero, 0, zero, zero, "REBAR", "BYLAYER", "BYLAYER");
    }
  }
}

/// The mixed drawing in memory.
class MixedDrawing {
 public:
  MixedDrawing() {
    dxf.New_MemDxf();
    add_layers(dxf);
    write_mixed(dxf);
  }
  DXF dxf;
};

/// The mixed drawing as a streamed file; 1 for success.
inline int stream_mixed(const char* path) {
  DXF dxf;
  if (!dxf.New(path)) return 0;
  add_layers(dxf);
  dxf.Write_Tables();
  dxf.Begin_AllBlocks();
  dxf.End_AllBlocks();
  dxf.Begin_Entity();
  write_mixed(dxf);
  return dxf.Close();
}

/// The size in millimetres of a storey with a million entities: bays of 10 m, a thousand entities each.
inline constexpr float kBay = 10000;
inline constexpr int kBaysAcross = 40;
inline constexpr float kPlanWidth = kBaysAcross * kBay;
inline constexpr float kPlanHeight = 25 * kBay;

/// The same kinds as parts of a floor plan, composed bay by bay and each of its size on a building: members of 6 m,
/// axis bubbles and door swings, labels of 350 mm, bars of five legs.
inline void write_plan(DXF& dxf) {
  constexpr float kMember = 6000;
  Random r;
  for (int i = 0; i < kEntities; ++i) {
    const int kind = i % 20;
    const int bay = i / 1000;
    const float x = kBay * static_cast<float>(bay % kBaysAcross) + r.below(kBay);
    const float y = kBay * static_cast<float>(bay / kBaysAcross) + r.below(kBay);
    const float turn = r.below(360);
    if (kind < 14) {
      const double angle = turn * std::numbers::pi / 180;
      dxf.Write_Line(x, y, 0, x + kMember * static_cast<float>(std::cos(angle)),
                     y + kMember * static_cast<float>(std::sin(angle)), 0, "BEAM", "3", "BYLAYER");
    } else if (kind < 16) {
      dxf.Write_Circle(x, y, 0, 400, "REBAR", "2", "BYLAYER");
    } else if (kind < 17) {
      dxf.Write_Arc(x, y, 0, 900, turn, turn + 90, "BEAM", "3", "BYLAYER");
    } else if (kind < 19) {
      dxf.Write_Text(x, y, 0, 350, i % 2 ? 90 : 0, "KL-018(2A)", "STANDARD", "REBAR", "1", "BYLAYER");
    } else {
      const float bx[6] = {x, x, x + 1500, x + 3000, x + 3000, x + 1500};
      const float by[6] = {y + 300, y, y, y, y + 300, y + 300};
      const float zero[6] = {};
      dxf.Write_Pline(6, bx, by, zero, zero, 0, zero, zero, "REBAR", "1", "BYLAYER");
    }
  }
}

/// Walks the entities of a document.
template <class F>
void for_each_entity(const DXF& dxf, const F& f) {
  for (POSITION at = dxf.m_EntityList.GetHeadPosition(); at;)
    f(*static_cast<ACAD_ENTITY*>(dxf.m_EntityList.GetNext(at)));
}

}  // namespace qvbench
