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
#include <QtWidgets/QPlainTextEdit>
#include <QtWidgets/QStatusBar>
#include <QtWidgets/QVBoxLayout>

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

QPalette dark_palette() {
  QPalette palette(QColor(53, 53, 53));
  palette.setColor(QPalette::Base, QColor(35, 35, 35));
  palette.setColor(QPalette::AlternateBase, QColor(45, 45, 45));
  palette.setColor(QPalette::Link, QColor(100, 180, 255));
  return palette;
}

QString file_filter(const Words& words, Text kind, const char* pattern) {
  return QStringLiteral("%1 (%2);;%3 (*)").arg(words(kind), QLatin1String(pattern), words(Text::AllFiles));
}

}  // namespace

MainWindow::MainWindow(Language language, const qvapps::FontFiles& usualFonts)
    : words_(language), usualFonts_(usualFonts), fonts_(usualFonts), loaded_(usualFonts), book_(new QTabWidget) {
  book_->setTabBarAutoHide(true);
  book_->setTabsClosable(true);
  book_->setMovable(false);
  book_->setDocumentMode(true);
  setCentralWidget(book_);
  setAcceptDrops(true);
  build_menus();
  build_panels();
  build_status_bar();
  translate_dialogs();
  connect(book_, &QTabWidget::currentChanged, this, [this](int index) { show_tab(index); });
  connect(book_, &QTabWidget::tabCloseRequested, this, [this](int index) { close_tab(index); });
  add_tab();
  restore_settings();
  canvas().setFocus();
  on_mode_changed();
}

MainWindow::~MainWindow() {
  book_->disconnect(this);
  for (const auto& tab : tabs_) tab->canvas->disconnect(this);
}

MainWindow::Tab& MainWindow::add_tab() {
  tabs_.push_back(std::make_unique<Tab>());
  Tab& tab = *tabs_.back();
  tab.canvas = new Canvas;
  tab.fonts = loaded_;
  tab.canvas->SetLanguage(words_.language());
  tab.canvas->SetEmptyText(words_(Text::NoDrawing));
  connect(tab.canvas, &Canvas::ViewChanged, this, [this] { on_view_changed(); });
  connect(tab.canvas, &Canvas::PicksChanged, this, [this] { on_picks_changed(); });
  connect(tab.canvas, &Canvas::ModeChanged, this, [this] { on_mode_changed(); });
  connect(tab.canvas, &Canvas::MeasuresChanged, this, [this] { on_measures_changed(); });
  connect(tab.canvas, &Canvas::PointerMoved, this, [this] { show_pointer(); });
  for (QAction* const action : canvasActions_) tab.canvas->addAction(action);
  tab.watch = std::make_unique<FileWatch>([this, &tab] { reload(tab, false); });
  if (tab_) tab.canvas->SetLight(view().is_light());
  book_->addTab(tab.canvas, QString());
  book_->setCurrentIndex(book_->count() - 1);
  return tab;
}

void MainWindow::show_tab(int index) {
  if (index < 0 || index >= static_cast<int>(tabs_.size())) return;
  tab_ = tabs_[static_cast<std::size_t>(index)].get();
  canvas().setFocus();
  draw_with(fonts_of(tab_->fonts));
  name_tab(*tab_);
  refresh_panels();
  on_mode_changed();
  show_status();
}

void MainWindow::close_tab(int index) {
  if (loading_) return;
  const auto at = tabs_.begin() + index;
  remember_view(**at);
  // The window keeps one tab, empty then.
  if (tabs_.size() == 1) add_tab();
  const std::unique_ptr<Tab> closed = std::move(tabs_[static_cast<std::size_t>(index)]);
  closed->canvas->disconnect(this);
  tabs_.erase(tabs_.begin() + index);
  if (tab_ == closed.get()) tab_ = tabs_[std::min(static_cast<std::size_t>(index), tabs_.size() - 1)].get();
  picks_->set_view(view());
  find_->set_view(view());
  compare_->refresh(nullptr);
  book_->removeTab(index);
  delete closed->canvas;
  show_tab(book_->currentIndex());
}

MainWindow::Tab& MainWindow::tab_for_opening() {
  return view().drawing() ? add_tab() : *tab_;
}

void MainWindow::name_tab(const Tab& tab) {
  QString name = QFileInfo(tab.path).fileName();
  if (tab.compared) name = words_(Text::ComparedWith, QFileInfo(tab.older).fileName(), name);
  book_->setTabText(book_->indexOf(tab.canvas), QString(name).replace(QLatin1String("&"), QLatin1String("&&")));
  book_->setTabToolTip(book_->indexOf(tab.canvas), tab.path);
  if (&tab == tab_) setWindowTitle(name.isEmpty() ? QStringLiteral("qvview") : QStringLiteral("%1 - qvview").arg(name));
}

void MainWindow::refresh_panels() {
  layers_->refresh(view().drawing());
  picks_->set_view(view());
  properties_->refresh(view());
  measures_->refresh(view().measuring());
  find_->set_view(view());
  compare_->refresh(tab_->compared.get());
  import_->setText(tab_->summary.isEmpty() ? QString()
                                           : QStringLiteral("<a href='report'>%1</a>").arg(words_(Text::ReportWord)));
  import_->setToolTip(tab_->summary);
  update_commands();
}

void MainWindow::build_panels() {
  layers_ = new LayersPanel(words_, [this](const std::vector<bool>& on) {
    view().drawing()->show_layers(on);
    view().drawing_changed();
    show_status();
  });
  picks_ = new PicksPanel(words_, [this](int entity) { view().show_entity(entity); });
  properties_ = new PropertiesPanel(words_);
  measures_ = new MeasuresPanel(words_);
  find_ = new FindPanel(words_);
  compare_ = new ComparePanel(words_, [this](const CFRect& box) { view().show_place(box); });
  add_panel(Text::LayersPanel, "layers", layers_, true);
  QDockWidget* const picks = add_panel(Text::PicksPanel, "picks", picks_, true);
  tabifyDockWidget(picks, add_panel(Text::PropertiesPanel, "properties", properties_, true));
  tabifyDockWidget(picks, add_panel(Text::MeasuresPanel, "measures", measures_, true));
  tabifyDockWidget(picks, add_panel(Text::FindPanel, "findPanel", find_, false));
  tabifyDockWidget(picks, add_panel(Text::ComparePanel, "comparePanel", compare_, false));
  picks->raise();
}

QDockWidget* MainWindow::add_panel(Text caption, const char* name, QWidget* content, bool open) {
  auto* const dock = new QDockWidget;
  dock->setObjectName(QLatin1String(name));
  dock->setWidget(content);
  words_.bind(caption, [dock](const QString& text) { dock->setWindowTitle(text); });
  addDockWidget(Qt::RightDockWidgetArea, dock);
  dock->setVisible(open);
  panelMenu_->addAction(dock->toggleViewAction());
  return dock;
}

void MainWindow::build_status_bar() {
  hint_ = new QLabel;
  hint_->setSizePolicy(QSizePolicy::Ignored, QSizePolicy::Preferred);  // the window may be narrower than it
  statusBar()->addWidget(hint_, 1);
  import_ = new QLabel;
  connect(import_, &QLabel::linkActivated, this, [this] { show_report(); });
  statusBar()->addPermanentWidget(import_);
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
    resizeDocks({static_cast<QDockWidget*>(layers_->parentWidget())}, {340}, Qt::Horizontal);
  set_dark(settings.value(kDarkKey, false).toBool());
  qvapps::FontFiles fonts = usualFonts_;
  if (settings.contains(kTextFontKey)) fonts.text = native(settings.value(kTextFontKey).toString());
  if (settings.contains(kBigFontKey)) fonts.big = native(settings.value(kBigFontKey).toString());
  if (draw_with(fonts)) fonts_ = fonts;
  setWindowTitle(QStringLiteral("qvview"));
  show_status();
}

void MainWindow::closeEvent(QCloseEvent* event) {
  for (const auto& tab : tabs_) remember_view(*tab);
  QSettings settings;
  settings.setValue(kGeometryKey, saveGeometry());
  settings.setValue(kPanelsKey, saveState());
  settings.setValue(kDarkKey, !view().is_light());
  event->accept();
}

// ---------------------------------------------------------------- files

/// Texts are measured when they are read: what has other fonts than those that are loaded is read once more.
template <class Load>
auto MainWindow::load_with_its_fonts(const Load& load) {
  // Events are handled while the drawing is read; none of them may load another in between.
  const QScopedValueRollback<bool> busy(loading_, true);
  auto loaded = load();
  const qvapps::FontFiles& fonts = fonts_of(loaded.fonts.files);
  if (loaded.drawing && fonts != loaded_ && draw_with(fonts)) loaded = load();
  return loaded;
}

Loaded MainWindow::load(const QString& path) {
  return load_with_its_fonts([&] { return load_drawing(this, words_, path, view().is_light(), usualFonts_); });
}

void MainWindow::tell_failure(const QString& path, Text reason) {
  draw_with(fonts_of(tab_->fonts));  // those of what was to be read may be loaded
  if (reason == Text::GivenUp) return statusBar()->showMessage(words_(Text::GivenUp), kMessageTime);
  QMessageBox::warning(this, words_(Text::OpenTitle), words_(Text::CannotOpen, path, words_(reason)));
}

void MainWindow::open(const QString& path) {
  if (loading_) return;
  const QString absolute = QFileInfo(path).absoluteFilePath();
  for (std::size_t i = 0; i < tabs_.size(); ++i)
    if (tabs_[i]->path == absolute && !tabs_[i]->compared) {
      book_->setCurrentIndex(static_cast<int>(i));
      return reload(*tabs_[i], true);
    }
  Loaded loaded = load(path);
  if (!loaded.drawing) {
    if (loaded.reason != Text::GivenUp) RecentFiles::remove(absolute);
    return tell_failure(path, loaded.reason);
  }
  Tab& tab = tab_for_opening();
  tab.path = absolute;
  take_report(tab, loaded.report, loaded.fonts);
  view().open(std::move(loaded.drawing));
  restore_view(tab);
  RecentFiles::add(absolute);
  tab.watch->watch(absolute);
  name_tab(tab);
  refresh_panels();
  show_status();
}

void MainWindow::take_report(Tab& tab, const qv::ImportReport& report, const ChosenFonts& fonts) const {
  tab.offset = QPointF(report.offset[0], report.offset[1]);
  tab.summary = QString::fromStdString(report.summary());
  tab.report = QString::fromStdString(report.text());
  tab.fonts = fonts.files;
  if (fonts.replaced.empty()) return;
  const QString told =
      words_(Text::FontsReplaced, QString::fromStdString(qvapps::replacement(fonts.replaced, fonts.files)));
  tab.summary += (tab.summary.isEmpty() ? QString() : QStringLiteral("; ")) + told;
  tab.report += told + QLatin1Char('\n');
}

void MainWindow::show_report() {
  QDialog dialog(this);
  dialog.setWindowTitle(words_(Text::ReportTitle));
  auto* const text = new QPlainTextEdit(tab_->report);
  text->setReadOnly(true);
  text->setLineWrapMode(QPlainTextEdit::NoWrap);
  (new QVBoxLayout(&dialog))->addWidget(text);
  dialog.resize(700, 400);
  dialog.exec();
}

namespace {
constexpr const char* kViewsKey = "views";
}  // namespace

void MainWindow::remember_view(const Tab& tab) const {
  const View& shown = tab.canvas->View();
  if (tab.path.isEmpty() || tab.compared || !shown.drawing()) return;
  QSettings settings;
  QVariantMap kept, views = settings.value(kViewsKey).toMap();
  for (const QString& path : RecentFiles::paths())
    if (views.contains(path)) kept.insert(path, views.value(path));
  kept.remove(tab.path);
  const CFRect r = shown.seen();
  const ViewAngles& angles = shown.CurrentAngles();
  if (!shown.shows_everything()) kept.insert(tab.path, QVariantList{r.x1, r.y1, r.x2, r.y2, angles.a, angles.b});
  settings.setValue(kViewsKey, kept);
}

void MainWindow::restore_view(Tab& tab) const {
  const QVariantList kept = QSettings().value(kViewsKey).toMap().value(tab.path).toList();
  if (kept.size() != 6) return;
  const auto number_at = [&](int i) { return kept[i].toFloat(); };
  tab.canvas->View().restore(CFRect(number_at(0), number_at(1), number_at(2), number_at(3)),
                             {number_at(4), number_at(5)});
}

// ---------------------------------------------------------------- comparing

void MainWindow::compare_with_older() {
  if (tab_->path.isEmpty() || tab_->compared) return;
  const QString older =
      QFileDialog::getOpenFileName(this, words_(Text::CompareTitle), QFileInfo(tab_->path).absolutePath(),
                                   file_filter(words_, Text::DrawingFiles, "*.dxf *.DXF"));
  if (!older.isEmpty()) compare(older, tab_->path);
}

void MainWindow::compare(const QString& before, const QString& after) {
  if (loading_) return;
  LoadedComparison loaded =
      load_with_its_fonts([&] { return load_comparison(this, words_, before, after, view().is_light(), usualFonts_); });
  if (!loaded.drawing) return tell_failure(loaded.failed, loaded.reason);
  Tab& tab = tab_->compared ? *tab_ : tab_for_opening();
  compare_->refresh(nullptr);
  tab.path = QFileInfo(after).absoluteFilePath();
  tab.older = QFileInfo(before).absoluteFilePath();
  tab.compared = std::move(loaded.compared);
  tab.fonts = loaded.fonts.files;
  const CFRect seen = view().seen();
  const bool again = view().drawing() != nullptr;
  view().open(std::move(loaded.drawing));
  if (again) view().restore(seen, {});
  name_tab(tab);
  refresh_panels();
  show_status();
  auto* const dock = static_cast<QDockWidget*>(compare_->parentWidget());
  dock->show();
  dock->raise();
}

void MainWindow::swap_sides() {
  if (tab_->compared) compare(QString(tab_->path), QString(tab_->older));
}

// ---------------------------------------------------------------- finding and keeping

void MainWindow::find() {
  auto* const dock = static_cast<QDockWidget*>(find_->parentWidget());
  dock->show();
  dock->raise();
  find_->begin();
}

void MainWindow::save_picks() {
  if (view().picks().empty()) return;
  const QFileInfo info(tab_->path);
  const QString path = QFileDialog::getSaveFileName(
      this, words_(Text::SavePicksTitle),
      info.absolutePath() + QLatin1Char('/') + info.completeBaseName() + QLatin1String("-part.dxf"),
      file_filter(words_, Text::DrawingFiles, "*.dxf"));
  if (path.isEmpty()) return;
  const std::unique_ptr<DXF> part = view().drawing()->part(view().picks());
  if (!part || !part->Write_MemDxf_To_File(native(path).c_str()))
    return static_cast<void>(QMessageBox::warning(this, words_(Text::SavePicksTitle), words_(Text::CannotWrite, path)));
  statusBar()->showMessage(words_(Text::PicksSaved, QString::number(view().picks().size()), QFileInfo(path).fileName()),
                           kMessageTime);
}

void MainWindow::choose_drawing() {
  const QString directory = QFileInfo(tab_->path).absolutePath();
  const QString path = QFileDialog::getOpenFileName(this, words_(Text::OpenTitle), directory,
                                                    file_filter(words_, Text::DrawingFiles, "*.dxf *.DXF"));
  if (!path.isEmpty()) open(path);
}

void MainWindow::reload(Tab& tab, bool asked) {
  if (tab.path.isEmpty() || loading_) return;
  if (tab.compared) return asked ? compare(QString(tab.older), QString(tab.path)) : void();
  Loaded loaded = load(tab.path);
  // What is still being written by another program is broken off: the next change brings the whole.
  const bool whole = loaded.drawing && (asked || loaded.report.complete);
  if (whole) {
    take_report(tab, loaded.report, loaded.fonts);
    loaded.drawing->set_background(tab.canvas->View().is_light());
    tab.canvas->View().reload(std::move(loaded.drawing));
    if (&tab == tab_) refresh_panels();
    show_status();
    statusBar()->showMessage(words_(Text::Reloaded), kMessageTime);
  } else if (asked && loaded.reason != Text::GivenUp) {
    tell_failure(tab.path, loaded.reason);
  } else {
    statusBar()->showMessage(words_(asked ? Text::GivenUp : Text::ChangedUnreadable), kMessageTime);
  }
  draw_with(fonts_of(tab_->fonts));  // another tab's may be loaded
}

void MainWindow::dragEnterEvent(QDragEnterEvent* event) {
  if (event->mimeData()->hasUrls() && event->mimeData()->urls().first().isLocalFile()) event->acceptProposedAction();
}

void MainWindow::dropEvent(QDropEvent* event) {
  event->acceptProposedAction();
  QStringList paths;
  for (const QUrl& url : event->mimeData()->urls())
    if (url.isLocalFile()) paths << url.toLocalFile();
  // The program that the files come from waits until this returns.
  QMetaObject::invokeMethod(
      this,
      [this, paths] {
        for (const QString& path : paths) open(path);
      },
      Qt::QueuedConnection);
}

CSize MainWindow::picture_size() const {
  const CRect client = canvas().ClientRect();
  return {client.Width(), client.Height()};
}

void MainWindow::export_picture() {
  const QFileInfo info(tab_->path);
  const QString suggested = info.absolutePath() + QLatin1Char('/') + info.completeBaseName() + QLatin1String(".png");
  const QString told = export_view(this, words_, view(), picture_size(), suggested);
  if (!told.isEmpty()) statusBar()->showMessage(told, kMessageTime);
}

void MainWindow::plot(bool toFile) {
  const QFileInfo info(tab_->path);
  const Plotted plotted{view(), info.fileName().toStdString(), plotSetup_,
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
  for (const auto& tab : tabs_) tab->canvas->SetLight(!dark);
  setPalette(dark ? dark_palette() : QPalette());
  paint_icons();
}

void MainWindow::turn(double a, double b) {
  view().set_angles(from_degrees(a, b));
}

void MainWindow::choose_angles() {
  if (const std::optional<ViewAngles> angles = ask_angles(this, words_, view().CurrentAngles()))
    view().set_angles(*angles);
}

/// The fonts that a drawing is drawn with: the user's choice goes before its own.
const qvapps::FontFiles& MainWindow::fonts_of(const qvapps::FontFiles& ofDrawing) const {
  return fonts_ == usualFonts_ ? ofDrawing : fonts_;
}

bool MainWindow::draw_with(const qvapps::FontFiles& fonts) {
  if (fonts == loaded_) return true;
  std::vector<std::unique_ptr<Drawing::Still>> still;
  for (const auto& tab : tabs_)
    if (Drawing* const drawing = tab->canvas->View().drawing())
      still.push_back(std::make_unique<Drawing::Still>(*drawing));
  if (!qvapps::change_fonts(fonts)) return false;
  loaded_ = fonts;
  for (const auto& tab : tabs_) tab->canvas->View().fonts_changed();
  return true;
}

bool MainWindow::use_fonts(const qvapps::FontFiles& fonts) {
  if (loading_) return true;  // a thread measures texts
  if (fonts != usualFonts_ && !draw_with(fonts)) return false;
  fonts_ = fonts;
  draw_with(fonts_of(tab_->fonts));
  QSettings settings;
  const auto keep = [&](const char* key, const std::string& path, const std::string& usual) {
    path == usual ? settings.remove(key) : settings.setValue(key, QFile::decodeName(path.c_str()));
  };
  keep(kTextFontKey, fonts.text, usualFonts_.text);
  keep(kBigFontKey, fonts.big, usualFonts_.big);
  statusBar()->showMessage(words_(Text::FontChanged), kMessageTime);
  return true;
}

void MainWindow::choose_font(std::string qvapps::FontFiles::*which) {
  const QString present = QFile::decodeName((loaded_.*which).c_str());
  const QString path = QFileDialog::getOpenFileName(this, words_(Text::ShapeFontTitle), present,
                                                    file_filter(words_, Text::ShapeFontFiles, "*.shx *.SHX"));
  if (path.isEmpty()) return;
  qvapps::FontFiles fonts = loaded_;
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
  for (const auto& tab : tabs_) {
    tab->canvas->SetLanguage(language);
    tab->canvas->SetEmptyText(words_(Text::NoDrawing));
  }
  translate_dialogs();
  QSettings().setValue(kLanguageKey, language == Language::Chinese ? "zh" : "en");
  refresh_panels();
  name_tab(*tab_);
  on_mode_changed();
  show_status();
  canvas().update();
}

// ---------------------------------------------------------------- what is told

void MainWindow::on_view_changed() {
  if (!tab_) return;
  show_status();
  update_commands();
}

void MainWindow::on_measures_changed() {
  if (!tab_) return;
  measures_->refresh(view().measuring());
  if (view().mode() == Mode::Measure) measures_->parentWidget()->raise();
  update_commands();
}

void MainWindow::on_picks_changed() {
  picks_->refresh();
  properties_->refresh(view());
  show_status();
}

void MainWindow::on_mode_changed() {
  static constexpr Text kHints[] = {Text::PickHint, Text::WindowHint, Text::HandHint, Text::MeasureHint};
  if (!tab_) return;
  QString hint = words_(kHints[static_cast<int>(view().mode())]);
  if (view().mode() == Mode::Measure && view().OneKind())
    hint = words_(static_cast<Text>(static_cast<int>(Text::CatchEnd) + static_cast<int>(*view().OneKind())));
  else if (view().mode() == Mode::Measure && !view().IsCatching())
    hint = words_(Text::CatchIsOff);
  hint_->setText(hint);
  canvas().ShowPointerShape();
  update_commands();
}

void MainWindow::show_pointer() {
  if (!tab_) return;
  const std::optional<CFPoint> at = view().drawing() ? view().pointer() : std::nullopt;
  pointer_->setText(
      at ? QStringLiteral("%1, %2").arg(number(at->x + tab_->offset.x()), number(at->y + tab_->offset.y()))
         : QString());
}

void MainWindow::show_status() {
  if (!tab_) return;
  const Drawing* const drawing = view().drawing();
  show_pointer();
  if (!drawing) return scale_->clear(), count_->clear();
  QString count = words_(Text::CountIs, QString::number(drawing->shown_count()), QString::number(drawing->count()));
  if (!view().picks().empty())
    count += QStringLiteral("   ") + words_(Text::PickedIs, QString::number(view().picks().size()));
  scale_->setText(words_(Text::ScaleIs, QString::number(view().CurrentView().GetScale(), 'g', 4)));
  count_->setText(count);
}

void MainWindow::show_picked() {
  if (const int entity = picks_->current(); entity >= 0) view().show_entity(entity);
}

void MainWindow::copy(const QString& text) {
  QApplication::clipboard()->setText(text);
  statusBar()->showMessage(words_(Text::Copied), kMessageTime);
}

void MainWindow::copy_measures() {
  copy(QString::fromStdString(view().measuring().words(words_.language())));
}

void MainWindow::change_layers(void (*change)(View&)) {
  change(view());
  layers_->refresh(view().drawing());
  show_status();
}

void MainWindow::copy_point() {
  if (const std::optional<CFPoint> at = view().pointer())
    copy(QStringLiteral("%1,%2").arg(at->x + tab_->offset.x(), 0, 'f', 3).arg(at->y + tab_->offset.y(), 0, 'f', 3));
}

}  // namespace qvview
