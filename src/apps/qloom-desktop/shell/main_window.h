#pragma once

#include <QMainWindow>
#include <QSettings>
#include <functional>
#include <vector>

#include "apps/qloom-desktop/front_end/qt_front_end.h"
#include "apps/qloom-desktop/shell/desktop_session.h"
#include "apps/qloom-desktop/shell/shell_texts.h"

class QPlainTextEdit;
class QTabWidget;

namespace loom {

class ProjectTree;

// The shell around the facade: menus for its commands, the project, the rows of its streams, and what was told.
class MainWindow final : public QMainWindow {
 public:
  MainWindow(DesktopSession& session, QtFrontEnd& front_end, QSettings& settings);
  ~MainWindow() override;

  // Throws nothing: what goes wrong is shown.
  void OpenProject(const CString& path);
  void ImportFiles(ImporterTypeEnum node, std::vector<CString> paths);

 private:
  struct Command {
    ShellText text;
    const char* name;  // of its action
    const char* keys;
    void (MainWindow::*work)();
    bool (MainWindow::*is_present)();  // null: always
  };
  void MakeMenus();
  void AddCommand(QMenu& menu, const Command& command);
  QMenu* MakeMenu(const ShellText& title, std::initializer_list<Command> commands);
  QMenu* AddListMenu(QMenu& menu, const ShellText& title, const char* name, std::function<QStringList()> entries,
                     std::function<void(const QString&)> open);
  void MakeDocks();

  // Runs a command: what it throws is shown, and so is what it changed.
  void Run(const std::function<void()>& work);
  void ShowProject();
  void ShowNotes();
  void Tell(const QString& line);
  void ImportNow(ImporterTypeEnum node, std::vector<CString> paths);
  // Recordings of handsets become logs, beside the project or among the temporary files.
  void ReplaceRecordings(std::vector<CString>& paths);
  void TellOutcome(const LogOutcome& outcome);

  void OpenStream(IDataStream& stream);
  void CloseTables();
  void CloseTablesOfDroppedStreams();
  void RemoveLog(const CString& path);

  void NewProject();
  void AskForProject();
  void UseProject(const CString& path);
  bool SaveProject();
  bool SaveProjectAs();
  bool MayDropProject();  // asks whether to save what was changed
  void RememberProject(const CString& path);
  void SaveProjectCommand() { SaveProject(); }
  void SaveProjectAsCommand() { SaveProjectAs(); }
  void Quit() { close(); }
  void ImportOutdoor() { session_.manager().ImportLog(kImporterOutdoorLog); }
  void ImportIndoor() { session_.manager().ImportLog(kImporterIndoorLog); }
  void ImportChinaMobile() { session_.manager().ImportLog(kImporterChinaMobileLog); }
  void ImportByName();
  void ImportIntermediate();
  void ImportRecordings();
  void CombineLogs() { session_.manager().CombineLogFile(); }
  void CutLog() { session_.manager().PartitionLogfile(); }
  void ImportText() { session_.manager().ImportTxt(); }
  void ExportText() { session_.manager().ExportTxt(); }
  void ExportExcel();
  void ExportLayer();
  void WriteReport();
  std::vector<IDataStream*> StreamsToExport() const;  // those selected in the project, else the one in front
  void ImportNetwork();
  void ShowAbout();
  bool HasTextImport() { return session_.HasTextImport(); }
  bool HasTextExport() { return session_.HasTextExport(); }
  bool HasExcelExport() { return session_.HasExcelExport(); }
  bool HasReports();
  bool HasNetworkImport() { return session_.HasNetworkImport(); }
  QStringList UnloadedLogs();
  QStringList RecentLogs() const;
  QStringList ProjectTexts();

  void closeEvent(QCloseEvent* event) override;
  void dragEnterEvent(QDragEnterEvent* event) override;
  void dropEvent(QDropEvent* event) override;

  DesktopSession& session_;
  QtFrontEnd& front_end_;
  QSettings& settings_;
  QTabWidget* tables_;
  ProjectTree* tree_;
  QPlainTextEdit* messages_;
  std::vector<std::pair<QAction*, bool (MainWindow::*)()>> optional_actions_;
  int running_ = 0;
};

}  // namespace loom
