#include "ui/icons.h"

#include <QtCore/QFile>
#include <QtGui/QIconEngine>
#include <QtGui/QPainter>
#include <QtSvg/QSvgRenderer>

/// What a static library has of resources is not there before it is asked for.
static void load_icons() {
  Q_INIT_RESOURCE(icons);
}

namespace qvview {

namespace {

class LineIcon : public QIconEngine {
 public:
  explicit LineIcon(QByteArray svg) : svg_(std::move(svg)) {}

  void paint(QPainter* painter, const QRect& rect, QIcon::Mode mode, QIcon::State) override {
    constexpr double kFaint = 0.35;
    QSvgRenderer picture(svg_);
    painter->save();
    if (mode == QIcon::Disabled) painter->setOpacity(painter->opacity() * kFaint);
    picture.render(painter, rect);
    painter->restore();
  }
  QPixmap pixmap(const QSize& size, QIcon::Mode mode, QIcon::State state) override {
    QPixmap drawn(size);
    drawn.fill(Qt::transparent);
    QPainter painter(&drawn);
    paint(&painter, QRect(QPoint(0, 0), size), mode, state);
    return drawn;
  }
  QIconEngine* clone() const override { return new LineIcon(svg_); }

 private:
  QByteArray svg_;
};

}  // namespace

QIcon icon(const char* name, const QColor& ink) {
  load_icons();
  QFile file(QStringLiteral(":/icons/%1.svg").arg(QLatin1String(name)));
  if (!file.open(QIODevice::ReadOnly)) return {};
  return QIcon(new LineIcon(file.readAll().replace("#000", ink.name().toLatin1())));
}

}  // namespace qvview
