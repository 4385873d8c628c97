#include "ui/output.h"

#include <QtCore/QFileInfo>
#include <QtPrintSupport/QPrintDialog>
#include <QtPrintSupport/QPrinter>
#include <QtWidgets/QFileDialog>
#include <QtWidgets/QMessageBox>
#include <algorithm>
#include <cmath>
#include <numeric>
#include <vector>

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

QString plot_to_file(QWidget* parent, const Words& words, const Plotted& plotted) {
  const QString filters = QStringLiteral("PDF (*.pdf);;SVG (*.svg);;PNG (*.png)");
  QString filter;
  QString path = QFileDialog::getSaveFileName(parent, words(Text::WriteFileTitle), plotted.suggested, filters, &filter);
  if (path.isEmpty()) return {};
  if (QFileInfo(path).suffix().isEmpty()) path += QLatin1Char('.') + filter.left(3).toLower();
  std::string problem;
  {
    const WaitCursor waiting;
    problem = PlotJob(plotted.view, plotted.name, plotted.setup, words.language()).write(native(path));
  }
  if (problem.empty()) return words(Text::Exported, path);
  QMessageBox::warning(parent, words(Text::PlotTitle), QString::fromStdString(problem));
  return {};
}

namespace {

/// Full pages of a paper: what is drawn keeps its place, whatever margins the printer needs.
void set_paper(QPrinter& printer, const qv::PaperSize& paper) {
  const QPageSize size(QSizeF(paper.shorter(), paper.longer()), QPageSize::Millimeter, QString(),
                       QPageSize::FuzzyMatch);
  printer.setPageSize(size);
  printer.setPageOrientation(paper.width > paper.height ? QPageLayout::Landscape : QPageLayout::Portrait);
  printer.setFullPage(true);
}

/// The pages to print, from 0, copy by copy.
std::vector<int> order_of(const QPrinter& printer, int pages) {
  const bool some = printer.printRange() == QPrinter::PageRange && printer.fromPage() > 0;
  const int first = some ? std::min(printer.fromPage(), pages) - 1 : 0;
  const int last = some ? std::clamp(printer.toPage(), first + 1, pages) : pages;
  std::vector<int> copy(static_cast<std::size_t>(last - first));
  std::iota(copy.begin(), copy.end(), first);
  if (printer.pageOrder() == QPrinter::LastPageFirst) std::reverse(copy.begin(), copy.end());
  std::vector<int> all;
  for (int i = 0; i < (printer.supportsMultipleCopies() ? 1 : std::max(printer.copyCount(), 1)); ++i)
    all.insert(all.end(), copy.begin(), copy.end());
  return all;
}

/// Asks whether to go on where the printer's paper is smaller than the page.
bool is_paper_right(QWidget* parent, const Words& words, const QPrinter& printer, const qv::PaperSize& paper,
                    int page) {
  constexpr double kTolerance = 1.5;  // mm; formats in points are off by this
  const QSizeF there = printer.pageLayout().fullRect(QPageLayout::Millimeter).size();
  if (there.width() >= paper.width - kTolerance && there.height() >= paper.height - kTolerance) return true;
  const auto text = [](double width, double height) {
    return QStringLiteral("%1 x %2").arg(std::round(width)).arg(std::round(height));
  };
  const QString question =
      words(Text::PaperDiffers)
          .arg(QString::number(page + 1), text(paper.width, paper.height), text(there.width(), there.height()));
  return QMessageBox::question(parent, words(Text::PrintTitle), question) == QMessageBox::Yes;
}

}  // namespace

bool print_pages(QWidget* parent, const Words& words, const Plotted& plotted) {
  constexpr double kMmPerInch = 25.4;
  std::vector<qv::PaperSize> papers;
  {
    const PlotJob job(plotted.view, plotted.name, plotted.setup, words.language());
    for (int i = 0; i < job.pages(); ++i) papers.push_back(job.paper(i));
  }
  if (papers.empty()) return false;
  QPrinter printer(QPrinter::HighResolution);
  printer.setDocName(QString::fromStdString(plotted.name));
  set_paper(printer, papers[0]);
  QPrintDialog dialog(&printer, parent);
  dialog.setOption(QAbstractPrintDialog::PrintPageRange);
  dialog.setMinMax(1, static_cast<int>(papers.size()));
  if (dialog.exec() != QDialog::Accepted) return false;
  printer.setFullPage(true);
  const std::vector<int> order = order_of(printer, static_cast<int>(papers.size()));
  const auto paper_of = [&](int page) -> const qv::PaperSize& { return papers[static_cast<std::size_t>(page)]; };
  // The dialog's paper holds for pages of the first one's size.
  const auto choose_paper = [&](int page) {
    if (page != 0 && !(paper_of(page) == papers[0])) set_paper(printer, paper_of(page));
  };
  choose_paper(order[0]);
  if (!is_paper_right(parent, words, printer, paper_of(order[0]), order[0])) return false;

  const WaitCursor waiting;
  QPainter painter;
  bool good = painter.begin(&printer);
  PlotJob job(plotted.view, plotted.name, plotted.setup, words.language());
  for (std::size_t i = 0; good && i < order.size(); ++i) {
    if (i > 0) {
      choose_paper(order[i]);
      good = printer.newPage();
    }
    const QSize dots = printer.pageLayout().fullRectPixels(printer.resolution()).size();
    qv::QtContext context(painter, qv::QtContext::Target::Printer, {dots.width(), dots.height()});
    good = good && job.draw(order[i], context, printer.resolution() / kMmPerInch);
  }
  if (painter.isActive()) painter.end();
  if (!good) QMessageBox::warning(parent, words(Text::PrintTitle), words(Text::CannotPrint));
  return good;
}

}  // namespace qvview
