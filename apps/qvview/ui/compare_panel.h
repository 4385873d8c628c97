#pragma once

#include <QtWidgets/QLabel>
#include <QtWidgets/QTreeWidget>
#include <functional>

#include "qvtools.h"
#include "ui/words.h"

namespace qvview {

/// What was found of a difference, in words, while both drawings were there.
struct ComparedDrawings {
  qv::Comparison found;
  std::vector<QString> told;  ///< of each difference: kind of entity, its words, its layer
};

/// The places where two drawings differ and what differs there; the previous and the next one.
class ComparePanel : public QWidget {
 public:
  /// `show` is called with a place.
  ComparePanel(Words& words, std::function<void(const CFRect&)> show);
  /// Shows a comparison, or null for a drawing that is none.
  void refresh(const ComparedDrawings* compared);
  /// Goes to another place.
  void go(int by);

 private:
  void add_button(Text text, int by, QLayout& row);
  void show_count();

  Words& words_;
  std::function<void(const CFRect&)> show_;
  QLabel* count_;
  QTreeWidget* list_;
  const ComparedDrawings* compared_ = nullptr;
};

}  // namespace qvview
