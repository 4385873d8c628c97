#pragma once

#include <QtWidgets/QTreeWidget>
#include <functional>
#include <vector>

#include "model/drawing.h"
#include "ui/words.h"

namespace qvview {

/// The drawing's layers with a box to switch each, and three buttons for all of them.
class LayersPanel : public QWidget {
 public:
  /// `show` is called with what is to be on.
  LayersPanel(Words& words, std::function<void(const std::vector<bool>&)> show);
  /// Shows the layers of a drawing; null for none.
  void refresh(const Drawing* drawing);

 private:
  void add_button(Words& words, Text text, std::function<bool(bool on)> change);
  void report();

  std::function<void(const std::vector<bool>&)> show_;
  QTreeWidget* tree_;
  bool filling_ = false;
};

}  // namespace qvview
