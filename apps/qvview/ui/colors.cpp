#include "ui/colors.h"

#include <QtGui/QPainter>
#include <QtGui/QPixmap>

#include "qvtools.h"

namespace qvview {

QIcon swatch(int color) {
  constexpr int kSide = 14;
  const COLORREF c = ACAD_ENTITY::GetColor(color);
  QPixmap field(kSide, kSide);
  field.fill(QColor(static_cast<int>(c & 255), static_cast<int>(c >> 8 & 255), static_cast<int>(c >> 16 & 255)));
  QPainter painter(&field);
  painter.setPen(Qt::gray);
  painter.drawRect(0, 0, kSide - 1, kSide - 1);
  return field;
}

}  // namespace qvview
