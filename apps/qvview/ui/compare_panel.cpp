#include "ui/compare_panel.h"

#include <QtWidgets/QHBoxLayout>
#include <QtWidgets/QHeaderView>
#include <QtWidgets/QPushButton>
#include <QtWidgets/QVBoxLayout>

#include "ui/entity_text.h"

namespace qvview {

ComparePanel::ComparePanel(Words& words, std::function<void(const CFRect&)> show)
    : words_(words), show_(std::move(show)), count_(new QLabel), list_(new QTreeWidget) {
  list_->setObjectName(QStringLiteral("places"));
  list_->setUniformRowHeights(true);
  list_->header()->setSectionResizeMode(0, QHeaderView::ResizeToContents);
  words_.bind(Text::ChangeColumn, [this](const QString& text) { list_->headerItem()->setText(0, text); });
  words_.bind(Text::KindColumn, [this](const QString& text) { list_->headerItem()->setText(1, text); });
  auto* const row = new QHBoxLayout;
  add_button(Text::PreviousPlace, -1, *row);
  add_button(Text::NextPlace, 1, *row);
  row->addWidget(count_, 1);
  auto* const column = new QVBoxLayout(this);
  column->setContentsMargins(2, 2, 2, 2);
  column->addLayout(row);
  column->addWidget(list_);
  connect(list_, &QTreeWidget::currentItemChanged, this, [this](QTreeWidgetItem* item) {
    if (!item || !compared_) return;
    const QTreeWidgetItem* const place = item->parent() ? item->parent() : item;
    const auto index = static_cast<std::size_t>(list_->indexOfTopLevelItem(const_cast<QTreeWidgetItem*>(place)));
    const qv::DifferentPlace& at = compared_->found.places[index];
    if (item == place) {
      show_(at.box);
    } else {
      const int d = at.differences[static_cast<std::size_t>(place->indexOfChild(item))];
      show_(compared_->found.differences[static_cast<std::size_t>(d)].box);
    }
    show_count();
  });
}

void ComparePanel::add_button(Text text, int by, QLayout& row) {
  auto* const button = new QPushButton;
  words_.bind(text, [button](const QString& caption) { button->setText(caption); });
  connect(button, &QPushButton::clicked, this, [this, by] { go(by); });
  row.addWidget(button);
}

void ComparePanel::refresh(const ComparedDrawings* compared) {
  constexpr std::size_t kMostOfPlace = 500;
  const QSignalBlocker quiet(list_);
  list_->clear();
  compared_ = compared;
  setEnabled(compared != nullptr);
  for (std::size_t p = 0; compared && p < compared->found.places.size(); ++p) {
    const std::vector<int>& all = compared->found.places[p].differences;
    auto* const place = new QTreeWidgetItem(list_, {QString::number(p + 1), QStringLiteral("× %1").arg(all.size())});
    for (std::size_t i = 0; i < std::min(all.size(), kMostOfPlace); ++i) {
      const auto index = static_cast<std::size_t>(all[i]);
      const qv::Difference& d = compared->found.differences[index];
      QString what = words_(static_cast<Text>(static_cast<int>(Text::ChangeRemoved) + static_cast<int>(d.kind)));
      if (d.kind == qv::ChangeKind::Moved) what += QStringLiteral(" %1, %2").arg(number(d.moved.x), number(d.moved.y));
      new QTreeWidgetItem(place, {what, compared->told[index]});
    }
  }
  show_count();
}

void ComparePanel::go(int by) {
  const int n = list_->topLevelItemCount();
  if (n == 0) return;
  QTreeWidgetItem* item = list_->currentItem();
  if (item && item->parent()) item = item->parent();
  const int present = list_->indexOfTopLevelItem(item);
  list_->setCurrentItem(nullptr);
  list_->setCurrentItem(list_->topLevelItem(present < 0 && by < 0 ? n - 1 : ((present + by) % n + n) % n));
}

void ComparePanel::show_count() {
  if (!compared_) return count_->clear();
  const int n = list_->topLevelItemCount();
  const QTreeWidgetItem* item = list_->currentItem();
  if (item && item->parent()) item = item->parent();
  QString text = n == 0 ? words_(Text::NothingDiffers)
                        : words_(Text::PlaceOf,
                                 QString::number(list_->indexOfTopLevelItem(const_cast<QTreeWidgetItem*>(item)) + 1),
                                 QString::number(n));
  const CFPoint& shift = compared_->found.shift;
  if (shift != CFPoint(0, 0))
    text += QStringLiteral("  ") + words_(Text::SheetShifted, number(shift.x), number(shift.y));
  count_->setText(text);
}

}  // namespace qvview
