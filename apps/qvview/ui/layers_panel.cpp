#include "ui/layers_panel.h"

#include <QtWidgets/QHBoxLayout>
#include <QtWidgets/QHeaderView>
#include <QtWidgets/QPushButton>
#include <QtWidgets/QVBoxLayout>

#include "qvtools/platform/qt/qt_text.h"
#include "ui/colors.h"

namespace qvview {

namespace {
enum Column { kName, kCount };
}  // namespace

LayersPanel::LayersPanel(Words& words, std::function<void(const std::vector<bool>&)> show)
    : show_(std::move(show)), tree_(new QTreeWidget) {
  tree_->setRootIsDecorated(false);
  tree_->setUniformRowHeights(true);
  tree_->header()->setStretchLastSection(false);
  tree_->header()->setSectionResizeMode(kName, QHeaderView::Stretch);
  tree_->header()->setSectionResizeMode(kCount, QHeaderView::ResizeToContents);
  words.bind(Text::LayerColumn, [this](const QString& text) { tree_->headerItem()->setText(kName, text); });
  words.bind(Text::CountColumn, [this](const QString& text) { tree_->headerItem()->setText(kCount, text); });
  auto* const column = new QVBoxLayout(this);
  column->setContentsMargins(2, 2, 2, 2);
  column->addWidget(tree_);
  auto* const row = new QHBoxLayout;
  column->addLayout(row);
  add_button(words, Text::AllLayers, [](bool) { return true; });
  add_button(words, Text::NoLayers, [](bool) { return false; });
  add_button(words, Text::InvertLayers, [](bool on) { return !on; });
  connect(tree_, &QTreeWidget::itemChanged, this, [this] { report(); });
}

void LayersPanel::add_button(Words& words, Text text, std::function<bool(bool on)> change) {
  auto* const button = new QPushButton;
  words.bind(text, [button](const QString& caption) { button->setText(caption); });
  layout()->itemAt(1)->layout()->addWidget(button);
  connect(button, &QPushButton::clicked, this, [this, change = std::move(change)] {
    filling_ = true;
    for (int i = 0; i < tree_->topLevelItemCount(); ++i) {
      QTreeWidgetItem* const item = tree_->topLevelItem(i);
      const bool on = item->checkState(kName) == Qt::Checked;
      item->setCheckState(kName, change(on) ? Qt::Checked : Qt::Unchecked);
    }
    filling_ = false;
    report();
  });
}

void LayersPanel::refresh(const Drawing* drawing) {
  filling_ = true;
  tree_->clear();
  if (drawing)
    for (const Layer& layer : drawing->layers()) {
      auto* const item = new QTreeWidgetItem(tree_);
      item->setText(kName, qv::qt_text(layer.name.c_str()));
      item->setIcon(kName, swatch(layer.color));
      item->setText(kCount, QString::number(layer.entities));
      item->setTextAlignment(kCount, Qt::AlignRight | Qt::AlignVCenter);
      item->setCheckState(kName, layer.on ? Qt::Checked : Qt::Unchecked);
    }
  filling_ = false;
}

void LayersPanel::report() {
  if (filling_) return;
  std::vector<bool> on;
  for (int i = 0; i < tree_->topLevelItemCount(); ++i)
    on.push_back(tree_->topLevelItem(i)->checkState(kName) == Qt::Checked);
  show_(on);
}

}  // namespace qvview
