#pragma once

/// The viewer as a widget, to be put into a program's own windows: it shows a drawing, zooms and pans by wheel, middle
/// button and keys, picks entities, and measures at points that it catches.

#include <QtCore/QElapsedTimer>
#include <QtGui/QPainter>
#include <memory>

#include "qvtools/import/import.h"
#include "qvtools/platform/qt/qt_window.h"
#include "qvtools/widgets/viewer/view.h"

namespace qv {

/// A widget that shows a drawing.
class DrawingView : public QtWindow, private viewer::View::Listener {
  Q_OBJECT

 public:
  /// An empty view.
  explicit DrawingView(QWidget* parent = nullptr);
  ~DrawingView() override;

  /// Shows a drawing file of any form. False when it cannot be read: what was shown stays.
  bool Open(const QString& path);
  /// Shows a drawing of the program's, which becomes the view's, with what its import noted. Its records are given the
  /// look in which they are shown.
  void SetDocument(std::unique_ptr<DXF> document, DrawingNotes notes = {});
  /// What became of the file that `Open` read.
  const ImportReport& Report() const { return report_; }

  /// The layers by their names, whether they are on, and switching one. An unknown name is off and stays so.
  QStringList Layers() const;
  bool IsLayerOn(const QString& name) const;
  void SetLayerOn(const QString& name, bool on);

  /// The picked entities by their numbers in drawing order, from 0, and an entity of the drawing.
  const std::vector<int>& Picks() const { return view_.picks(); }
  ACAD_ENTITY& Entity(int number) const { return view_.drawing()->entity(number); }
  int EntityCount() const { return view_.drawing() ? view_.drawing()->count() : 0; }

  /// Fits the whole drawing into the view.
  void ShowEverything() { view_.show_all(); }
  /// Brings an entity to the middle of the view.
  void ShowEntity(int number) { view_.show_entity(number); }
  /// Black on white, or white on black.
  void SetLight(bool light);
  /// The language of the words beside the marks and of `Measurements`; English at first.
  void SetLanguage(viewer::Language language);

  /// Measures from now on: each click gives a point, the right button or Enter ends a chain. Escape returns to picking.
  void Measure(viewer::MeasureKind kind) { view_.begin_measure(kind); }
  /// What is written where no drawing is shown; nothing at first.
  void SetEmptyText(const QString& text);
  /// What was measured, a line each.
  QString Measurements() const;
  /// Takes all measurements away.
  void ClearMeasurements() { view_.clear_measures(); }

  /// The view itself, for programs that do more than this.
  viewer::View& View() { return view_; }
  const viewer::View& View() const { return view_; }
  /// Gives the pointer the shape of what it does.
  void ShowPointerShape();

 signals:
  /// The view shows another part, or from elsewhere.
  void ViewChanged();
  /// Other entities are picked.
  void PicksChanged();
  /// What the left button does has changed.
  void ModeChanged();
  /// A point was given or a measurement made.
  void MeasuresChanged();
  /// The pointer has moved or left.
  void PointerMoved();

 protected:
  void OnPaint(CDC&) override { view_.show(Bitmap(), Background()); }
  void OnMessage(unsigned int message) override { view_.on_message(message); }
  /// What the widget does with Qt's events; overrides call these.
  bool event(QEvent* event) override;
  void keyPressEvent(QKeyEvent* event) override;
  void paintEvent(QPaintEvent* event) override;
  void resizeEvent(QResizeEvent* event) override;
  void mousePressEvent(QMouseEvent* event) override;
  void mouseReleaseEvent(QMouseEvent* event) override;
  void mouseDoubleClickEvent(QMouseEvent* event) override;
  void mouseMoveEvent(QMouseEvent* event) override;
  void leaveEvent(QEvent* event) override;
  void wheelEvent(QWheelEvent* event) override;

 private:
  void on_view_changed() override { emit ViewChanged(); }
  void on_picks_changed() override { emit PicksChanged(); }
  void on_mode_changed() override { emit ModeChanged(); }
  void on_measures_changed() override { emit MeasuresChanged(); }
  QString words(viewer::Text text) const;
  void pointer_changed();
  void paint_overlay(QPainter& painter);
  void paint_label(QPainter& painter, const QPointF& at, const QString& text, bool below);

  viewer::Language language_ = viewer::Language::English;
  viewer::View view_;
  ImportReport report_;
  QString emptyText_;
  QElapsedTimer sinceWheel_;
  bool letterBefore_ = false;  // "s" was typed, the letter of a kind of points follows
};

}  // namespace qv
