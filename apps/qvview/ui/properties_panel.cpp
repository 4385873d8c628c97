#include "ui/properties_panel.h"

#include <QtWidgets/QHeaderView>

#include "model/properties.h"
#include "qvtools/platform/qt/qt_text.h"

namespace qvview {

PropertiesPanel::PropertiesPanel(Words& words) : words_(words) {
  setRootIsDecorated(false);
  setUniformRowHeights(true);
  header()->setSectionResizeMode(0, QHeaderView::ResizeToContents);
  words.bind(Text::NameColumn, [this](const QString& text) { headerItem()->setText(0, text); });
  words.bind(Text::ValueColumn, [this](const QString& text) { headerItem()->setText(1, text); });
}

void PropertiesPanel::refresh(const View& view) {
  clear();
  if (!view.drawing() || view.picks().empty()) return;
  const auto add = [&](const QString& name, const QString& value) {
    auto* const row = new QTreeWidgetItem(this, {name, value});
    row->setToolTip(1, value);
  };
  if (view.picks().size() == 1) {
    for (const Property& p : properties_of(*view.drawing(), view.picks().front(), words_.language()))
      add(words_(p.name), QString::fromStdString(p.value));
    return;
  }
  for (const CountOfKind& c : counts_of(*view.drawing(), view.picks())) {
    const Text kind = static_cast<Text>(static_cast<int>(Text::KindPoint) + c.kind);
    add(words_(kind) + QStringLiteral("  ") + qv::qt_text(c.layer.c_str()), QString::number(c.count));
  }
}

}  // namespace qvview
