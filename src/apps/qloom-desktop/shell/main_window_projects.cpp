#include <QMessageBox>
#include <QPushButton>
#include <QTabWidget>

#include "apps/qloom-desktop/front_end/qt_text.h"
#include "apps/qloom-desktop/shell/main_window.h"
#include "apps/qloom-desktop/shell/shell_filter.h"
#include "platform/path.h"
#include "platform/ui/message_box.h"

// Projects: made, opened, saved, and found again after a crash.
namespace loom {
namespace {

constexpr const char* kRecentProjectsKey = "recent_projects";
constexpr int kMostRecentProjects = 10;

}  // namespace

bool MainWindow::MayDropProject() {
  if (!session_.IsModified()) return true;
  QMessageBox box(QMessageBox::Question, windowTitle(), Text(shell::kAskSave), QMessageBox::NoButton, this);
  box.setObjectName(QStringLiteral("ask_save"));
  QPushButton* const save = box.addButton(Text(shell::kSave), QMessageBox::AcceptRole);
  const QPushButton* const discard = box.addButton(Text(shell::kDiscard), QMessageBox::DestructiveRole);
  box.addButton(Text(shell::kCancel), QMessageBox::RejectRole);
  box.setDefaultButton(save);
  box.setWindowTitle(QLatin1String(kApplicationCaption));
  box.exec();
  if (box.clickedButton() == save) return SaveProject();
  return box.clickedButton() == discard;
}

void MainWindow::NewProject() {
  if (!MayDropProject()) return;
  CloseTabs();
  session_.NewProject();
}

void MainWindow::AskForProject() {
  if (!MayDropProject()) return;
  CFileDialog dialog(true, "qlp", CString(), CFileDialog::kFileMustExist, FilterOf(shell::kProjectFiles));
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
  CloseTabs();
  session_.OpenProject(path, JournalToRestore(path));
  RememberProject(path);
  ReopenEverything();
}

void MainWindow::ReopenEverything() {
  const auto progress = front_end_.ShowCommonProgress({.title = FromQt(Text(shell::kOpening))});
  const std::vector<CString> missing = session_.ReopenEverything([&](int part, int parts) {
    if (progress->Cancelled()) return false;
    progress->Begin(part, parts);
    return true;
  });
  for (const CString& path : missing) Tell(Text(shell::kMissingFile).arg(PathToQt(path)));
}

bool MainWindow::MayRestore(const QString& question) {
  QMessageBox box(QMessageBox::Question, QLatin1String(kApplicationCaption), question, QMessageBox::NoButton, this);
  box.setObjectName(QStringLiteral("ask_restore"));
  QPushButton* const restore = box.addButton(Text(shell::kRestore), QMessageBox::AcceptRole);
  restore->setObjectName(QStringLiteral("button_restore"));
  QPushButton* const forget = box.addButton(Text(shell::kForget), QMessageBox::DestructiveRole);
  forget->setObjectName(QStringLiteral("button_forget"));
  box.setDefaultButton(restore);
  box.setEscapeButton(restore);
  box.exec();
  return box.clickedButton() != forget;
}

// The journal of a project that another program works on is that program's.
CString MainWindow::JournalToRestore(const CString& path) {
  const CString journal = ProjectJournal::LeftBehind(path);
  if (journal.IsEmpty()) return {};
  if (MayRestore(Text(shell::kRestoreProject).arg(PathToQt(NameOf(path))))) return journal;
  ProjectJournal::Discard(journal);
  return {};
}

void MainWindow::OfferLeftUntitled() {
  Run([&] {
    for (const CString& journal : ProjectJournal::LeftUntitled(session_.state_folder())) {
      if (!MayRestore(Text(shell::kRestoreUntitled))) {
        ProjectJournal::Discard(journal);
        continue;
      }
      CloseTabs();
      session_.NewProject(journal);
      return ReopenEverything();
    }
  });
}

QStringList MainWindow::RecentProjects() const {
  return settings_.value(QLatin1String(kRecentProjectsKey)).toStringList();
}

void MainWindow::RememberProject(const CString& path) {
  QStringList paths = RecentProjects();
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
                     FilterOf(shell::kProjectFiles));
  if (dialog.DoModal() != kIdOk) return false;
  session_.SaveAs(dialog.GetPathName());
  RememberProject(dialog.GetPathName());
  return true;
}

}  // namespace loom
