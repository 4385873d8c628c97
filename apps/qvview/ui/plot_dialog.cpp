#include "ui/plot_dialog.h"

#include <QtCore/QFile>
#include <QtGui/QPainter>
#include <QtWidgets/QCheckBox>
#include <QtWidgets/QDialogButtonBox>
#include <QtWidgets/QFileDialog>
#include <QtWidgets/QFormLayout>
#include <QtWidgets/QMessageBox>
#include <QtWidgets/QPushButton>
#include <algorithm>

#include "ui/loading.h"

namespace qvview {

namespace {

constexpr int kPause = 200;          // milliseconds
constexpr QSize kPreview(320, 240);  // pixels, at least
constexpr QSize kSize(1000, 600);
constexpr int kLeadingScales = 2;  // the sheet's own, and what fits

/// A page with the edge of its paper.
QImage picture_of(PlotJob& job, int page, QSize room, double ratio) {
  const auto inside = [&](int side) { return std::max(static_cast<int>(side * ratio) - 2, 1); };
  const auto drawn = job.picture(page, {inside(room.width()), inside(room.height())});
  if (!drawn) return {};
  QImage image(drawn->Width() + 2, drawn->Height() + 2, QImage::Format_RGB32);
  image.fill(Qt::gray);
  QPainter(&image).drawImage(1, 1,
                             QImage(reinterpret_cast<const uchar*>(drawn->Pixels()), drawn->Width(), drawn->Height(),
                                    drawn->Width() * 4, QImage::Format_RGB32));
  image.setDevicePixelRatio(ratio);
  return image;
}

QStringList pen_names() {
  QStringList names;
  for (const char* const name : qv::PenTable::built_in_names()) names << QString::fromUtf8(name);
  return names;
}

}  // namespace

PlotDialog::PlotDialog(QWidget* parent, const Words& words, const Plotted& plotted, bool toFile, Finish finish)
    : QDialog(parent), words_(words), plotted_(plotted), setup_(plotted.setup), finish_(std::move(finish)) {
  setWindowTitle(words_(toFile ? Text::PlotTitle : Text::PrintTitle));
  auto* const form = new QFormLayout;
  add_choices(*form, toFile);
  auto* const buttons = new QDialogButtonBox(QDialogButtonBox::Cancel);
  accept_ = buttons->addButton(words_(toFile ? Text::WriteFile : Text::Print), QDialogButtonBox::AcceptRole);
  connect(buttons, &QDialogButtonBox::accepted, this, &QDialog::accept);
  connect(buttons, &QDialogButtonBox::rejected, this, &QDialog::reject);
  auto* const left = new QVBoxLayout;
  left->addLayout(form);
  left->addStretch();
  left->addWidget(buttons);
  auto* const row = new QHBoxLayout(this);
  row->addLayout(left);
  row->addLayout(make_preview(), 1);
  accept_->setDefault(true);
  resize(kSize);
  wait_.setSingleShot(true);
  wait_.setInterval(kPause);
  connect(&wait_, &QTimer::timeout, this, [this] { show_preview(); });
  changed();
}

QComboBox* PlotDialog::add_choice(QFormLayout& form, Text label, std::initializer_list<Text> texts, int chosen) {
  auto* const box = new QComboBox;
  for (const Text text : texts) box->addItem(words_(text));
  box->setCurrentIndex(chosen);
  form.addRow(words_(label), box);
  connect(box, &QComboBox::currentTextChanged, this, [this] { changed(); });
  return box;
}

void PlotDialog::add_choices(QFormLayout& form, bool toFile) {
  what_ = add_choice(form, Text::PlotWhat, {Text::PlotSheets, Text::PlotWhole, Text::PlotView},
                     static_cast<int>(setup_.what));
  paper_ = add_choice(form, Text::PlotPaper, {Text::PaperOfSheet}, 0);
  for (const qv::PaperFormat& format : qv::paper_formats()) paper_->addItem(QString::fromUtf8(format.name));
  orientation_ = add_choice(form, Text::PlotOrientation, {Text::OrientationOfDrawing, Text::Landscape, Text::Portrait},
                            static_cast<int>(setup_.orientation));
  scale_ = add_choice(form, Text::PlotScale, {Text::ScaleOfSheet, Text::ScaleFits}, static_cast<int>(setup_.scale));
  for (const char* const scale : usual_scales()) scale_->addItem(QString::fromLatin1(scale));
  for (QComboBox* const typed : {paper_, scale_}) {
    typed->setEditable(true);
    typed->setInsertPolicy(QComboBox::NoInsert);
    typed->setMinimumContentsLength(24);
  }
  if (!setup_.paper.empty()) paper_->setEditText(QString::fromStdString(setup_.paper));
  if (setup_.scale == PlotSetup::Scale::Number) scale_->setEditText(QString::fromStdString(setup_.number));
  const auto add_number = [&](Text label, double value, double least, double most) {
    auto* const box = new QDoubleSpinBox;
    box->setRange(least, most);
    box->setDecimals(0);
    box->setValue(value);
    form.addRow(words_(label), box);
    connect(box, &QDoubleSpinBox::valueChanged, this, [this] { changed(); });
    return box;
  };
  margin_ = add_number(Text::PlotMargin, setup_.margin, 0, 100);
  pens_ = add_choice(form, Text::PlotPens, {}, 0);
  pens_->addItems(pen_names());
  const QString pens = QFile::decodeName(setup_.pens.c_str());
  if (pens_->findText(pens) < 0) pens_->addItem(pens);
  pens_->setCurrentText(pens);
  auto* const file = new QPushButton(words_(Text::PensOfFile));
  file->setAutoDefault(false);
  connect(file, &QPushButton::clicked, this, [this] { choose_pens(); });
  form.addRow(QString(), file);
  colors_ = add_choice(form, Text::PlotColors, {Text::ColorsBlack, Text::ColorsGrey, Text::ColorsOwn},
                       static_cast<int>(setup_.colors));
  if (!toFile) return;
  dpi_ = add_number(Text::PlotDpi, setup_.dpi, 30, 2400);
  smooth_ = new QCheckBox(words_(Text::PlotSmooth));
  smooth_->setChecked(setup_.smooth);
  form.addRow(QString(), smooth_);
}

QLayout* PlotDialog::make_preview() {
  picture_ = new QLabel;
  picture_->setObjectName(QStringLiteral("preview"));
  picture_->setAlignment(Qt::AlignCenter);
  picture_->setMinimumSize(kPreview);
  picture_->setSizePolicy(QSizePolicy::Ignored, QSizePolicy::Ignored);
  told_ = new QLabel;
  told_->setObjectName(QStringLiteral("told"));
  told_->setWordWrap(true);
  told_->setTextFormat(Qt::PlainText);
  told_->setTextInteractionFlags(Qt::TextSelectableByMouse);
  pageOf_ = new QLabel;
  const auto add_arrow = [&](Qt::ArrowType arrow, int by) {
    auto* const button = new QToolButton;
    button->setArrowType(arrow);
    connect(button, &QToolButton::clicked, this, [this, by] { turn_page(by); });
    return button;
  };
  before_ = add_arrow(Qt::LeftArrow, -1);
  after_ = add_arrow(Qt::RightArrow, 1);
  auto* const turning = new QHBoxLayout;
  turning->addStretch();
  for (QWidget* const widget : std::initializer_list<QWidget*>{before_, pageOf_, after_}) turning->addWidget(widget);
  turning->addStretch();
  auto* const column = new QVBoxLayout;
  column->addWidget(picture_, 1);
  column->addLayout(turning);
  column->addWidget(told_);
  return column;
}

void PlotDialog::choose_pens() {
  const QString filter =
      QStringLiteral("%1 (*.pens *.txt *.ctb *.CTB);;%2 (*)").arg(words_(Text::PensFiles), words_(Text::AllFiles));
  const QString path = QFileDialog::getOpenFileName(this, words_(Text::PensTitle), QString(), filter);
  if (path.isEmpty()) return;
  if (pens_->findText(path) < 0) pens_->addItem(path);
  pens_->setCurrentText(path);
}

void PlotDialog::take() {
  setup_.what = static_cast<PlotSetup::What>(what_->currentIndex());
  const bool ownPaper = paper_->currentText() == paper_->itemText(0);
  setup_.paper = ownPaper ? std::string() : paper_->currentText().toStdString();
  setup_.orientation = static_cast<qv::PlotOptions::Orientation>(orientation_->currentIndex());
  const int scale = scale_->findText(scale_->currentText());
  setup_.scale = scale >= 0 && scale < kLeadingScales ? static_cast<PlotSetup::Scale>(scale) : PlotSetup::Scale::Number;
  setup_.number = scale_->currentText().toStdString();
  setup_.margin = margin_->value();
  setup_.pens = pens_->findText(pens_->currentText()) < static_cast<int>(qv::PenTable::built_in_names().size())
                    ? pens_->currentText().toStdString()
                    : native(pens_->currentText());
  setup_.colors = static_cast<qv::PlotColors>(colors_->currentIndex());
  if (!dpi_) return;
  setup_.dpi = dpi_->value();
  setup_.smooth = smooth_->isChecked();
}

void PlotDialog::changed() {
  wait_.start();
}

void PlotDialog::show_preview() {
  const WaitCursor waiting;
  take();
  PlotJob job(plotted_.view, plotted_.name, setup_, words_.language());
  pages_ = job.pages();
  page_ = std::clamp(page_, 0, std::max(pages_ - 1, 0));
  accept_->setEnabled(pages_ > 0);
  QImage image;
  if (pages_ > 0) image = picture_of(job, page_, picture_->size(), devicePixelRatioF());
  picture_->setPixmap(QPixmap::fromImage(image));
  told_->setText(QString::fromStdString(pages_ > 0 ? job.words(page_) : job.problem()));
  pageOf_->setText(pages_ > 1 ? words_(Text::PageOf, QString::number(page_ + 1), QString::number(pages_)) : QString());
  before_->setVisible(pages_ > 1);
  after_->setVisible(pages_ > 1);
  before_->setEnabled(page_ > 0);
  after_->setEnabled(page_ + 1 < pages_);
}

void PlotDialog::turn_page(int by) {
  page_ += by;
  show_preview();
}

void PlotDialog::resizeEvent(QResizeEvent* event) {
  QDialog::resizeEvent(event);
  changed();
}

void PlotDialog::done(int result) {
  wait_.stop();
  take();
  if (result == Accepted && !finish_(this)) return;
  QDialog::done(result);
}

}  // namespace qvview
