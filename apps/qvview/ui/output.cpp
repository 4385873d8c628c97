#include "ui/output.h"

#include <QtCore/QFileInfo>
#include <QtPrintSupport/QPrintDialog>
#include <QtPrintSupport/QPrinter>
#include <QtWidgets/QFileDialog>
#include <QtWidgets/QMessageBox>

#include "common/picture_file.h"
#include "qvtools/platform/qt/qt_context.h"
#include "ui/loading.h"

namespace qvview {

QString export_view(QWidget* parent, const Words& words, View& view, CSize size, const QString& suggested) {
  const QString filters = QStringLiteral("PNG (*.png);;SVG (*.svg);;PDF (*.pdf)");
  QString filter;
  QString path = QFileDialog::getSaveFileName(parent, words(Text::ExportTitle), suggested, filters, &filter);
  if (path.isEmpty()) return {};
  if (QFileInfo(path).suffix().isEmpty()) path += QLatin1Char('.') + filter.left(3).toLower();
  const std::string name = native(path);
  const qvapps::PictureKind kind = qvapps::picture_kind(name);
  if (kind == qvapps::PictureKind::Unknown) {
    QMessageBox::warning(parent, words(Text::ExportTitle), words(Text::UnknownPicture));
    return {};
  }
  const CSize drawn = qvapps::drawn_size(kind, size);
  const COLORREF background = view.is_light() ? 0xFFFFFF : 0x000000;
  const bool everyLetter = kind != qvapps::PictureKind::Png;  // others can be looked at more closely
  if (qvapps::save_drawn(name, drawn, background, [&](CDC& dc) { view.draw_into(dc, drawn, everyLetter); }))
    return words(Text::Exported, path);
  QMessageBox::warning(parent, words(Text::ExportTitle), words(Text::CannotWrite, path));
  return {};
}

void print_view(QWidget* parent, const Words& words, View& view, CSize size) {
  QPrinter printer(QPrinter::HighResolution);
  printer.setPageOrientation(size.cx > size.cy ? QPageLayout::Landscape : QPageLayout::Portrait);
  QPrintDialog dialog(&printer, parent);
  if (dialog.exec() != QDialog::Accepted) return;
  QPainter painter;
  const QSize page = printer.pageLayout().paintRectPixels(printer.resolution()).size();
  const CSize sheet(page.width(), page.height());
  if (!painter.begin(&printer)) {
    QMessageBox::warning(parent, words(Text::Print), words(Text::CannotPrint));
    return;
  }
  const qvapps::PictureScreen screen(sheet);
  qv::QtContext context(painter, qv::QtContext::Target::Printer, sheet);
  view.draw_into(context, sheet, true);
}

}  // namespace qvview
