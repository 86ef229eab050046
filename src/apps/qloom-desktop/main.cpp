#include <QApplication>
#include <QCommandLineParser>
#include <QDir>
#include <QFileInfo>
#include <QLibraryInfo>
#include <QStandardPaths>
#include <QTimer>
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

// The folder of what is remembered for the user: the logs imported last, journals of untitled projects.
loom::CString StateFolder() {
  const QString folder = QStandardPaths::writableLocation(QStandardPaths::AppDataLocation);
  return QDir().mkpath(folder) ? loom::PathFromQt(folder) : loom::CString();
}

int RunDesktop(const QCommandLineParser& line) {
  const QString config = line.isSet(QStringLiteral("config"))
                             ? line.value(QStringLiteral("config"))
                             : QDir::cleanPath(QCoreApplication::applicationDirPath() + QStringLiteral("/../Config"));
  loom::QtFrontEnd front_end;
  loom::DesktopSession session(loom::PathFromQt(config), StateFolder());
  QSettings settings;
  loom::MainWindow window(session, front_end, settings);
  window.show();
  std::vector<loom::CString> files;
  for (const QString& file : line.positionalArguments())
    files.push_back(loom::PathFromQt(QFileInfo(file).absoluteFilePath()));
  // Once the window is there: what the work shows stands in front of it.
  QTimer::singleShot(0, &window, [&] {
    window.OfferLeftUntitled();
    if (!files.empty()) window.OpenFiles(loom::kImporterOutdoorLog, files);
  });
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
  line.addPositionalArgument(
      QStringLiteral("FILE"),
      QStringLiteral("A project, logs, recordings, texts or intermediate files: told by their content"),
      QStringLiteral("[FILE...]"));
  line.process(application);
  try {
    return RunDesktop(line);
  } catch (const std::exception& error) {
    std::fprintf(stderr, "qloom-desktop: %s\n", error.what());
    return 1;
  }
}
