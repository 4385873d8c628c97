#include "ui/colors.h"

#include <QtGui/QPainter>
#include <QtGui/QPixmap>

#include "common/display_form.h"
#include "qvtools.h"

namespace qvview {

QIcon swatch(int color) {
  constexpr int kSide = 14;
  static const qv::LinePatterns kNone;
  const qv::Palette& palette = *qvapps::appearance(kNone).palette;
  const auto number = static_cast<std::size_t>(color);
  const COLORREF c = color >= 0 && number < palette.size() ? palette[number] : ACAD_ENTITY::GetColor(color);
  QPixmap field(kSide, kSide);
  field.fill(QColor(static_cast<int>(c & 255), static_cast<int>(c >> 8 & 255), static_cast<int>(c >> 16 & 255)));
  QPainter painter(&field);
  painter.setPen(Qt::gray);
  painter.drawRect(0, 0, kSide - 1, kSide - 1);
  return field;
}

}  // namespace qvview
