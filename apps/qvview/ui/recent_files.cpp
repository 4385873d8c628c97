#include "ui/recent_files.h"

#include <QtCore/QSettings>

namespace qvview {

namespace {
constexpr const char* kKey = "recent";
constexpr int kMost = 9;
}  // namespace

QStringList RecentFiles::paths() {
  return QSettings().value(kKey).toStringList();
}

void RecentFiles::add(const QString& path) {
  QStringList list = paths();
  list.removeAll(path);
  list.prepend(path);
  QSettings().setValue(kKey, list.mid(0, kMost));
}

void RecentFiles::remove(const QString& path) {
  QStringList list = paths();
  list.removeAll(path);
  QSettings().setValue(kKey, list);
}

void RecentFiles::clear() {
  QSettings().remove(kKey);
}

}  // namespace qvview
