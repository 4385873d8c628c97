#pragma once

#include <QtCore/QStringList>

namespace qvview {

/// The drawings opened last, the latest first; kept in the user's settings.
class RecentFiles {
 public:
  static QStringList paths();
  static void add(const QString& path);
  static void remove(const QString& path);
  static void clear();
};

}  // namespace qvview
