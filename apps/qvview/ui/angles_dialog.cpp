#include "ui/angles_dialog.h"

#include <QtWidgets/QDialog>
#include <QtWidgets/QDialogButtonBox>
#include <QtWidgets/QDoubleSpinBox>
#include <QtWidgets/QFormLayout>
#include <numbers>

namespace qvview {

namespace {

constexpr double kDegree = std::numbers::pi / 180;

QDoubleSpinBox* add_field(QFormLayout& form, const QString& label, double limit, float radians) {
  auto* const field = new QDoubleSpinBox;
  field->setRange(-limit, limit);
  field->setDecimals(2);
  field->setSingleStep(15);
  field->setValue(radians / kDegree);
  form.addRow(label, field);
  return field;
}

}  // namespace

ViewAngles from_degrees(double a, double b) {
  // Plan is known by its exact angle.
  const float upright = HALF_PI_F;
  return {static_cast<float>(a * kDegree), b == 90 ? upright : static_cast<float>(b * kDegree)};
}

std::optional<ViewAngles> ask_angles(QWidget* parent, const Words& words, const ViewAngles& present) {
  QDialog dialog(parent);
  dialog.setWindowTitle(words(Text::AnglesTitle));
  QFormLayout form(&dialog);
  const QDoubleSpinBox* const a = add_field(form, words(Text::AngleA), 360, present.a);
  const QDoubleSpinBox* const b = add_field(form, words(Text::AngleB), 90, present.b);
  QDialogButtonBox buttons(QDialogButtonBox::Ok | QDialogButtonBox::Cancel);
  form.addRow(&buttons);
  QObject::connect(&buttons, &QDialogButtonBox::accepted, &dialog, &QDialog::accept);
  QObject::connect(&buttons, &QDialogButtonBox::rejected, &dialog, &QDialog::reject);
  if (dialog.exec() != QDialog::Accepted) return std::nullopt;
  return from_degrees(a->value(), b->value());
}

}  // namespace qvview
