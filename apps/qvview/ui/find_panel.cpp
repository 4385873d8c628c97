#include "ui/find_panel.h"

#include <QtWidgets/QHBoxLayout>
#include <QtWidgets/QHeaderView>
#include <QtWidgets/QVBoxLayout>

#include "qvtools/platform/qt/qt_text.h"

namespace qvview {

FindPanel::FindPanel(Words& words)
    : words_(words),
      what_(new QLineEdit),
      case_(new QCheckBox),
      word_(new QCheckBox),
      count_(new QLabel),
      list_(new QTreeWidget) {
  what_->setObjectName(QStringLiteral("find"));
  what_->setClearButtonEnabled(true);
  list_->setObjectName(QStringLiteral("found"));
  list_->setRootIsDecorated(false);
  list_->setUniformRowHeights(true);
  list_->header()->setSectionResizeMode(0, QHeaderView::Stretch);
  list_->header()->setStretchLastSection(false);
  list_->header()->setSectionResizeMode(1, QHeaderView::ResizeToContents);
  words_.bind(Text::FindHint, [this](const QString& text) { what_->setPlaceholderText(text); });
  words_.bind(Text::MatchCase, [this](const QString& text) { case_->setText(text); });
  words_.bind(Text::WholeWord, [this](const QString& text) { word_->setText(text); });
  words_.bind(Text::WordsColumn, [this](const QString& text) { list_->headerItem()->setText(0, text); });
  words_.bind(Text::LayerColumn, [this](const QString& text) { list_->headerItem()->setText(1, text); });
  auto* const choices = new QHBoxLayout;
  for (QWidget* const widget : std::initializer_list<QWidget*>{case_, word_}) choices->addWidget(widget);
  choices->addStretch();
  choices->addWidget(count_);
  auto* const column = new QVBoxLayout(this);
  column->setContentsMargins(2, 2, 2, 2);
  column->addWidget(what_);
  column->addLayout(choices);
  column->addWidget(list_);
  connect(what_, &QLineEdit::textChanged, this, [this] { search(); });
  connect(what_, &QLineEdit::returnPressed, this, [this] { go(1); });
  for (QCheckBox* const box : {case_, word_}) connect(box, &QCheckBox::toggled, this, [this] { search(); });
  connect(list_, &QTreeWidget::currentItemChanged, this, [this](QTreeWidgetItem* item) {
    const int row = list_->indexOfTopLevelItem(item);
    if (row >= 0 && view_ && view_->drawing() == searched_) view_->show_hit(hits_[static_cast<std::size_t>(row)]);
    show_count();
  });
}

void FindPanel::set_view(View& view) {
  if (view_ == &view && view.drawing() == searched_) return;
  view_ = &view;
  search();
}

void FindPanel::begin() {
  if (view_ && view_->drawing() != searched_) search();
  what_->setFocus();
  what_->selectAll();
}

void FindPanel::search() {
  const QSignalBlocker quiet(list_);
  list_->clear();
  hits_.clear();
  searched_ = view_ ? view_->drawing() : nullptr;
  if (searched_)
    hits_ = find_texts(*view_->drawing(), {what_->text().toStdString(), case_->isChecked(), word_->isChecked()},
                       view_->CurrentAngles());
  QList<QTreeWidgetItem*> rows;
  for (const Hit& hit : hits_)
    rows << new QTreeWidgetItem({QString::fromStdString(hit.words), qv::qt_text(hit.layer.c_str())});
  list_->addTopLevelItems(rows);
  show_count();
}

void FindPanel::go(int by) {
  if (view_ && view_->drawing() != searched_) search();
  const int n = list_->topLevelItemCount();
  if (n == 0) return;
  const int present = list_->indexOfTopLevelItem(list_->currentItem());
  list_->setCurrentItem(nullptr);  // the only one is gone to once more
  list_->setCurrentItem(list_->topLevelItem(((present + by) % n + n) % n));
}

void FindPanel::show_count() {
  const int n = list_->topLevelItemCount();
  const int row = list_->indexOfTopLevelItem(list_->currentItem());
  if (what_->text().isEmpty())
    count_->clear();
  else
    count_->setText(n == 0 ? words_(Text::FoundNone)
                           : words_(Text::FoundCount, QString::number(row + 1), QString::number(n)));
}

}  // namespace qvview
