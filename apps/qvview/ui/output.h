#pragma once

#include <QtWidgets/QApplication>
#include <QtWidgets/QWidget>

#include "model/plot_setup.h"
#include "ui/words.h"

namespace qvview {

/// Asks where to, and writes what the view shows as a picture. Returns what to tell: the file that was written; empty
/// when the user gave up. Failures are told in a box.
QString export_view(QWidget* parent, const Words& words, View& view, CSize size, const QString& suggested);

/// Shows the pointer of what takes its time.
class WaitCursor {
 public:
  WaitCursor() { QApplication::setOverrideCursor(Qt::WaitCursor); }
  ~WaitCursor() { QApplication::restoreOverrideCursor(); }
  WaitCursor(const WaitCursor&) = delete;
  WaitCursor& operator=(const WaitCursor&) = delete;
};

/// A drawing to be plotted or printed.
struct Plotted {
  View& view;
  std::string name;   ///< the drawing's, UTF-8
  PlotSetup& setup;   ///< where the choices come from and go to
  QString suggested;  ///< the file
};

/// Asks where to, and plots to a file. Returns what to tell; empty when the user gave up or it failed, which is told in
/// a box.
QString plot_to_file(QWidget* parent, const Words& words, const Plotted& plotted);

/// Asks for printer, copies and pages, and prints in true scale. False when the user gave up or it failed, which is
/// told in a box.
bool print_pages(QWidget* parent, const Words& words, const Plotted& plotted);

}  // namespace qvview
