#pragma once

#include <QtCore/QTranslator>
#include <QtWidgets/QDockWidget>
#include <QtWidgets/QLabel>
#include <QtWidgets/QMainWindow>
#include <vector>

#include "common/fonts.h"
#include "model/plot_setup.h"
#include "ui/canvas.h"
#include "ui/file_watch.h"
#include "ui/layers_panel.h"
#include "ui/loading.h"
#include "ui/picks_panel.h"

namespace qvview {

/// The viewer's window: the drawing in the middle, layers and picks beside it, and every command.
class MainWindow : public QMainWindow, private View::Listener {
 public:
  MainWindow(Language language, const qvapps::FontFiles& usualFonts);
  ~MainWindow() override;

  /// Opens a drawing; one that does not load leaves the present one, and is told in a box.
  void open(const QString& path);

 protected:
  void dragEnterEvent(QDragEnterEvent* event) override;
  void dropEvent(QDropEvent* event) override;
  void closeEvent(QCloseEvent* event) override;

 private:
  /// What menus, keys and buttons offer.
  struct Command {
    Text caption;
    const char* keys;  // separated by blanks
    void (*run)(MainWindow&);
    unsigned options = 0;
  };
  struct Menu {
    Text caption;
    std::vector<Command> commands;
    bool inView = false;  // a part of the view menu
  };
  static const std::vector<Menu>& menus();

  void build_menus();
  QAction* add_command(QMenu& menu, const Command& command);
  void add_recent_menu(QMenu& menu);
  void build_language_menu();
  void build_panels();
  QDockWidget* add_panel(Text caption, const char* name, QWidget* content);
  void build_status_bar();
  void restore_settings();

  void on_view_changed() override;
  void on_picks_changed() override;
  void on_mode_changed() override;
  void show_pointer();
  void show_status();
  void update_commands();

  Loaded load(const QString& path);
  std::unique_ptr<Drawing> drawing_of(Loaded loaded) const;
  void take_report(const qv::ImportReport& report);
  void choose_drawing();
  void reload(bool asked);
  void export_picture();
  void plot(bool toFile);
  void set_dark(bool dark);
  void turn(double a, double b);
  void choose_angles();
  void choose_font(std::string qvapps::FontFiles::*which);
  bool use_fonts(const qvapps::FontFiles& fonts);
  void show_picked();
  void copy(const QString& text);
  void copy_point();
  void change_language(Language language);
  void translate_dialogs();
  CSize picture_size() const;
  QAction* action(Text caption) const { return actions_[static_cast<std::size_t>(caption)]; }

  Words words_;
  qvapps::FontFiles usualFonts_;
  qvapps::FontFiles fonts_;
  Canvas* canvas_;
  View& view_;
  LayersPanel* layers_ = nullptr;
  PicksPanel* picks_ = nullptr;
  QMenu* panelMenu_ = nullptr;
  QLabel* hint_ = nullptr;
  QLabel* import_ = nullptr;
  QLabel* pointer_ = nullptr;
  QLabel* scale_ = nullptr;
  QLabel* count_ = nullptr;
  std::vector<QAction*> actions_;  // by their captions
  std::vector<QAction*> needDrawing_;
  QString path_;
  QString report_;  // what was converted and left out; empty when nothing was
  PlotSetup plotSetup_;
  QPointF offset_;  // that the drawing was moved by, to be put back on coordinates that are shown
  bool loading_ = false;
  FileWatch watch_;
  QTranslator dialogs_;
};

}  // namespace qvview
