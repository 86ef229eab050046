#pragma once

#include <QMainWindow>
#include <QSettings>
#include <functional>
#include <vector>

#include "apps/qloom-desktop/front_end/qt_front_end.h"
#include "apps/qloom-desktop/shell/desktop_session.h"
#include "apps/qloom-desktop/shell/shell_texts.h"
#include "apps/text_files/finder_dialog.h"

class QPlainTextEdit;
class QTabWidget;

namespace loom {

class NetworkView;
class ProjectTree;
class StreamTab;

// The shell around the facade: menus for its commands, the project, the rows of its streams, and what was told.
class MainWindow final : public QMainWindow {
 public:
  MainWindow(DesktopSession& session, QtFrontEnd& front_end, QSettings& settings);
  ~MainWindow() override;

  // Throw nothing: what goes wrong is shown.
  void OpenProject(const CString& path);
  // Files of any kind, which their content tells; logs go under the node.
  void OpenFiles(ImporterTypeEnum node, std::vector<CString> paths);
  // Asks about projects that a program which did not end in order has left behind.
  void OfferLeftUntitled();

 private:
  struct Command {
    ShellText text;
    const char* name;  // of its action
    const char* keys;
    void (MainWindow::*work)();
    bool (MainWindow::*is_present)();  // null: always
  };
  void MakeMenus();
  void MakeProjectMenu();
  void MakeLogMenu();
  void MakeDataMenu();
  void MakeViewMenu();
  void AddCommand(QMenu& menu, const Command& command);
  void AddCommands(QMenu& menu, std::initializer_list<Command> commands);
  QMenu* MakeMenu(const ShellText& title, std::initializer_list<Command> commands);
  QMenu* AddListMenu(QMenu& menu, const ShellText& title, const char* name, std::function<QStringList()> entries,
                     std::function<void(const QString&)> open);
  void MakeDocks();
  QSize FirstSize() const;

  // Runs a command: what it throws is shown, and so is what it changed.
  void Run(const std::function<void()>& work);
  void ShowProject();
  void ShowNotes();
  void KeepJournal();
  void Tell(const QString& line);
  void TellOutcome(const LogOutcome& outcome);

  void OpenFilesNow(ImporterTypeEnum node, const std::vector<CString>& paths);
  void ImportLogs(ImporterTypeEnum node, std::vector<CString> paths);
  void ImportIntermediateFiles(std::vector<CString> paths);
  void ImportTextFiles(const std::vector<CString>& paths);
  TextImportListener TextImportTeller();
  // The log that a recording becomes, beside the project or among the temporary files.
  CString LogOfRecording(const CString& path);

  void OpenStream(IDataStream& stream);
  StreamTab* StreamTabAt(int at) const;  // null for another view
  void CloseTabs();
  void CloseTablesOf(const std::vector<CString>& entries);
  void CloseTablesOfDroppedStreams();
  void CloseTab();
  void TurnTab(int step);
  void NextTab() { TurnTab(1); }
  void PreviousTab() { TurnTab(-1); }
  void ShowNetwork();
  void ReloadNetwork();

  void NewProject();
  void AskForProject();
  void UseProject(const CString& path);
  void ReopenEverything();
  CString JournalToRestore(const CString& path);
  bool MayRestore(const QString& question);
  bool SaveProject();
  bool SaveProjectAs();
  bool MayDropProject();  // asks whether to save what was changed
  void RememberProject(const CString& path);
  void SaveProjectCommand() { SaveProject(); }
  void SaveProjectAsCommand() { SaveProjectAs(); }
  void RemoveEntries(const std::vector<CString>& entries);
  void RemoveSelected();
  void PutBack() { session_.PutBack(); }
  bool CanPutBack() { return session_.CanPutBack(); }
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
  void RecogniseText();
  void ExportText() { session_.manager().ExportTxt(); }
  void ExportExcel();
  void ExportIntermediate();
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
  QStringList RecentProjects() const;
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
