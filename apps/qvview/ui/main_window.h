#pragma once

#include <QtCore/QTranslator>
#include <QtWidgets/QDockWidget>
#include <QtWidgets/QLabel>
#include <QtWidgets/QMainWindow>
#include <QtWidgets/QTabWidget>
#include <vector>

#include "common/fonts.h"
#include "model/plot_setup.h"
#include "ui/canvas.h"
#include "ui/compare_panel.h"
#include "ui/file_watch.h"
#include "ui/find_panel.h"
#include "ui/layers_panel.h"
#include "ui/loading.h"
#include "ui/measures_panel.h"
#include "ui/picks_panel.h"
#include "ui/properties_panel.h"

namespace qvview {

/// The viewer's window: drawings in tabs in the middle, layers, picks and results beside them, and every command.
class MainWindow : public QMainWindow {
 public:
  MainWindow(Language language, const qvapps::FontFiles& usualFonts);
  ~MainWindow() override;

  /// Opens a drawing in a tab of its own, or shows the tab that has it; one that does not load leaves everything as it
  /// was, and is told in a box.
  void open(const QString& path);
  /// Shows what differs between an older drawing and a newer one, in a tab of its own.
  void compare(const QString& before, const QString& after);
  /// The canvas of the tab in front.
  Canvas& canvas() const { return *tab_->canvas; }

 protected:
  void dragEnterEvent(QDragEnterEvent* event) override;
  void dropEvent(QDropEvent* event) override;
  void closeEvent(QCloseEvent* event) override;

 private:
  /// One drawing, or none yet.
  struct Tab {
    Canvas* canvas;
    QString path;
    QString summary;          // what was converted and left out; empty when nothing was
    QString report;           // all of it
    qvapps::FontFiles fonts;  // those that it names, where they are there
    QPointF offset;           // that the drawing was moved by, to be put back on coordinates that are shown
    std::unique_ptr<FileWatch> watch;
    std::unique_ptr<ComparedDrawings> compared;
    QString older;  // of a comparison
  };
  /// What menus, keys and buttons offer.
  struct Command {
    Text caption;
    const char* keys;  // separated by blanks
    void (*run)(MainWindow&);
    unsigned options = 0;
    const char* icon = nullptr;  // of its button in the tool bar
  };
  struct Menu {
    Text caption;
    std::vector<Command> commands;
    bool inView = false;  // a part of the view menu
  };
  static const std::vector<Menu>& menus();

  void build_menus();
  QAction* add_command(QMenu& menu, const Command& command);
  void paint_icons();
  void add_recent_menu(QMenu& menu);
  void build_language_menu();
  void build_panels();
  QDockWidget* add_panel(Text caption, const char* name, QWidget* content, bool open);
  void build_status_bar();
  void restore_settings();

  void on_view_changed();
  void on_picks_changed();
  void on_mode_changed();
  void on_measures_changed();
  void show_pointer();
  void show_status();
  void update_commands();

  View& view() const { return tab_->canvas->View(); }
  Tab& add_tab();
  void show_tab(int index);
  void close_tab(int index);
  Tab& tab_for_opening();
  void name_tab(const Tab& tab);
  void remember_view(const Tab& tab) const;
  void restore_view(Tab& tab) const;
  void tell_failure(const QString& path, Text reason);
  Loaded load(const QString& path);
  template <class Load>
  auto load_with_its_fonts(const Load& load);
  void take_report(Tab& tab, const qv::ImportReport& report, const ChosenFonts& fonts) const;
  void show_report();
  void compare_with_older();
  void swap_sides();
  void save_picks();
  void find();
  void refresh_panels();
  void choose_drawing();
  void reload(Tab& tab, bool asked);
  void export_picture();
  void plot(bool toFile);
  void set_dark(bool dark);
  void turn(double a, double b);
  void choose_angles();
  void choose_font(std::string qvapps::FontFiles::*which);
  bool use_fonts(const qvapps::FontFiles& fonts);
  const qvapps::FontFiles& fonts_of(const qvapps::FontFiles& ofDrawing) const;
  bool draw_with(const qvapps::FontFiles& fonts);
  void show_picked();
  void copy(const QString& text);
  void copy_point();
  void copy_measures();
  void change_layers(void (*change)(View&));
  void change_language(Language language);
  void translate_dialogs();
  CSize picture_size() const;
  QAction* action(Text caption) const { return actions_[static_cast<std::size_t>(caption)]; }

  Words words_;
  qvapps::FontFiles usualFonts_;
  qvapps::FontFiles fonts_;   // that the user chose; the usual ones leave it to the drawings
  qvapps::FontFiles loaded_;  // that texts are drawn in now
  QTabWidget* book_;
  std::vector<std::unique_ptr<Tab>> tabs_;  // in the order of the book's
  Tab* tab_ = nullptr;                      // the one in front
  LayersPanel* layers_ = nullptr;
  PicksPanel* picks_ = nullptr;
  PropertiesPanel* properties_ = nullptr;
  MeasuresPanel* measures_ = nullptr;
  FindPanel* find_ = nullptr;
  ComparePanel* compare_ = nullptr;
  QMenu* panelMenu_ = nullptr;
  QLabel* hint_ = nullptr;
  QLabel* import_ = nullptr;
  QLabel* pointer_ = nullptr;
  QLabel* scale_ = nullptr;
  QLabel* count_ = nullptr;
  std::vector<QAction*> actions_;                          // by their captions
  std::vector<std::pair<QAction*, const char*>> buttons_;  // with their icons
  std::vector<QAction*> needDrawing_;
  std::vector<QAction*> needComparison_;
  std::vector<QAction*> canvasActions_;
  PlotSetup plotSetup_;
  bool loading_ = false;
  QTranslator dialogs_;
};

}  // namespace qvview
