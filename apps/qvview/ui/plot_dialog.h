#pragma once

#include <QtCore/QTimer>
#include <QtWidgets/QComboBox>
#include <QtWidgets/QDialog>
#include <QtWidgets/QDoubleSpinBox>
#include <QtWidgets/QLabel>
#include <QtWidgets/QToolButton>
#include <functional>

#include "ui/output.h"
#include "ui/words.h"

class QCheckBox;
class QFormLayout;
class QPushButton;

namespace qvview {

/// Asks how a drawing is plotted or printed, beside a preview of each page.
class PlotDialog : public QDialog {
 public:
  /// What the accepting button does once the choices are made. False leaves the dialog open.
  using Finish = std::function<bool(QWidget* parent)>;

  /// A plot to a file asks for the resolution of PNG as well.
  PlotDialog(QWidget* parent, const Words& words, const Plotted& plotted, bool toFile, Finish finish);

 protected:
  void resizeEvent(QResizeEvent* event) override;
  void done(int result) override;

 private:
  QComboBox* add_choice(QFormLayout& form, Text label, std::initializer_list<Text> texts, int chosen);
  void add_choices(QFormLayout& form, bool toFile);
  QLayout* make_preview();
  void choose_pens();
  /// The choices as they stand.
  void take();
  void changed();
  void show_preview();
  void turn_page(int by);

  const Words& words_;
  const Plotted& plotted_;
  PlotSetup& setup_;
  Finish finish_;
  QComboBox* what_ = nullptr;
  QComboBox* paper_ = nullptr;
  QComboBox* orientation_ = nullptr;
  QComboBox* scale_ = nullptr;
  QComboBox* pens_ = nullptr;
  QComboBox* colors_ = nullptr;
  QDoubleSpinBox* margin_ = nullptr;
  QDoubleSpinBox* dpi_ = nullptr;  // null for printers
  QCheckBox* smooth_ = nullptr;
  QLabel* picture_ = nullptr;
  QLabel* told_ = nullptr;
  QLabel* pageOf_ = nullptr;
  QToolButton* before_ = nullptr;
  QToolButton* after_ = nullptr;
  QPushButton* accept_ = nullptr;
  QTimer wait_;  // until the user has paused
  int page_ = 0;
  int pages_ = 0;
};

}  // namespace qvview
