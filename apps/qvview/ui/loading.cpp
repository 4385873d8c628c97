#include "ui/loading.h"

#include <QtCore/QCoreApplication>
#include <QtCore/QEventLoop>
#include <QtCore/QFile>
#include <QtCore/QFileInfo>
#include <QtCore/QThread>
#include <QtCore/QTimer>
#include <QtWidgets/QProgressDialog>
#include <atomic>

#include "common/plotting.h"
#include "common/records.h"
#include "common/unreadable.h"
#include "qvtools/platform/qt/qt_text.h"
#include "qvtools/system/filesystem.h"
#include "ui/entity_text.h"

namespace qvview {

namespace {

Text reason_of(qvapps::Unreadable why) {
  static constexpr Text kReasons[] = {Text::Missing, Text::IsDirectory, Text::NotOpened, Text::NotOpened,
                                      Text::NoEntities};
  return kReasons[static_cast<int>(why)];
}

using Progress = std::function<bool(double share)>;

/// Runs work in a thread of its own; false when the user gave it up.
bool run_in_thread(QWidget* parent, const Words& words, const QString& what,
                   const std::function<void(const Progress&)>& work) {
  constexpr int kParts = 1000;
  constexpr int kPatience = 400, kTick = 40;  // milliseconds
  std::atomic<double> share = 0;
  std::atomic<bool> givenUp = false;
  QProgressDialog dialog(what, words(Text::GiveUp), 0, kParts, parent);
  dialog.setWindowTitle(words(Text::OpenTitle));
  dialog.setWindowModality(Qt::WindowModal);
  dialog.setMinimumDuration(kPatience);
  QEventLoop loop;
  const std::unique_ptr<QThread> thread(QThread::create([&] {
    work([&](double part) {
      share = part;
      return !givenUp;
    });
  }));
  QTimer tick;
  QObject::connect(&tick, &QTimer::timeout, &dialog, [&] {
    // One short of the end: the dialog stays until the drawing is there.
    dialog.setValue(std::min(static_cast<int>(share * kParts), kParts - 1));
    if (dialog.wasCanceled()) givenUp = true;
  });
  QObject::connect(thread.get(), &QThread::finished, &loop, &QEventLoop::quit);
  tick.start(kTick);
  thread->start();
  loop.exec();
  if (!thread->isFinished()) givenUp = true;  // the program is being left
  thread->wait();
  return !givenUp;
}

/// Reads a file's drawing; null, with the reason, when it cannot be read.
std::unique_ptr<DXF> read(const QString& path, qv::ImportReport& report, Text& reason, const Progress& progress) {
  const std::string name = native(path);
  qv::ImportOptions options;
  options.shapeFolders = qvapps::shape_folders(name, native(QCoreApplication::applicationDirPath()));
  reason = reason_of(qvapps::Unreadable::NoDrawing);
  auto document = std::make_unique<DXF>();
  document->New_MemDxf();
  if (qv::Import(name.c_str(), *document, options, report, progress)) return document;
  reason = reason_of(qvapps::diagnose(name));
  return nullptr;
}

}  // namespace

std::string native(const QString& path) {
  return QFile::encodeName(path).toStdString();
}

Loaded load_drawing(QWidget* parent, const Words& words, const QString& path, bool lightBackground,
                    const qvapps::FontFiles& usual) {
  const std::string name = native(path);
  if (qv::path_kind(name.c_str()) != qv::PathKind::File) return {nullptr, reason_of(qvapps::diagnose(name)), {}, {}};
  Loaded loaded;
  const bool done =
      run_in_thread(parent, words, words(Text::Reading, QFileInfo(path).fileName()), [&](const Progress& progress) {
        std::unique_ptr<DXF> document = read(path, loaded.report, loaded.reason, progress);
        if (!document) return;
        loaded.fonts.files = qvapps::fonts_for(*document, usual, loaded.fonts.replaced);
        loaded.drawing = std::make_unique<Drawing>(std::move(document), lightBackground, loaded.report.notes,
                                                   qvapps::unit_of(loaded.report));
        loaded.drawing->prepared({});
      });
  if (done) return loaded;
  return {};
}

namespace {

/// "TEXT "KL-1"  BEAM", or both of a change.
QString told(const qv::Difference& d, const std::vector<ACAD_ENTITY*>& before, const std::vector<ACAD_ENTITY*>& after,
             const Words& words) {
  const auto entity = [&](const std::vector<ACAD_ENTITY*>& side, int i) {
    ACAD_ENTITY& record = *side[static_cast<std::size_t>(i)];
    QString text = kind_of(record, words);
    if (record.GetType() == ACAD_TYPE_TEXT)
      text += QStringLiteral(" “%1”").arg(qv::qt_text(static_cast<ACAD_TEXT&>(record).m_szText));
    if (record.GetType() == ACAD_TYPE_INSERT)
      text += QStringLiteral(" “%1”").arg(qv::qt_text(static_cast<ACAD_INSERT&>(record).m_szBlock));
    return text + QStringLiteral("  ") + qv::qt_text(qvapps::layer_of(record));
  };
  if (d.kind == qv::ChangeKind::Changed)
    return entity(before, d.before) + QStringLiteral(" → ") + entity(after, d.after);
  return d.after >= 0 ? entity(after, d.after) : entity(before, d.before);
}

std::vector<ACAD_ENTITY*> entities_of(const DXF& dxf) {
  std::vector<ACAD_ENTITY*> all;
  qvapps::for_each<ACAD_ENTITY>(dxf.m_EntityList, [&](ACAD_ENTITY& entity) { all.push_back(&entity); });
  return all;
}

}  // namespace

LoadedComparison load_comparison(QWidget* parent, const Words& words, const QString& before, const QString& after,
                                 bool lightBackground, const qvapps::FontFiles& usual) {
  LoadedComparison loaded;
  const QString what = words(Text::ComparedWith, QFileInfo(before).fileName(), QFileInfo(after).fileName());
  const bool done = run_in_thread(parent, words, what, [&](const Progress& progress) {
    qv::ImportReport report;
    const auto half = [&](double from) {
      return [&progress, from](double share) { return progress(from + share * 0.4); };
    };
    const std::unique_ptr<DXF> olds = read(before, report, loaded.reason, half(0));
    if (!olds) return static_cast<void>(loaded.failed = before);
    const std::unique_ptr<DXF> news = read(after, report, loaded.reason, half(0.4));
    if (!news) return static_cast<void>(loaded.failed = after);
    loaded.fonts.files = qvapps::fonts_for(*news, usual, loaded.fonts.replaced);
    auto compared = std::make_unique<ComparedDrawings>();
    compared->found = qv::Compare(*olds, *news);
    std::unique_ptr<DXF> drawn = qv::DrawComparison(*olds, *news, compared->found);
    if (!drawn) return;
    const std::vector<ACAD_ENTITY*> a = entities_of(*olds), b = entities_of(*news);
    for (const qv::Difference& d : compared->found.differences) compared->told.push_back(told(d, a, b, words));
    loaded.drawing = std::make_unique<Drawing>(std::move(drawn), lightBackground);
    loaded.drawing->prepared({});
    loaded.compared = std::move(compared);
  });
  if (done) return loaded;
  return {};
}

}  // namespace qvview
