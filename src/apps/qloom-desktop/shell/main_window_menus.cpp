#include <QMenu>
#include <QMenuBar>

#include "apps/qloom-desktop/front_end/qt_text.h"
#include "apps/qloom-desktop/shell/main_window.h"

// The menus.
namespace loom {
namespace {

constexpr int kMostRecentLogs = 20;

}  // namespace

void MainWindow::MakeMenus() {
  MakeProjectMenu();
  MakeLogMenu();
  MakeDataMenu();
  MakeViewMenu();
  MakeMenu(shell::kMenuHelp, {{shell::kAbout, "about", "", &MainWindow::ShowAbout, nullptr}});
}

// clang-format off
void MainWindow::MakeProjectMenu() {
  using M = MainWindow;
  QMenu* const project = MakeMenu(shell::kMenuProject, {
      {shell::kNewProject,    "new_project",     "Ctrl+N",       &M::NewProject,           nullptr},
      {shell::kOpenProject,   "open_project",    "Ctrl+O",       &M::AskForProject,        nullptr},
      {shell::kSaveProject,   "save_project",    "Ctrl+S",       &M::SaveProjectCommand,   nullptr},
      {shell::kSaveProjectAs, "save_project_as", "Ctrl+Shift+S", &M::SaveProjectAsCommand, nullptr},
  });
  AddListMenu(
      *project, shell::kRecentProjects, "recent_projects", [this] { return RecentProjects(); },
      [this](const QString& path) { OpenProject(PathFromQt(path)); });
  project->addSeparator();
  AddCommands(*project, {
      {shell::kRemoveEntries, "remove_entries",  "",             &M::RemoveSelected,       nullptr},
      {shell::kPutBack,       "put_back",        "Ctrl+Z",       &M::PutBack,              &M::CanPutBack},
  });
  project->addSeparator();
  // Not a command that runs: it is there while another waits for its windows.
  auto* const quit =
      project->addAction(Text(shell::kQuit), QKeySequence(QStringLiteral("Ctrl+Q")), this, [this] { Quit(); });
  quit->setObjectName(QStringLiteral("quit"));
}

void MainWindow::MakeLogMenu() {
  using M = MainWindow;
  QMenu* const log = MakeMenu(shell::kMenuLog, {
      {shell::kImportOutdoor,      "import_outdoor",      "Ctrl+I", &M::ImportOutdoor,      nullptr},
      {shell::kImportIndoor,       "import_indoor",       "",       &M::ImportIndoor,       nullptr},
      {shell::kImportChinaMobile,  "import_china_mobile", "",       &M::ImportChinaMobile,  nullptr},
      {shell::kImportByName,       "import_by_name",      "",       &M::ImportByName,       nullptr},
      {shell::kImportIntermediate, "import_intermediate", "",       &M::ImportIntermediate, nullptr},
      {shell::kImportRecordings,   "import_recordings",   "",       &M::ImportRecordings,   nullptr},
  });
  log->addSeparator();
  AddListMenu(
      *log, shell::kOpenLog, "open_log", [this] { return UnloadedLogs(); },
      [this](const QString& path) { Run([&] { session_.OpenLog(PathFromQt(path)); }); });
  AddListMenu(
      *log, shell::kRecentLogs, "recent_logs", [this] { return RecentLogs(); },
      [this](const QString& path) { Run([&] { session_.manager().OpenRecentLog(PathFromQt(path)); }); });
  log->addSeparator();
  AddCommands(*log, {
      {shell::kCombineLogs, "combine_logs", "", &M::CombineLogs, nullptr},
      {shell::kCutLog,      "cut_log",      "", &M::CutLog,      nullptr},
  });
}

void MainWindow::MakeDataMenu() {
  using M = MainWindow;
  QMenu* const data = MakeMenu(shell::kMenuData, {
      {shell::kImportText,         "import_text",         "", &M::ImportText,         &M::HasTextImport},
      {shell::kRecogniseText,      "recognise_text",      "", &M::RecogniseText,      &M::HasTextImport},
      {shell::kExportText,         "export_text",         "", &M::ExportText,         &M::HasTextExport},
      {shell::kExportExcel,        "export_excel",        "", &M::ExportExcel,        &M::HasExcelExport},
      {shell::kExportIntermediate, "export_intermediate", "", &M::ExportIntermediate, nullptr},
      {shell::kReport,             "report",              "", &M::WriteReport,        &M::HasReports},
      {shell::kExportLayer,        "export_layer",        "", &M::ExportLayer,        nullptr},
      {shell::kImportNetwork,      "import_network",      "", &M::ImportNetwork,      &M::HasNetworkImport},
  });
  QMenu* const texts = AddListMenu(
      *data, shell::kOpenText, "open_text", [this] { return ProjectTexts(); },
      [this](const QString& name) { Run([&] { session_.OpenText(PathFromQt(name)); }); });
  optional_actions_.emplace_back(texts->menuAction(), &M::HasTextImport);
}

void MainWindow::MakeViewMenu() {
  using M = MainWindow;
  QMenu* const view = createPopupMenu();
  view->setTitle(Text(shell::kMenuView));
  menuBar()->addMenu(view);
  view->addSeparator();
  AddCommands(*view, {
      {shell::kShowNetwork, "show_network", "",               &M::ShowNetwork, nullptr},
      {shell::kNextTab,     "next_tab",     "Ctrl+Tab",       &M::NextTab,     nullptr},
      {shell::kPreviousTab, "previous_tab", "Ctrl+Shift+Tab", &M::PreviousTab, nullptr},
      {shell::kCloseTab,    "close_tab",    "Ctrl+W",         &M::CloseTab,    nullptr},
  });
}
// clang-format on

QMenu* MainWindow::MakeMenu(const ShellText& title, std::initializer_list<Command> commands) {
  QMenu* const menu = menuBar()->addMenu(Text(title));
  AddCommands(*menu, commands);
  return menu;
}

void MainWindow::AddCommands(QMenu& menu, std::initializer_list<Command> commands) {
  for (const Command& command : commands) AddCommand(menu, command);
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

QStringList MainWindow::RecentLogs() const {
  QStringList paths;
  for (int at = 0; at < kMostRecentLogs && !g_systemConfig->GetRecentLogFile(at).IsEmpty(); ++at)
    paths << PathToQt(g_systemConfig->GetRecentLogFile(at));
  return paths;
}

}  // namespace loom
