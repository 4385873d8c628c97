#pragma once

#include <QtWidgets/QCheckBox>
#include <QtWidgets/QLabel>
#include <QtWidgets/QLineEdit>
#include <QtWidgets/QTreeWidget>
#include <functional>

#include "model/view.h"
#include "ui/words.h"

namespace qvview {

/// Finds texts: a line for the words, two choices, the list of what was found with its layers. Enter goes to the next.
class FindPanel : public QWidget {
 public:
  explicit FindPanel(Words& words);
  /// The view that is searched from now on; what was found in another is forgotten.
  void set_view(View& view);
  /// Takes the keys.
  void begin();

 private:
  void search();
  void go(int by);
  void show_count();

  Words& words_;
  View* view_ = nullptr;
  QLineEdit* what_;
  QCheckBox* case_;
  QCheckBox* word_;
  QLabel* count_;
  QTreeWidget* list_;
  std::vector<Hit> hits_;
  const Drawing* searched_ = nullptr;
};

}  // namespace qvview
