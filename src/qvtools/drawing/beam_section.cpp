#include <algorithm>
#include <string>
#include <vector>

#include "qvtools/drawing/internal/placing.h"
#include "qvtools/services/internal/out_of_memory.h"

using namespace qv::detail;

namespace {

constexpr int kMostBars = 1000;  // in a row, and legs

/// What is said at one height of the section, over a leader on its right.
struct Label {
  int order;  // from the bottom up: rows from the bottom, the stirrup, side bars, rows from the top
  int row;
  int bars;
  std::string text;
  int number;
  float level;  // of the leader's horizontal part
};

constexpr int kStirrupOrder = 1 << 20;

int order_of_row(int row) {
  constexpr int kTopOrder = 1 << 22;
  const int bounded = std::clamp(row, -kStirrupOrder, kStirrupOrder - 1);
  return bounded > 0 ? bounded : bounded == 0 ? kStirrupOrder + 1 : kTopOrder + bounded;
}

/// Moves labels that would touch apart: those of the top rows down, then all up.
void spread(std::vector<Label>& labels, float step) {
  for (std::size_t i = labels.size() - 1; i > 0 && labels[i - 1].row < 0; --i)
    labels[i - 1].level = std::min(labels[i - 1].level, labels[i].level - step);
  for (std::size_t i = 1; i < labels.size(); ++i)
    labels[i].level = std::max(labels[i].level, labels[i - 1].level + step);
}

/// The measures of a beam section in the caller's frame.
struct Section {
  float x;
  float y;
  float w;
  float h;
  float cover;
  float dot;   // diameter of a bar as it is drawn
  float line;  // width of a stirrup as it is drawn

  /// Where leg i of n stands, at even distances.
  float leg(int i, int n) const {
    const float first = cover + line / 2;
    return x + first + (w - 2 * first) * static_cast<float>(i) / static_cast<float>(n - 1);
  }

  /// The place of bar i of n in a row; the corner bars touch both sides of the stirrup's corner.
  Place bar(int row, int i, int n) const {
    const float inset = cover + line + dot / 2;
    const float inner = w - 2 * inset;
    if (row == 0) {
      const float share = static_cast<float>(i / 2 + 1) / static_cast<float>((n + 1) / 2 + 1);
      return {x + inset + (i % 2 ? inner : 0), y + inset + (h - 2 * inset) * share};
    }
    const float share = n < 2 ? 0.5F : static_cast<float>(i) / static_cast<float>(n - 1);
    const float depth = inset + 2 * dot * (std::fabs(static_cast<float>(row)) - 1);
    return {x + inset + inner * share, row > 0 ? y + depth : y + h - depth};
  }

  /// Where the leader of a row runs before labels are moved apart: on the inner side of its bars.
  float level(int row) const {
    if (row == 0) return y + h / 2 + 3 * dot;
    return bar(row, 0, 1).y + (row > 0 ? dot : -dot) * 1.5F;
  }
};

void draw_stirrups(CBase_SGT& sgt, const Section& section, int legs) {
  const float w = section.w - 2 * section.cover;
  const float h = section.h - 2 * section.cover;
  const float hook = 2 * section.dot;
  sgt.Draw_RectGangJin_C_CutL(w, h, section.x + section.w / 2, section.y + section.h / 2, 0, hook, hook, 1);
  const float low = section.y + section.cover + section.line / 2;
  const float high = section.y + section.h - section.cover - section.line / 2;
  // Pairs of inner legs are stirrups; an odd one is a tie.
  for (int i = 1; i < legs - 1; i += 2) {
    const float from = section.leg(i, legs);
    if (i + 1 == legs - 1)
      sgt.Draw_XianGangJin(from, low, from, high);
    else
      sgt.Draw_RectGangJin_LB(section.leg(i + 1, legs) - from, high - low, from, low, 0);
  }
}

/// The leader from the bars of a label (the stirrup's from its right leg) to its text and number.
void draw_label(CBase_SGT& sgt, const Section& section, const Label& label, float millimetre) {
  std::vector<float> x;
  std::vector<float> y;
  // Only side bars on the right have a leader: one from the left would run through the section.
  const int step = label.row == 0 ? 2 : 1;
  for (int i = step - 1; i < label.bars; i += step) {
    const Place at = section.bar(label.row, i, label.bars);
    x.push_back(at.x);
    y.push_back(at.y);
  }
  if (x.empty()) {
    x.push_back(section.x + section.w - section.cover - section.line / 2);
    y.push_back(label.level);
  }
  // The horizontal part is somewhat longer than its text, which begins 1 mm behind its start.
  const float text = static_cast<float>(label.text.size()) * 0.8F * sgt.m_fDimTextHeight;
  sgt.Draw_GangJin_BiaoZhu(section.x + section.w + 3 * millimetre, label.level, static_cast<int>(x.size()), x.data(),
                           y.data(), text + 2 * sgt.m_fBiLiChi, label.number, 0, 1, label.text.c_str());
}

/// The rows of bars, each with its label: entries of one row stand together.
std::vector<Label> rows_of(const Section& section, int n, const CBase_SGT::CLiangZongJin* bars, int number) {
  std::vector<Label> rows;
  for (int i = 0; i < n; ++i) {
    char text[64] = "";
    CBase_SGT::FormString_GJ_nqd(text, bars[i].count, bars[i].grade, bars[i].diameter);
    const int row = bars[i].row;
    const int count = std::clamp(bars[i].count, 0, kMostBars);
    const auto present = std::find_if(rows.begin(), rows.end(), [&](const Label& label) { return label.row == row; });
    if (present == rows.end()) {
      rows.push_back({order_of_row(row), row, count, text, number > 0 ? number + i : 0, section.level(row)});
    } else {
      present->bars = std::min(present->bars + count, kMostBars);
      present->text += std::string("+") + text;
    }
  }
  return rows;
}

}  // namespace

void CBase_SGT::Draw_Liang_Section(float x, float y, float w, float h, float cover, int n, const CLiangZongJin* bars,
                                   const CLiangGuJin& stirrup, int number) {
  unless_out_of_memory([&] {
    const Section section{x, y, w, h, cover, m_fGJDotWidth, m_fGJLineWidth};
    Draw_Rect_LB(w, h, x, y, 0);
    draw_stirrups(*this, section, std::min(stirrup.legs, kMostBars));
    std::vector<Label> labels = rows_of(section, n, bars, number);
    for (const Label& row : labels) {
      for (int i = 0; i < row.bars; ++i) {
        const Place at = section.bar(row.row, i, row.bars);
        Draw_YuanDianGangJin(at.x, at.y, 0, 0);
      }
    }
    char text[64] = "";
    FormString_GJ_qdas(text, stirrup.grade, stirrup.diameter, stirrup.spacing);
    labels.push_back({kStirrupOrder, 0, 0, text + ("(" + std::to_string(stirrup.legs) + ")"),
                      number > 0 ? number + n : 0, y + h / 2});
    std::sort(labels.begin(), labels.end(), [](const Label& a, const Label& b) { return a.order < b.order; });
    const float millimetre = m_fBiLiChi / m_fLenFactor;
    spread(labels, 7 * millimetre);
    for (const Label& label : labels) draw_label(*this, section, label, millimetre);
  });
}
