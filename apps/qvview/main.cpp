/// qvview: shows a drawing in a window.

#include <QtCore/QFile>
#include <QtCore/QLocale>
#include <QtCore/QSettings>
#include <QtGui/QIcon>
#include <QtWidgets/QApplication>
#include <algorithm>
#include <memory>
#include <string_view>

#include "common/fonts.h"
#include "qvtools/platform/qt/qt_host.h"
#include "qvtools/version.h"
#include "qvview/command_line.h"
#include "ui/main_window.h"

namespace {

/// The language that was asked for, was chosen before, or is the system's.
qvview::Language language_of(const std::string& asked) {
  const QString name = asked.empty() ? QSettings().value("language", QLocale::system().name()).toString()
                                     : QString::fromStdString(asked);
  return name.startsWith(QLatin1String("zh")) ? qvview::Language::Chinese : qvview::Language::English;
}

/// Whether the program is asked about itself and nothing else, which needs no display.
bool is_asked_about_itself(int argc, char** argv) {
  constexpr std::string_view kQuestions[] = {"-h", "--help", "-v", "--version"};
  return argc == 2 && std::ranges::find(kQuestions, argv[1]) != std::end(kQuestions);
}

/// The host in force while it lives.
class InstalledHost {
 public:
  InstalledHost() { qv::SetHost(&host_); }
  ~InstalledHost() { qv::SetHost(nullptr); }
  InstalledHost(const InstalledHost&) = delete;
  InstalledHost& operator=(const InstalledHost&) = delete;

 private:
  qv::QtHost host_;
};

}  // namespace

int main(int argc, char** argv) {
  // The application takes its own options out of the words.
  std::unique_ptr<QApplication> application;
  if (!is_asked_about_itself(argc, argv)) application = std::make_unique<QApplication>(argc, argv);
  qvview::Call call;
  if (const auto ended = qvview::parse_command_line(argc, argv, call)) return *ended;

  QApplication::setOrganizationName("qvtools");
  QApplication::setApplicationName("qvview");
  QApplication::setApplicationVersion(QVTOOLS_VERSION);
  QApplication::setWindowIcon(QIcon::fromTheme("qvview"));
  const InstalledHost host;
  const std::string directory = QApplication::applicationDirPath().toStdString();
  qvview::MainWindow window(language_of(call.language), qvapps::load_fonts("qvview", directory));
  window.show();
  if (!call.files.empty()) {
    // The window is there first: a large drawing shows its progress over it.
    QMetaObject::invokeMethod(
        &window,
        [&] {
          QStringList files;
          for (const std::string& file : call.files) files.append(QFile::decodeName(file.c_str()));
          if (call.compare) return window.compare(files[0], files[1]);
          for (const QString& file : files) window.open(file);
        },
        Qt::QueuedConnection);
  }
  return QApplication::exec();
}
