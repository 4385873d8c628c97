#include "ui/main_window.h"

#include <QtCore/QFileInfo>
#include <QtCore/QLibraryInfo>
#include <QtCore/QMimeData>
#include <QtCore/QScopedValueRollback>
#include <QtCore/QSettings>
#include <QtGui/QClipboard>
#include <QtGui/QCloseEvent>
#include <QtGui/QDropEvent>
#include <QtWidgets/QApplication>
#include <QtWidgets/QFileDialog>
#include <QtWidgets/QMenu>
#include <QtWidgets/QMessageBox>
#include <QtWidgets/QStatusBar>

#include "common/plotting.h"
#include "ui/angles_dialog.h"
#include "ui/entity_text.h"
#include "ui/output.h"
#include "ui/plot_dialog.h"
#include "ui/recent_files.h"

namespace qvview {

namespace {

constexpr int kMessageTime = 4000;  // milliseconds

// What is remembered of the user.
constexpr const char* kLanguageKey = "language";
constexpr const char* kDarkKey = "dark";
constexpr const char* kGeometryKey = "geometry";
constexpr const char* kPanelsKey = "panels";
constexpr const char* kTextFontKey = "textFont";
constexpr const char* kBigFontKey = "bigFont";

QString file_filter(const Words& words, Text kind, const char* pattern) {
  return QStringLiteral("%1 (%2);;%3 (*)").arg(words(kind), QLatin1String(pattern), words(Text::AllFiles));
}

}  // namespace

MainWindow::MainWindow(Language language, const qvapps::FontFiles& usualFonts)
    : words_(language),
      usualFonts_(usualFonts),
      fonts_(usualFonts),
      canvas_(new Canvas(*this, words_)),
      view_(canvas_->view()),
      watch_([this] { reload(false); }) {
  setCentralWidget(canvas_);
  setAcceptDrops(true);
  build_menus();
  build_panels();
  build_status_bar();
  translate_dialogs();
  restore_settings();
  canvas_->on_pointer = [this] { show_pointer(); };
  canvas_->setFocus();
  on_mode_changed();
}

MainWindow::~MainWindow() {
  canvas_->on_pointer = nullptr;
}

void MainWindow::build_panels() {
  layers_ = new LayersPanel(words_, [this](const std::vector<bool>& on) {
    view_.drawing()->show_layers(on);
    view_.drawing_changed();
    show_status();
  });
  picks_ = new PicksPanel(view_, words_, [this](int entity) { view_.show_entity(entity); });
  add_panel(Text::LayersPanel, "layers", layers_);
  add_panel(Text::PicksPanel, "picks", picks_);
}

QDockWidget* MainWindow::add_panel(Text caption, const char* name, QWidget* content) {
  auto* const dock = new QDockWidget;
  dock->setObjectName(QLatin1String(name));
  dock->setWidget(content);
  words_.bind(caption, [dock](const QString& text) { dock->setWindowTitle(text); });
  addDockWidget(Qt::RightDockWidgetArea, dock);
  panelMenu_->addAction(dock->toggleViewAction());
  return dock;
}

void MainWindow::build_status_bar() {
  hint_ = new QLabel;
  hint_->setSizePolicy(QSizePolicy::Ignored, QSizePolicy::Preferred);  // the window may be narrower than it
  statusBar()->addWidget(hint_, 1);
  import_ = new QLabel;
  import_->setSizePolicy(QSizePolicy::Ignored, QSizePolicy::Preferred);
  statusBar()->addWidget(import_, 2);
  for (QLabel** const label : {&pointer_, &scale_, &count_}) {
    *label = new QLabel;
    statusBar()->addPermanentWidget(*label);
  }
  pointer_->setTextInteractionFlags(Qt::TextSelectableByMouse);
}

void MainWindow::restore_settings() {
  const QSettings settings;
  if (!restoreGeometry(settings.value(kGeometryKey).toByteArray())) resize(1280, 800);
  if (!restoreState(settings.value(kPanelsKey).toByteArray()))
    resizeDocks(findChildren<QDockWidget*>(), {340, 340}, Qt::Horizontal);
  set_dark(settings.value(kDarkKey, false).toBool());
  qvapps::FontFiles fonts = usualFonts_;
  if (settings.contains(kTextFontKey)) fonts.text = native(settings.value(kTextFontKey).toString());
  if (settings.contains(kBigFontKey)) fonts.big = native(settings.value(kBigFontKey).toString());
  if (qvapps::change_fonts(fonts)) fonts_ = fonts;
  setWindowTitle(QStringLiteral("qvview"));
  show_status();
}

void MainWindow::closeEvent(QCloseEvent* event) {
  QSettings settings;
  settings.setValue(kGeometryKey, saveGeometry());
  settings.setValue(kPanelsKey, saveState());
  settings.setValue(kDarkKey, !view_.is_light());
  event->accept();
}

// ---------------------------------------------------------------- files

std::unique_ptr<Drawing> MainWindow::drawing_of(Loaded loaded) const {
  return std::make_unique<Drawing>(std::move(loaded.document), view_.is_light(), std::move(loaded.report.notes),
                                   qvapps::unit_of(loaded.report));
}

Loaded MainWindow::load(const QString& path) {
  // Events are handled while the progress is shown; none of them may load another drawing in between.
  const QScopedValueRollback<bool> busy(loading_, true);
  return load_drawing(this, words_, path);
}

void MainWindow::open(const QString& path) {
  if (loading_) return;
  Loaded loaded = load(path);
  if (!loaded.document) {
    if (loaded.reason == Text::GivenUp) return statusBar()->showMessage(words_(Text::GivenUp), kMessageTime);
    RecentFiles::remove(QFileInfo(path).absoluteFilePath());
    QMessageBox::warning(this, words_(Text::OpenTitle), words_(Text::CannotOpen, path, words_(loaded.reason)));
    return;
  }
  path_ = QFileInfo(path).absoluteFilePath();
  take_report(loaded.report);
  view_.open(drawing_of(std::move(loaded)));
  layers_->refresh(view_.drawing());
  RecentFiles::add(path_);
  watch_.watch(path_);
  setWindowTitle(QStringLiteral("%1 - qvview").arg(QFileInfo(path_).fileName()));
  show_status();
  update_commands();
}

void MainWindow::take_report(const qv::ImportReport& report) {
  offset_ = QPointF(report.offset[0], report.offset[1]);
  report_ = QString::fromStdString(report.summary());
  // What is missing from the drawing stays written above it until another is opened.
  import_->setText(report_);
  import_->setToolTip(QString::fromStdString(report.text()));
}

void MainWindow::choose_drawing() {
  const QString directory = QFileInfo(path_).absolutePath();
  const QString path = QFileDialog::getOpenFileName(this, words_(Text::OpenTitle), directory,
                                                    file_filter(words_, Text::DrawingFiles, "*.dxf *.DXF"));
  if (!path.isEmpty()) open(path);
}

void MainWindow::reload(bool asked) {
  if (path_.isEmpty() || loading_) return;
  Loaded loaded = load(path_);
  if (loaded.document) {
    take_report(loaded.report);
    view_.reload(drawing_of(std::move(loaded)));
    layers_->refresh(view_.drawing());
    show_status();
    if (report_.isEmpty()) statusBar()->showMessage(words_(Text::Reloaded), kMessageTime);
  } else if (asked && loaded.reason != Text::GivenUp) {
    QMessageBox::warning(this, words_(Text::OpenTitle), words_(Text::CannotOpen, path_, words_(loaded.reason)));
  } else {
    statusBar()->showMessage(words_(asked ? Text::GivenUp : Text::ChangedUnreadable), kMessageTime);
  }
}

void MainWindow::dragEnterEvent(QDragEnterEvent* event) {
  if (event->mimeData()->hasUrls() && event->mimeData()->urls().first().isLocalFile()) event->acceptProposedAction();
}

void MainWindow::dropEvent(QDropEvent* event) {
  event->acceptProposedAction();
  const QString path = event->mimeData()->urls().first().toLocalFile();
  // The program that the file comes from waits until this returns.
  QMetaObject::invokeMethod(
      this, [this, path] { open(path); }, Qt::QueuedConnection);
}

CSize MainWindow::picture_size() const {
  const CRect client = canvas_->ClientRect();
  return {client.Width(), client.Height()};
}

void MainWindow::export_picture() {
  const QFileInfo info(path_);
  const QString suggested = info.absolutePath() + QLatin1Char('/') + info.completeBaseName() + QLatin1String(".png");
  const QString told = export_view(this, words_, view_, picture_size(), suggested);
  if (!told.isEmpty()) statusBar()->showMessage(told, kMessageTime);
}

void MainWindow::plot(bool toFile) {
  const QFileInfo info(path_);
  const Plotted plotted{view_, info.fileName().toStdString(), plotSetup_,
                        info.absolutePath() + QLatin1Char('/') + info.completeBaseName() + QLatin1String(".pdf")};
  QString told;
  const auto finish = [&](QWidget* parent) {
    if (!toFile) return print_pages(parent, words_, plotted);
    told = plot_to_file(parent, words_, plotted);
    return !told.isEmpty();
  };
  PlotDialog(this, words_, plotted, toFile, finish).exec();
  if (!told.isEmpty()) statusBar()->showMessage(told, kMessageTime);
}

// ---------------------------------------------------------------- how it looks

void MainWindow::set_dark(bool dark) {
  canvas_->set_light(!dark);
}

void MainWindow::turn(double a, double b) {
  view_.set_angles(from_degrees(a, b));
}

void MainWindow::choose_angles() {
  if (const std::optional<ViewAngles> angles = ask_angles(this, words_, view_.CurrentAngles()))
    view_.set_angles(*angles);
}

bool MainWindow::use_fonts(const qvapps::FontFiles& fonts) {
  if (!qvapps::change_fonts(fonts)) return false;
  fonts_ = fonts;
  QSettings settings;
  const auto keep = [&](const char* key, const std::string& path, const std::string& usual) {
    path == usual ? settings.remove(key) : settings.setValue(key, QFile::decodeName(path.c_str()));
  };
  keep(kTextFontKey, fonts.text, usualFonts_.text);
  keep(kBigFontKey, fonts.big, usualFonts_.big);
  view_.fonts_changed();
  statusBar()->showMessage(words_(Text::FontChanged), kMessageTime);
  return true;
}

void MainWindow::choose_font(std::string qvapps::FontFiles::*which) {
  const QString present = QFile::decodeName((fonts_.*which).c_str());
  const QString path = QFileDialog::getOpenFileName(this, words_(Text::ShapeFontTitle), present,
                                                    file_filter(words_, Text::ShapeFontFiles, "*.shx *.SHX"));
  if (path.isEmpty()) return;
  qvapps::FontFiles fonts = fonts_;
  fonts.*which = native(path);
  if (!use_fonts(fonts)) QMessageBox::warning(this, words_(Text::ShapeFontTitle), words_(Text::NoFont, path));
}

void MainWindow::translate_dialogs() {
  // Qt's own captions (file dialogs, buttons) come with it, where they are installed.
  QCoreApplication::removeTranslator(&dialogs_);
  if (words_.language() == Language::Chinese &&
      dialogs_.load(QStringLiteral("qtbase_zh_CN"), QLibraryInfo::path(QLibraryInfo::TranslationsPath)))
    QCoreApplication::installTranslator(&dialogs_);
}

void MainWindow::change_language(Language language) {
  words_.change(language);
  translate_dialogs();
  QSettings().setValue(kLanguageKey, language == Language::Chinese ? "zh" : "en");
  picks_->refresh();
  on_mode_changed();
  show_status();
  canvas_->update();
}

// ---------------------------------------------------------------- what is told

void MainWindow::on_view_changed() {
  show_status();
  update_commands();
}

void MainWindow::on_picks_changed() {
  picks_->refresh();
  show_status();
}

void MainWindow::on_mode_changed() {
  static constexpr Text kHints[] = {Text::PickHint, Text::WindowHint, Text::HandHint};
  hint_->setText(words_(kHints[static_cast<int>(view_.mode())]));
  canvas_->show_pointer_shape();
  update_commands();
}

void MainWindow::show_pointer() {
  const std::optional<CFPoint> at = view_.drawing() ? view_.pointer() : std::nullopt;
  pointer_->setText(at ? QStringLiteral("%1, %2").arg(number(at->x + offset_.x()), number(at->y + offset_.y()))
                       : QString());
}

void MainWindow::show_status() {
  const Drawing* const drawing = view_.drawing();
  show_pointer();
  if (!drawing) return;
  QString count = words_(Text::CountIs, QString::number(drawing->shown_count()), QString::number(drawing->count()));
  if (!view_.picks().empty())
    count += QStringLiteral("   ") + words_(Text::PickedIs, QString::number(view_.picks().size()));
  scale_->setText(words_(Text::ScaleIs, QString::number(view_.CurrentView().GetScale(), 'g', 4)));
  count_->setText(count);
}

void MainWindow::show_picked() {
  if (const int entity = picks_->current(); entity >= 0) view_.show_entity(entity);
}

void MainWindow::copy(const QString& text) {
  QApplication::clipboard()->setText(text);
  statusBar()->showMessage(words_(Text::Copied), kMessageTime);
}

void MainWindow::copy_point() {
  if (const std::optional<CFPoint> at = view_.pointer())
    copy(QStringLiteral("%1,%2").arg(at->x + offset_.x(), 0, 'f', 3).arg(at->y + offset_.y(), 0, 'f', 3));
}

}  // namespace qvview
