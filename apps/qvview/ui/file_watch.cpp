#include "ui/file_watch.h"

#include <QtCore/QFileInfo>

namespace qvview {

FileWatch::FileWatch(std::function<void()> on_change) : on_change_(std::move(on_change)) {
  constexpr int kSettling = 300;  // milliseconds
  settled_.setSingleShot(true);
  settled_.setInterval(kSettling);
  const auto wait = [this] { settled_.start(); };
  QObject::connect(&watcher_, &QFileSystemWatcher::fileChanged, &settled_, wait);
  QObject::connect(&watcher_, &QFileSystemWatcher::directoryChanged, &settled_, wait);
  QObject::connect(&settled_, &QTimer::timeout, &settled_, [this] { look(); });
}

void FileWatch::watch(const QString& path) {
  if (!watcher_.files().isEmpty()) watcher_.removePaths(watcher_.files());
  if (!watcher_.directories().isEmpty()) watcher_.removePaths(watcher_.directories());
  const QFileInfo info(path);
  path_ = info.absoluteFilePath();
  modified_ = info.lastModified();
  size_ = info.size();
  watcher_.addPaths({path_, info.absolutePath()});
}

void FileWatch::look() {
  const QFileInfo info(path_);
  if (!info.exists()) return;
  // A file that was renamed over the old one is a new file to the watcher.
  if (!watcher_.files().contains(path_)) watcher_.addPath(path_);
  if (info.lastModified() == modified_ && info.size() == size_) return;
  if (info.lastModified() != modifiedLast_ || info.size() != sizeLast_) {
    modifiedLast_ = info.lastModified();
    sizeLast_ = info.size();
    return settled_.start();
  }
  modified_ = info.lastModified();
  size_ = info.size();
  on_change_();
}

}  // namespace qvview
