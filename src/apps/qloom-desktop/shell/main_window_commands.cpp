#include <QDir>
#include <QGuiApplication>
#include <QMenu>
#include <QMenuBar>
#include <QMessageBox>
#include <QPushButton>
#include <QTabWidget>
#include <deque>

#include "apps/qloom-desktop/front_end/qt_text.h"
#include "apps/qloom-desktop/shell/main_window.h"
#include "apps/qloom-desktop/shell/project_tree.h"
#include "apps/qloom-desktop/shell/report_command.h"
#include "apps/qloom-desktop/shell/stream_tab.h"
#include "apps/report/report.h"
#include "host/recordings/make_log.h"
#include "host/sinks/export_layers.h"
#include "host/sinks/stream_layer.h"
#include "host/subjects/stream_subject.h"
#include "host/workbook/workbook_server.h"
#include "platform/encoding.h"
#include "platform/file.h"
#include "platform/path.h"
#include "platform/ui/file_dialog.h"
#include "platform/ui/message_box.h"
#include "platform/ui/template.h"

// The menus and what their commands do.
namespace loom {
namespace {

constexpr const char* kRecentProjectsKey = "recent_projects";
constexpr int kMostRecentProjects = 10;
constexpr int kMostRecentLogs = 20;

// A filter of the file dialogs.
CString Filter(const ShellText& text) {
  const QString name = Text(text);
  const qsizetype bracket = name.lastIndexOf(u'(');
  return FromQt(name + u'|' + name.mid(bracket + 1, name.size() - bracket - 2) + u'|');
}

}  // namespace

void MainWindow::MakeMenus() {
  using M = MainWindow;
  QMenu* const project =
      MakeMenu(shell::kMenuProject,
               {
                   {shell::kNewProject, "new_project", "Ctrl+N", &M::NewProject, nullptr},
                   {shell::kOpenProject, "open_project", "Ctrl+O", &M::AskForProject, nullptr},
                   {shell::kSaveProject, "save_project", "Ctrl+S", &M::SaveProjectCommand, nullptr},
                   {shell::kSaveProjectAs, "save_project_as", "Ctrl+Shift+S", &M::SaveProjectAsCommand, nullptr},
               });
  AddListMenu(
      *project, shell::kRecentProjects, "recent_projects",
      [this] { return settings_.value(QLatin1String(kRecentProjectsKey)).toStringList(); },
      [this](const QString& path) { OpenProject(PathFromQt(path)); });
  project->addSeparator();
  auto* const quit =
      project->addAction(Text(shell::kQuit), QKeySequence(QStringLiteral("Ctrl+Q")), this, [this] { Quit(); });
  quit->setObjectName(QStringLiteral("quit"));

  QMenu* const log = MakeMenu(
      shell::kMenuLog, {
                           {shell::kImportOutdoor, "import_outdoor", "Ctrl+I", &M::ImportOutdoor, nullptr},
                           {shell::kImportIndoor, "import_indoor", "", &M::ImportIndoor, nullptr},
                           {shell::kImportChinaMobile, "import_china_mobile", "", &M::ImportChinaMobile, nullptr},
                           {shell::kImportByName, "import_by_name", "", &M::ImportByName, nullptr},
                           {shell::kImportIntermediate, "import_intermediate", "", &M::ImportIntermediate, nullptr},
                           {shell::kImportRecordings, "import_recordings", "", &M::ImportRecordings, nullptr},
                       });
  log->addSeparator();
  AddListMenu(
      *log, shell::kOpenLog, "open_log", [this] { return UnloadedLogs(); },
      [this](const QString& path) { Run([&] { session_.manager().OpenLog(PathFromQt(path), false); }); });
  AddListMenu(
      *log, shell::kRecentLogs, "recent_logs", [this] { return RecentLogs(); },
      [this](const QString& path) { Run([&] { session_.manager().OpenRecentLog(PathFromQt(path)); }); });
  log->addSeparator();
  for (const Command& command : {Command{shell::kCombineLogs, "combine_logs", "", &M::CombineLogs, nullptr},
                                 Command{shell::kCutLog, "cut_log", "", &M::CutLog, nullptr}})
    AddCommand(*log, command);

  QMenu* const data = MakeMenu(
      shell::kMenuData, {
                            {shell::kImportText, "import_text", "", &M::ImportText, &M::HasTextImport},
                            {shell::kExportText, "export_text", "", &M::ExportText, &M::HasTextExport},
                            {shell::kExportExcel, "export_excel", "", &M::ExportExcel, &M::HasExcelExport},
                            {shell::kReport, "report", "", &M::WriteReport, &M::HasReports},
                            {shell::kExportLayer, "export_layer", "", &M::ExportLayer, nullptr},
                            {shell::kImportNetwork, "import_network", "", &M::ImportNetwork, &M::HasNetworkImport},
                        });
  QMenu* const texts = AddListMenu(
      *data, shell::kOpenText, "open_text", [this] { return ProjectTexts(); },
      [this](const QString& name) { Run([&] { session_.manager().OpenTxt(PathFromQt(name)); }); });
  optional_actions_.emplace_back(texts->menuAction(), &M::HasTextImport);

  QMenu* const view = createPopupMenu();
  view->setTitle(Text(shell::kMenuView));
  menuBar()->addMenu(view);
  MakeMenu(shell::kMenuHelp, {{shell::kAbout, "about", "", &M::ShowAbout, nullptr}});
}

QMenu* MainWindow::MakeMenu(const ShellText& title, std::initializer_list<Command> commands) {
  QMenu* const menu = menuBar()->addMenu(Text(title));
  for (const Command& command : commands) AddCommand(*menu, command);
  return menu;
}

void MainWindow::AddCommand(QMenu& menu, const Command& command) {
  QAction* const action = menu.addAction(Text(command.text));
  action->setObjectName(QLatin1String(command.name));
  action->setShortcut(QKeySequence(QLatin1String(command.keys)));
  connect(action, &QAction::triggered, this, [this, work = command.work] { Run([&] { (this->*work)(); }); });
  if (command.is_present) optional_actions_.emplace_back(action, command.is_present);
}

// Filled anew whenever it is opened.
QMenu* MainWindow::AddListMenu(QMenu& menu, const ShellText& title, const char* name,
                               std::function<QStringList()> entries, std::function<void(const QString&)> open) {
  QMenu* const list = menu.addMenu(Text(title));
  list->setObjectName(QLatin1String(name));
  list->addAction(Text(shell::kNone))->setEnabled(false);
  connect(list, &QMenu::aboutToShow, this, [this, list, entries = std::move(entries), open = std::move(open)] {
    list->clear();
    for (const QString& entry : entries()) {
      QString text = entry;
      list->addAction(text.replace(u'&', QStringLiteral("&&")), this, [open, entry] { open(entry); });
    }
    if (list->isEmpty()) list->addAction(Text(shell::kNone))->setEnabled(false);
  });
  return list;
}

QStringList MainWindow::UnloadedLogs() {
  QStringList loaded;
  for (const ILogfile* const logfile : session_.LoadedLogs()) loaded << PathToQt(logfile->GetName());
  QStringList paths;
  for (const CProjectLogfile& log : session_.project().Content().logs) {
    const QString path = PathToQt(log.GetLogFilePath());
    if (!loaded.contains(path)) paths << path;
  }
  return paths;
}

QStringList MainWindow::RecentLogs() const {
  QStringList paths;
  for (int at = 0; at < kMostRecentLogs && !g_systemConfig->GetRecentLogFile(at).IsEmpty(); ++at)
    paths << PathToQt(g_systemConfig->GetRecentLogFile(at));
  return paths;
}

QStringList MainWindow::ProjectTexts() {
  QStringList names;
  for (const CProjectTxtFile& text : session_.project().Content().text_files) names << PathToQt(text.GetTxtName());
  return names;
}

bool MainWindow::MayDropProject() {
  if (!session_.IsModified()) return true;
  QMessageBox box(QMessageBox::Question, windowTitle(), Text(shell::kAskSave), QMessageBox::NoButton, this);
  box.setObjectName(QStringLiteral("ask_save"));
  const QPushButton* const save = box.addButton(Text(shell::kSave), QMessageBox::AcceptRole);
  const QPushButton* const discard = box.addButton(Text(shell::kDiscard), QMessageBox::DestructiveRole);
  box.addButton(Text(shell::kCancel), QMessageBox::RejectRole);
  box.setWindowTitle(QLatin1String(kApplicationCaption));
  box.exec();
  if (box.clickedButton() == save) return SaveProject();
  return box.clickedButton() == discard;
}

void MainWindow::NewProject() {
  if (!MayDropProject()) return;
  CloseTables();
  session_.NewProject();
}

void MainWindow::AskForProject() {
  if (!MayDropProject()) return;
  CFileDialog dialog(true, "qlp", CString(), CFileDialog::kFileMustExist, Filter(shell::kProjectFiles));
  dialog.SetTitle(FromQt(Text(shell::kOpenProject).remove(u'&').remove(u'.')));
  if (dialog.DoModal() == kIdOk) UseProject(dialog.GetPathName());
}

void MainWindow::OpenProject(const CString& path) {
  Run([&] {
    if (MayDropProject()) UseProject(path);
  });
}

// A file that is no project does not cost the open one.
void MainWindow::UseProject(const CString& path) {
  session_.CheckProject(path);
  CloseTables();
  session_.OpenProject(path);
  RememberProject(path);
  session_.ReopenLogs();
}

void MainWindow::RememberProject(const CString& path) {
  QStringList paths = settings_.value(QLatin1String(kRecentProjectsKey)).toStringList();
  paths.removeAll(PathToQt(path));
  paths.prepend(PathToQt(path));
  settings_.setValue(QLatin1String(kRecentProjectsKey), QStringList(paths.mid(0, kMostRecentProjects)));
}

// A project that is open for reading can be saved under another name.
bool MainWindow::SaveProject() {
  if (session_.project().IsTemporary() || !session_.project().ReadOnlyReason().empty()) return SaveProjectAs();
  session_.Save();
  return true;
}

bool MainWindow::SaveProjectAs() {
  CFileDialog dialog(false, "qlp", session_.project().FilePath(), CFileDialog::kOverwritePrompt,
                     Filter(shell::kProjectFiles));
  if (dialog.DoModal() != kIdOk) return false;
  session_.SaveAs(dialog.GetPathName());
  RememberProject(dialog.GetPathName());
  return true;
}

void MainWindow::ImportByName() {
  CFileDialog dialog(true, CString(), CString(), CFileDialog::kFileMustExist, Filter(shell::kLogFiles));
  if (dialog.DoModal() == kIdOk) session_.manager().ImportLogByName(dialog.GetPathName());
}

void MainWindow::ImportIntermediate() {
  CFileDialog dialog(true, CString(), CString(), CFileDialog::kFileMustExist | CFileDialog::kAllowMultiSelect,
                     Filter(shell::kAllFiles));
  if (dialog.DoModal() != kIdOk) return;
  std::vector<CString> paths = dialog.GetPathList();
  session_.manager().OpenImmediateLogFile(paths);
}

void MainWindow::ImportRecordings() {
  CFileDialog dialog(true, CString(), CString(), CFileDialog::kFileMustExist | CFileDialog::kAllowMultiSelect,
                     Filter(shell::kRecordings) + Filter(shell::kAllFiles));
  if (dialog.DoModal() == kIdOk) ImportNow(kImporterOutdoorLog, dialog.GetPathList());
}

void MainWindow::ImportNow(ImporterTypeEnum node, std::vector<CString> paths) {
  ReplaceRecordings(paths);
  front_end_.OfferFiles(std::move(paths));
  session_.manager().ImportLog(node);
  front_end_.WithdrawFiles();
}

void MainWindow::ReplaceRecordings(std::vector<CString>& paths) {
  const CString folder =
      session_.project().IsTemporary() ? PathFromQt(QDir::tempPath()) : FolderOf(session_.project().FilePath());
  for (CString& path : paths) {
    if (!IsRecording(path)) continue;
    RecordingOptions options;
    options.files = {path};
    options.out = FreeLogPath(path, folder);
    if (const CString track = TrackBeside(path); !track.IsEmpty()) options.track = track;
    const RecordingReport report = MakeLogFromRecordings(options);
    if (!report.is_written) {
      const std::string& refusal = report.files.front().refusal;
      throw Error(GbkPathToNative(path) + ": " +
                  (refusal.empty() ? Text(shell::kNothingOfRecording).toStdString() : refusal));
    }
    Tell(Text(shell::kMadeOfRecording).arg(PathToQt(path), PathToQt(options.out)));
    path = options.out;
  }
}

std::vector<IDataStream*> MainWindow::StreamsToExport() const {
  std::vector<IDataStream*> streams = tree_->SelectedStreams();
  if (streams.empty() && tables_->currentWidget())
    streams.push_back(&static_cast<StreamTab*>(tables_->currentWidget())->stream());
  return streams;
}

void MainWindow::ExportExcel() {
  const std::vector<IDataStream*> streams = StreamsToExport();
  if (streams.empty()) {
    ShowMessageBox(FromQt(Text(shell::kSelectStreams)), MessageIcon::kInformation);
    return;
  }
  CFileDialog dialog(false, "xlsx", CString(), CFileDialog::kOverwritePrompt, Filter(shell::kWorkbooks));
  if (dialog.DoModal() != kIdOk) return;
  std::deque<StreamSubject> rows;
  std::vector<CString> sheet_names;
  std::vector<std::vector<CString>> columns;
  for (IDataStream* const stream : streams) {
    rows.emplace_back(*stream);
    sheet_names.push_back(stream->GetName());
    columns.push_back(ColumnsOfStream(*stream));
  }
  std::vector<ISubject*> subjects;
  for (StreamSubject& subject : rows) subjects.push_back(&subject);
  WorkbookServer& server = session_.host().workbooks();
  const std::size_t saved = server.SavedPaths().size();
  server.SaveNextAs(dialog.GetPathName());
  server.OpenSaved(QGuiApplication::platformName() != QLatin1String("offscreen"));
  session_.manager().GetExporterByType(kExporterExcel)->Export(CString(), subjects, sheet_names, columns);
  if (server.SavedPaths().size() > saved) Tell(PathToQt(server.SavedPaths().back()));
}

bool MainWindow::HasReports() { return CanWriteReports(); }

void MainWindow::WriteReport() {
  const std::vector<IDataStream*> streams = StreamsToExport();
  if (streams.empty()) {
    ShowMessageBox(FromQt(Text(shell::kSelectStreams)), MessageIcon::kInformation);
    return;
  }
  CFileDialog dialog(false, "html", CString(), CFileDialog::kOverwritePrompt, Filter(shell::kReports));
  if (dialog.DoModal() != kIdOk) return;
  WriteReportOf(session_, streams, dialog.GetPathName());
  Tell(PathToQt(dialog.GetPathName()));
}

// The dialog has asked for the file that was named; files of single layers have names of their own.
void MainWindow::ExportLayer() {
  const std::vector<IDataStream*> streams = StreamsToExport();
  if (streams.empty()) {
    ShowMessageBox(FromQt(Text(shell::kSelectStreams)), MessageIcon::kInformation);
    return;
  }
  CFileDialog dialog(false, "gpkg", CString(), CFileDialog::kOverwritePrompt, Filter(shell::kLayers));
  if (dialog.DoModal() != kIdOk) return;
  std::vector<std::unique_ptr<ILayerSource>> layers;
  std::vector<std::string> names;
  for (IDataStream* const stream : streams) {
    layers.push_back(std::make_unique<StreamLayer>(*stream, stream->GetName(), std::span<const CString>()));
    names.push_back(layers.back()->Schema().name);
  }
  for (const CString& file : FilesOfLayers(dialog.GetPathName(), names)) {
    if (file == dialog.GetPathName() || !FileExists(file)) continue;
    const CString question = FromQt(Text(shell::kReplaceFile).arg(PathToQt(file)));
    if (ShowMessageBox(question, MessageIcon::kQuestion, MessageButtons::kYesNo) != MessageAnswer::kYes) return;
  }
  for (const ExportedFile& file : ExportLayers(layers, {.out = dialog.GetPathName()})) Tell(PathToQt(file.path));
}

void MainWindow::ImportNetwork() {
  ProtocolTypeEnum protocol = kProtocolTdScdma;
  session_.manager().ImportNetInfo(protocol);
}

void MainWindow::ShowAbout() {
  ShowMessageBox(FromQt(Text(shell::kAboutText).arg(QStringLiteral(QLOOM_VERSION))), MessageIcon::kInformation);
}

}  // namespace loom
