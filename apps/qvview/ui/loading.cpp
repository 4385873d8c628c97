#include "ui/loading.h"

#include <QtCore/QFile>
#include <QtCore/QFileInfo>
#include <QtWidgets/QProgressDialog>

#include "common/unreadable.h"
#include "qvtools/system/filesystem.h"

namespace qvview {

namespace {

Text reason_of(qvapps::Unreadable why) {
  static constexpr Text kReasons[] = {Text::Missing, Text::IsDirectory, Text::NotOpened, Text::NotOpened, Text::NoEntities};
  return kReasons[static_cast<int>(why)];
}

}  // namespace

std::string native(const QString& path) {
  return QFile::encodeName(path).toStdString();
}

Loaded load_drawing(QWidget* parent, const Words& words, const QString& path) {
  constexpr int kParts = 1000;
  constexpr int kPatience = 400;  // milliseconds
  const std::string name = native(path);
  if (qv::path_kind(name.c_str()) != qv::PathKind::File) return {nullptr, reason_of(qvapps::diagnose(name)), {}};
  const QString what = words(Text::Reading, QFileInfo(path).fileName());
  QProgressDialog dialog(what, words(Text::GiveUp), 0, kParts, parent);
  dialog.setWindowTitle(words(Text::OpenTitle));
  dialog.setWindowModality(Qt::WindowModal);
  dialog.setMinimumDuration(kPatience);
  const auto progress = [&](double share) {
    // One short of the end: the dialog stays until the drawing is there.
    dialog.setValue(std::min(static_cast<int>(share * kParts), kParts - 1));
    return !dialog.wasCanceled();
  };
  auto document = std::make_unique<DXF>();
  document->New_MemDxf();
  qv::ImportReport report;
  if (qv::Import(name.c_str(), *document, {}, report, progress))
    return {std::move(document), Text::Reading, std::move(report)};
  return {nullptr, dialog.wasCanceled() ? Text::GivenUp : reason_of(qvapps::diagnose(name)), {}};
}

}  // namespace qvview
