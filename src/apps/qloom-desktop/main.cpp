#include <QApplication>
#include <QCommandLineParser>
#include <QDir>
#include <QFileInfo>
#include <QLibraryInfo>
#include <QStandardPaths>
#include <QTranslator>
#include <cstdio>
#include <exception>

#include "apps/qloom-desktop/front_end/qt_text.h"
#include "apps/qloom-desktop/shell/main_window.h"

namespace {

// Of Qt's own windows, where the translations are installed.
void TranslateQt(QApplication& application, QTranslator& translator) {
  if (loom::CurrentShellLanguage() != loom::ShellLanguage::kChinese) return;
  if (translator.load(QStringLiteral("qtbase_zh_CN"), QLibraryInfo::path(QLibraryInfo::TranslationsPath)))
    application.installTranslator(&translator);
}

// The file that remembers the logs imported last.
loom::CString RecentLogsFile() {
  const QString folder = QStandardPaths::writableLocation(QStandardPaths::AppDataLocation);
  return QDir().mkpath(folder) ? loom::PathFromQt(folder + QStringLiteral("/recent-logs")) : loom::CString();
}

int RunDesktop(const QCommandLineParser& line) {
  const QString config = line.isSet(QStringLiteral("config"))
                             ? line.value(QStringLiteral("config"))
                             : QDir::cleanPath(QCoreApplication::applicationDirPath() + QStringLiteral("/../Config"));
  loom::QtFrontEnd front_end;
  loom::DesktopSession session(loom::PathFromQt(config), RecentLogsFile());
  QSettings settings;
  loom::MainWindow window(session, front_end, settings);
  window.show();
  std::vector<loom::CString> logs;
  for (const QString& file : line.positionalArguments()) {
    const loom::CString path = loom::PathFromQt(QFileInfo(file).absoluteFilePath());
    if (file.endsWith(QStringLiteral(".qlp")))
      window.OpenProject(path);
    else
      logs.push_back(path);
  }
  if (!logs.empty()) window.ImportFiles(loom::kImporterOutdoorLog, logs);
  return QApplication::exec();
}

}  // namespace

int main(int argc, char** argv) {
  QApplication application(argc, argv);
  QCoreApplication::setOrganizationName(QStringLiteral("qloom"));
  QCoreApplication::setApplicationName(QStringLiteral("qloom-desktop"));
  QCoreApplication::setApplicationVersion(QStringLiteral(QLOOM_VERSION));
  loom::SetShellLanguage(loom::LanguageOfUser());
  QTranslator translator;
  TranslateQt(application, translator);

  QCommandLineParser line;
  line.setApplicationDescription(QStringLiteral("Import and export of drive-test logs"));
  line.addHelpOption();
  line.addVersionOption();
  line.addOption({QStringLiteral("config"),
                  QStringLiteral("Folder of the catalogue (default: ../Config from the program's folder)"),
                  QStringLiteral("DIR")});
  line.addPositionalArgument(QStringLiteral("FILE"), QStringLiteral("A project (*.qlp), or outdoor logs to import"),
                             QStringLiteral("[FILE...]"));
  line.process(application);
  try {
    return RunDesktop(line);
  } catch (const std::exception& error) {
    std::fprintf(stderr, "qloom-desktop: %s\n", error.what());
    return 1;
  }
}
