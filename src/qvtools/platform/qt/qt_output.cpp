#include "qvtools/platform/qt/qt_output.h"

#include <QtCore/QBuffer>
#include <QtCore/QFile>
#include <QtGui/QImage>
#include <QtGui/QPdfWriter>
#include <QtSvg/QSvgGenerator>

#include "qvtools/platform/qt/qt_context.h"
#include "qvtools/system/saved_file.h"

namespace qv {

namespace {

bool save(const QByteArray& bytes, const std::string& path) {
  return save_bytes(path.c_str(), bytes.constData(), static_cast<std::size_t>(bytes.size()));
}

/// What a painter on `device` draws.
bool paint(QPaintDevice& device, QtContext::Target target, CSize size, const std::function<void(CDC&)>& draw) {
  QPainter painter;
  if (!painter.begin(&device)) return false;
  {
    QtContext context(painter, target, size);
    draw(context);
  }
  return painter.end();
}

}  // namespace

bool save_png_with_qt(const BitmapContext& bitmap, const std::string& path) {
  const QImage image(reinterpret_cast<const uchar*>(bitmap.Pixels()), bitmap.Width(), bitmap.Height(),
                     static_cast<qsizetype>(bitmap.Width()) * 4, QImage::Format_RGB32);
  QByteArray bytes;
  QBuffer buffer(&bytes);
  return buffer.open(QIODevice::WriteOnly) && image.save(&buffer, "PNG") && save(bytes, path);
}

bool save_svg(const std::string& path, CSize size, const std::function<void(CDC&)>& draw) {
  QByteArray bytes;
  QBuffer buffer(&bytes);
  QSvgGenerator generator;
  generator.setOutputDevice(&buffer);
  generator.setSize(QSize(size.cx, size.cy));
  generator.setViewBox(QRect(0, 0, size.cx, size.cy));
  return paint(generator, QtContext::Target::Vector, size, draw) && save(bytes, path);
}

bool save_pdf(const std::string& path, CSize size, int dotsPerInch, const std::function<void(CDC&)>& draw) {
  QByteArray bytes;
  QBuffer buffer(&bytes);
  if (!buffer.open(QIODevice::WriteOnly)) return false;
  {
    QPdfWriter writer(&buffer);
    writer.setResolution(dotsPerInch);
    const QSizeF points(size.cx * 72.0 / dotsPerInch, size.cy * 72.0 / dotsPerInch);
    writer.setPageSize(QPageSize(points, QPageSize::Point));
    writer.setPageMargins(QMarginsF(0, 0, 0, 0));
    if (!paint(writer, QtContext::Target::Printer, size, draw)) return false;
  }
  return save(bytes, path);
}

}  // namespace qv
