#pragma once

/// Bar labels that make room for each other.

#include <string>
#include <utility>
#include <vector>

#include "qvtools/drawing/base_sgt.h"

namespace qv {

/// The labels of one side of a detail, collected and then drawn together: each stands as near to its point as the
/// others let it, so that neither texts nor numbers touch and no two leaders cross. Each is one `Draw_GangJin_BiaoZhu`,
/// in `m_szBZColor`. Places are in the caller's frame.
class QV_API Leaders {
 public:
  /// The side of the detail on which the labels stand.
  enum class Side { Left, Right, Above, Below };

  /// Where the labels stand: in a column from x = `at` outward for `Left` and `Right`, in a row at y = `at` for `Above`
  /// and `Below`.
  Leaders(Side side, float at) : side_(side), at_(at) {}

  /// A label of the point (x, y): the text (GBK), and the bar number when it is above 0.
  void Add(float x, float y, std::string text, int number = 0) { labels_.push_back({x, y, std::move(text), number}); }

  /// Draws the labels, and forgets them.
  void Draw(CBase_SGT& sgt);

 private:
  struct Label {
    float x;
    float y;
    std::string text;
    int number;
  };
  Side side_;
  float at_;
  std::vector<Label> labels_;
};

}  // namespace qv
