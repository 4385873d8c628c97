/// qvview: shows a drawing in a window.

#include <QtCore/QCommandLineParser>
#include <QtCore/QLocale>
#include <QtCore/QSettings>
#include <QtWidgets/QApplication>
#include <algorithm>
#include <memory>
#include <string_view>

#include "common/fonts.h"
#include "qvtools/platform/qt/qt_host.h"
#include "qvtools/version.h"
#include "ui/main_window.h"

namespace {

/// The language that was asked for, was chosen before, or is the system's.
qvview::Language language_of(const QString& asked) {
  const QString name = asked.isEmpty() ? QSettings().value("language", QLocale::system().name()).toString() : asked;
  return name.startsWith(QLatin1String("zh")) ? qvview::Language::Chinese : qvview::Language::English;
}

/// Whether the program is asked about itself and nothing else, which needs no display.
bool is_asked_about_itself(int argc, char** argv) {
  constexpr std::string_view kQuestions[] = {"-h", "--help", "--help-all", "-v", "--version"};
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
  std::unique_ptr<QCoreApplication> application;
  if (is_asked_about_itself(argc, argv))
    application = std::make_unique<QCoreApplication>(argc, argv);
  else
    application = std::make_unique<QApplication>(argc, argv);
  QApplication::setOrganizationName("qvtools");
  QApplication::setApplicationName("qvview");
  QApplication::setApplicationVersion(QVTOOLS_VERSION);
  QCommandLineParser parser;
  parser.setApplicationDescription("Shows a DXF drawing.");
  parser.addHelpOption();
  parser.addVersionOption();
  const QCommandLineOption language("language", "The language of the captions: zh or en.", "zh|en");
  parser.addOption(language);
  const QCommandLineOption compare("compare", "Shows what differs between two drawings, the older one first.");
  parser.addOption(compare);
  parser.addPositionalArgument("FILE.dxf", "The drawings to show, each in a tab.", "[FILE.dxf...]");
  parser.process(*application);

  if (parser.isSet(compare) && parser.positionalArguments().size() != 2) parser.showHelp(2);
  const InstalledHost host;
  const std::string directory = QApplication::applicationDirPath().toStdString();
  qvview::MainWindow window(language_of(parser.value(language)), qvapps::load_fonts("qvview", directory));
  window.show();
  if (!parser.positionalArguments().isEmpty()) {
    // The window is there first: a large drawing shows its progress over it.
    QMetaObject::invokeMethod(
        &window,
        [&] {
          const QStringList files = parser.positionalArguments();
          if (parser.isSet(compare) && files.size() == 2) return window.compare(files[0], files[1]);
          for (const QString& file : files) window.open(file);
        },
        Qt::QueuedConnection);
  }
  return QApplication::exec();
}
