#pragma once

#include <QtWidgets/QTreeWidget>

#include "model/view.h"
#include "ui/words.h"

namespace qvview {

/// All that is known of the one entity that is picked; of several how many there are of each kind on each layer.
class PropertiesPanel : public QTreeWidget {
 public:
  explicit PropertiesPanel(Words& words);
  void refresh(const View& view);

 private:
  const Words& words_;
};

}  // namespace qvview
