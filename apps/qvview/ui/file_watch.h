#pragma once

#include <QtCore/QDateTime>
#include <QtCore/QFileSystemWatcher>
#include <QtCore/QTimer>
#include <functional>

namespace qvview {

/// Tells when a file has another content. Programs replace files in many ways (writing in place, renaming another over
/// it), so its directory is watched as well, and what comes in quick succession is told once. A file that is
/// still being written is told when it has stayed as it is between two looks.
class FileWatch {
 public:
  explicit FileWatch(std::function<void()> on_change);
  /// Watches this file from now on instead of the one before.
  void watch(const QString& path);

 private:
  void look();

  std::function<void()> on_change_;
  QFileSystemWatcher watcher_;
  QTimer settled_;
  QString path_;
  QDateTime modified_;  // as it was told
  qint64 size_ = -1;
  QDateTime modifiedLast_;  // as it was seen
  qint64 sizeLast_ = -1;
};

}  // namespace qvview
