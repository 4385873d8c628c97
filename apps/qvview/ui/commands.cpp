#include <QtGui/QAction>
#include <QtGui/QActionGroup>
#include <QtWidgets/QMenu>
#include <QtWidgets/QMenuBar>
#include <QtWidgets/QMessageBox>
#include <QtWidgets/QToolBar>
#include <algorithm>

#include "qvtools/version.h"
#include "ui/icons.h"
#include "ui/main_window.h"
#include "ui/recent_files.h"

namespace qvview {

namespace {

// What is special about a command.
constexpr unsigned kSeparated = 1;         // a line before it
constexpr unsigned kChecked = 4;           // on or off
constexpr unsigned kNeedsDrawing = 8;      // of no use without one
constexpr unsigned kCanvasKeys = 16;       // keys that tables use for themselves
constexpr unsigned kNeedsComparison = 32;  // of use in a comparison alone

constexpr int kIconSize = 24;               // the raster that icons are drawn on, in Qt's units
constexpr double kIsometric = 35.26438968;  // degrees: all three axes look equally long

}  // namespace

const std::vector<MainWindow::Menu>& MainWindow::menus() {
  using W = MainWindow;
  static const std::vector<Menu> kMenus = {
      {Text::FileMenu,
       {
           {Text::Open, "Ctrl+O", [](W& w) { w.choose_drawing(); }, 0, "open"},
           {Text::Reload, "F5", [](W& w) { w.reload(*w.tab_, true); }, kNeedsDrawing, "reload"},
           {Text::CompareWith, "Ctrl+D", [](W& w) { w.compare_with_older(); }, kNeedsDrawing, "compare"},
           {Text::SwapSides, "Ctrl+Shift+D", [](W& w) { w.swap_sides(); }, kNeedsComparison},
           {Text::NextPlace, "N", [](W& w) { w.compare_->go(1); }, kNeedsComparison},
           {Text::PreviousPlace, "Shift+N", [](W& w) { w.compare_->go(-1); }, kNeedsComparison},
           {Text::ImportReport, "Ctrl+I", [](W& w) { w.show_report(); }, kNeedsDrawing | kSeparated},
           {Text::NextTab, "Ctrl+Tab",
            [](W& w) { w.book_->setCurrentIndex((w.book_->currentIndex() + 1) % w.book_->count()); }},
           {Text::CloseTab, "Ctrl+W", [](W& w) { w.close_tab(w.book_->currentIndex()); }, kNeedsDrawing},
           {Text::Export, "Ctrl+E", [](W& w) { w.export_picture(); }, kSeparated | kNeedsDrawing, "export"},
           {Text::Plot, "Ctrl+Shift+P", [](W& w) { w.plot(true); }, kNeedsDrawing},
           {Text::Print, "Ctrl+P", [](W& w) { w.plot(false); }, kNeedsDrawing},
           {Text::Quit, "Ctrl+Q", [](W& w) { w.close(); }, kSeparated},
       }},
      {Text::ViewMenu,
       {
           {Text::ShowAll, "Home F", [](W& w) { w.view().show_all(); }, kNeedsDrawing | kSeparated, "show-all"},
           {Text::ShowPrevious, "Backspace", [](W& w) { w.view().ShowPre(); }, 0, "show-previous"},
           {Text::WindowZoom, "Z", [](W& w) { w.view().set_mode(Mode::WindowZoom); }, kNeedsDrawing | kChecked,
            "window-zoom"},
           {Text::Enlarge, "+ =", [](W& w) { w.view().zoom_out(); }, kNeedsDrawing, "enlarge"},
           {Text::Reduce, "-", [](W& w) { w.view().zoom_in(); }, kNeedsDrawing, "reduce"},
           {Text::Hand, "H", [](W& w) { w.view().set_mode(Mode::Hand); }, kNeedsDrawing | kChecked, "hand"},
           {Text::DarkBackground, "B", [](W& w) { w.set_dark(w.view().is_light()); }, kSeparated | kChecked},
       }},
      {Text::PanMenu,
       {
           {Text::PanLeft, "Left", [](W& w) { w.view().pan_by(-0.1, 0); }, kNeedsDrawing | kCanvasKeys},
           {Text::PanRight, "Right", [](W& w) { w.view().pan_by(0.1, 0); }, kNeedsDrawing | kCanvasKeys},
           {Text::PanUp, "Up", [](W& w) { w.view().pan_by(0, 0.1); }, kNeedsDrawing | kCanvasKeys},
           {Text::PanDown, "Down", [](W& w) { w.view().pan_by(0, -0.1); }, kNeedsDrawing | kCanvasKeys},
       },
       true},
      {Text::DirectionMenu,
       {
           {Text::Plan, "1", [](W& w) { w.turn(0, 90); }, kNeedsDrawing},
           {Text::FrontView, "2", [](W& w) { w.turn(0, 0); }, kNeedsDrawing},
           {Text::BackView, "3", [](W& w) { w.turn(180, 0); }, kNeedsDrawing},
           {Text::LeftView, "4", [](W& w) { w.turn(-90, 0); }, kNeedsDrawing},
           {Text::RightView, "5", [](W& w) { w.turn(90, 0); }, kNeedsDrawing},
           {Text::SouthWestView, "6", [](W& w) { w.turn(-45, kIsometric); }, kNeedsDrawing | kSeparated},
           {Text::SouthEastView, "7", [](W& w) { w.turn(45, kIsometric); }, kNeedsDrawing},
           {Text::NorthEastView, "8", [](W& w) { w.turn(135, kIsometric); }, kNeedsDrawing},
           {Text::NorthWestView, "9", [](W& w) { w.turn(-135, kIsometric); }, kNeedsDrawing},
           {Text::OtherAngles, "0", [](W& w) { w.choose_angles(); }, kNeedsDrawing | kSeparated},
       },
       true},
      {Text::PickMenu,
       {
           {Text::PickEntities, "S", [](W& w) { w.view().set_mode(Mode::Pick); }, kNeedsDrawing | kChecked, "pick"},
           {Text::SelectAll, "Ctrl+A", [](W& w) { w.view().select_all(); }, kNeedsDrawing | kSeparated},
           {Text::ClearPicks, "Esc",
            [](W& w) {
              if (!w.view().cancel()) w.view().clear_picks();
            }},
           {Text::ShowPicked, "G", [](W& w) { w.show_picked(); }, kNeedsDrawing},
           {Text::FindTexts, "Ctrl+F", [](W& w) { w.find(); }, kNeedsDrawing | kSeparated, "find"},
           {Text::OnlyPickedLayers, "L", [](W& w) { w.change_layers([](View& v) { v.show_picked_layers(true); }); },
            kNeedsDrawing | kSeparated},
           {Text::HidePickedLayers, "Shift+L",
            [](W& w) { w.change_layers([](View& v) { v.show_picked_layers(false); }); }, kNeedsDrawing},
           {Text::ShowAllLayers, "Ctrl+L", [](W& w) { w.change_layers([](View& v) { v.show_all_layers(); }); },
            kNeedsDrawing},
           {Text::SavePicks, "Ctrl+S", [](W& w) { w.save_picks(); }, kNeedsDrawing | kSeparated},
           {Text::CopyPicks, "Ctrl+C", [](W& w) { w.copy(w.picks_->as_text()); }, kNeedsDrawing},
           {Text::CopyPoint, "Ctrl+Shift+C", [](W& w) { w.copy_point(); }, kNeedsDrawing},
       }},
      {Text::MeasureMenu,
       {
           {Text::MeasureDistance, "M I,P", [](W& w) { w.view().begin_measure(MeasureKind::Distance); },
            kNeedsDrawing | kChecked, "measure"},
           {Text::MeasureAngle, "I,A", [](W& w) { w.view().begin_measure(MeasureKind::Angle); },
            kNeedsDrawing | kChecked},
           {Text::MeasureRadius, "I,D", [](W& w) { w.view().begin_measure(MeasureKind::Radius); },
            kNeedsDrawing | kChecked},
           {Text::MeasureArea, "I,R", [](W& w) { w.view().begin_measure(MeasureKind::Area); },
            kNeedsDrawing | kChecked},
           {Text::MeasureObjectArea, "I,E", [](W& w) { w.view().begin_measure(MeasureKind::ObjectArea); },
            kNeedsDrawing | kChecked},
           {Text::MeasureCoordinates, "I,C", [](W& w) { w.view().begin_measure(MeasureKind::Coordinates); },
            kNeedsDrawing | kChecked},
           {Text::FinishMeasure, "", [](W& w) { w.view().finish_measure(); }, kNeedsDrawing | kSeparated},
           {Text::TakeBackPoint, "", [](W& w) { w.view().take_back_point(); }, kNeedsDrawing},
           {Text::CopyMeasures, "Ctrl+M", [](W& w) { w.copy_measures(); }, kNeedsDrawing | kSeparated},
           {Text::ClearMeasures, "Ctrl+Shift+M", [](W& w) { w.view().clear_measures(); }, kNeedsDrawing},
           {Text::Catching, "F3", [](W& w) { w.view().switch_catching(); }, kSeparated | kChecked},
           {Text::NextCaught, "", [](W& w) { w.view().next_caught(1); }, kNeedsDrawing},
       }},
      {Text::FontMenu,
       {
           {Text::TextFont, "", [](W& w) { w.choose_font(&qvapps::FontFiles::text); }},
           {Text::BigFont, "", [](W& w) { w.choose_font(&qvapps::FontFiles::big); }},
           {Text::UsualFonts, "", [](W& w) { w.use_fonts(w.usualFonts_); }, kSeparated},
       }},
      {Text::HelpMenu,
       {
           {Text::Handling, "F1",
            [](W& w) { QMessageBox::information(&w, w.words_(Text::Handling), w.words_(Text::HandlingText)); }},
           {Text::About, "",
            [](W& w) { QMessageBox::about(&w, w.words_(Text::About), w.words_(Text::AboutText, QVTOOLS_VERSION)); }},
       }},
  };
  return kMenus;
}

QAction* MainWindow::add_command(QMenu& menu, const Command& command) {
  if (command.options & kSeparated) menu.addSeparator();
  QAction* const action = menu.addAction(QString());
  words_.bind(command.caption, [action](const QString& text) { action->setText(text); });
  QList<QKeySequence> keys;
  for (const QString& key : QString::fromLatin1(command.keys).split(QLatin1Char(' '), Qt::SkipEmptyParts))
    keys << QKeySequence(key);
  action->setShortcuts(keys);
  action->setCheckable(command.options & kChecked);
  if (command.options & kCanvasKeys) {
    action->setShortcutContext(Qt::WidgetShortcut);
    canvasActions_.push_back(action);
  }
  if (command.options & kNeedsComparison) needComparison_.push_back(action);
  if (command.options & kNeedsDrawing) needDrawing_.push_back(action);
  connect(action, &QAction::triggered, this, [this, run = command.run] {
    run(*this);
    update_commands();
  });
  actions_[static_cast<std::size_t>(command.caption)] = action;
  return action;
}

void MainWindow::build_menus() {
  actions_.assign(static_cast<std::size_t>(Text::kCount), nullptr);
  auto* const bar = addToolBar(QString());
  bar->setObjectName(QStringLiteral("tools"));
  bar->setIconSize({kIconSize, kIconSize});
  words_.bind(Text::ToolBar, [bar](const QString& text) { bar->setWindowTitle(text); });
  QMenu* viewMenu = nullptr;
  for (const Menu& row : menus()) {
    QMenu* const menu = row.inView ? viewMenu->addMenu(QString()) : menuBar()->addMenu(QString());
    words_.bind(row.caption, [menu](const QString& text) { menu->setTitle(text); });
    const bool hasButtons = std::ranges::any_of(row.commands, [](const Command& c) { return c.icon != nullptr; });
    if (hasButtons && !buttons_.empty()) bar->addSeparator();
    for (const Command& command : row.commands) {
      QAction* const action = add_command(*menu, command);
      if (command.icon) {
        bar->addAction(action);
        buttons_.push_back({action, command.icon});
      }
      if (command.caption == Text::Open) add_recent_menu(*menu);
    }
    if (row.caption == Text::ViewMenu) viewMenu = menu;
    if (row.caption == Text::FontMenu) build_language_menu();
  }
  viewMenu->addSeparator();
  panelMenu_ = viewMenu;
}

void MainWindow::paint_icons() {
  const QColor ink = palette().color(QPalette::ButtonText);
  for (const auto& [action, name] : buttons_) action->setIcon(icon(name, ink));
}

void MainWindow::build_language_menu() {
  QMenu* const menu = menuBar()->addMenu(QString());
  words_.bind(Text::LanguageMenu, [menu](const QString& text) { menu->setTitle(text); });
  auto* const group = new QActionGroup(this);
  // Each language is called by its own name.
  const auto add = [&](const char* name, Language language) {
    QAction* const action = group->addAction(QString::fromUtf8(name));
    menu->addAction(action);
    action->setCheckable(true);
    action->setChecked(words_.language() == language);
    connect(action, &QAction::triggered, this, [this, language] { change_language(language); });
  };
  add("中文", Language::Chinese);
  add("English", Language::English);
}

void MainWindow::add_recent_menu(QMenu& menu) {
  QMenu* const recent = menu.addMenu(QString());
  words_.bind(Text::RecentMenu, [recent](const QString& text) { recent->setTitle(text); });
  connect(recent, &QMenu::aboutToShow, this, [this, recent] {
    recent->clear();
    for (const QString& path : RecentFiles::paths())
      recent->addAction(QString(path).replace(QLatin1String("&"), QLatin1String("&&")), this,
                        [this, path] { open(path); });
    recent->addSeparator();
    recent->addAction(words_(Text::ClearRecent), this, [] { RecentFiles::clear(); });
  });
}

void MainWindow::update_commands() {
  if (!tab_) return;
  const bool drawing = view().drawing() != nullptr;
  for (QAction* const action : needDrawing_) action->setEnabled(drawing);
  for (QAction* const action : needComparison_) action->setEnabled(tab_->compared != nullptr);
  action(Text::NextTab)->setEnabled(tabs_.size() > 1);
  action(Text::Catching)->setChecked(view().IsCatching());
  for (int kind = 0; kind < 6; ++kind)
    action(static_cast<Text>(static_cast<int>(Text::MeasureDistance) + kind))
        ->setChecked(view().mode() == Mode::Measure && static_cast<int>(view().measuring().kind()) == kind);
  action(Text::ShowPrevious)->setEnabled(view().CanShowPre() != 0);
  action(Text::PickEntities)->setChecked(view().mode() == Mode::Pick);
  action(Text::WindowZoom)->setChecked(view().mode() == Mode::WindowZoom);
  action(Text::Hand)->setChecked(view().mode() == Mode::Hand);
  action(Text::DarkBackground)->setChecked(!view().is_light());
}

}  // namespace qvview
