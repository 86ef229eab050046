#include "apps/qloom-desktop/shell/main_window.h"

#include <QApplication>
#include <QCloseEvent>
#include <QDockWidget>
#include <QLocale>
#include <QMimeData>
#include <QPlainTextEdit>
#include <QScreen>
#include <QTabWidget>
#include <QUrl>
#include <set>

#include "apps/qloom-desktop/front_end/qt_text.h"
#include "apps/qloom-desktop/shell/project_tree.h"
#include "apps/qloom-desktop/shell/stream_tab.h"
#include "apps/qloom-desktop/shell/views/network/network_view.h"
#include "manager/log_row_counts.h"
#include "platform/encoding.h"
#include "platform/interrupt.h"
#include "platform/log.h"
#include "platform/path.h"
#include "platform/ui/message_box.h"

namespace loom {
namespace {

constexpr int kMostMessages = 5000;  // lines
constexpr QSize kFirstSize(1100, 720);
constexpr QSize kAroundWindow(24, 48);  // frame and title
constexpr const char* kGeometryKey = "window/geometry";
constexpr const char* kStateKey = "window/state";

}  // namespace

MainWindow::MainWindow(DesktopSession& session, QtFrontEnd& front_end, QSettings& settings)
    : session_(session), front_end_(front_end), settings_(settings), tables_(new QTabWidget(this)) {
  setObjectName(QStringLiteral("main_window"));
  setAcceptDrops(true);
  tables_->setObjectName(QStringLiteral("tables"));
  tables_->setTabsClosable(true);
  tables_->setDocumentMode(true);
  connect(tables_, &QTabWidget::tabCloseRequested, this, [this](int at) { delete tables_->widget(at); });
  resize(FirstSize());
  setCentralWidget(tables_);
  MakeDocks();
  MakeMenus();
  restoreGeometry(settings_.value(QLatin1String(kGeometryKey)).toByteArray());
  restoreState(settings_.value(QLatin1String(kStateKey)).toByteArray());
  front_end_.SetMainWindow(this);
  session_.SetLogListener([this](const LogOutcome& outcome) { TellOutcome(outcome); });
  SetLogSink([this](LogLevel level, std::string_view utf8) {
    if (level >= LogLevel::kWarning) Tell(QString::fromUtf8(utf8.data(), static_cast<qsizetype>(utf8.size())));
  });
  Tell(Text(shell::kHint));
  ShowProject();
  tree_->setFocus();
}

QSize MainWindow::FirstSize() const { return kFirstSize.boundedTo(screen()->availableSize() - kAroundWindow); }

MainWindow::~MainWindow() {
  SetLogSink(nullptr);
  session_.SetLogListener(nullptr);
}

void MainWindow::MakeDocks() {
  tree_ = new ProjectTree(this);
  tree_->SetHandlers({.open_stream = [this](IDataStream& stream) { OpenStream(stream); },
                      .open_log = [this](const CString& path) { Run([&] { session_.OpenLog(path); }); },
                      .open_text = [this](const CString& name) { Run([&] { session_.OpenText(name); }); },
                      .remove = [this](const std::vector<CString>& entries) { RemoveEntries(entries); }});
  messages_ = new QPlainTextEdit(this);
  messages_->setObjectName(QStringLiteral("messages"));
  messages_->setReadOnly(true);
  messages_->setMaximumBlockCount(kMostMessages);
  messages_->setAcceptDrops(false);
  const auto add = [this](const ShellText& title, const char* name, QWidget* widget, Qt::DockWidgetArea area) {
    auto* const dock = new QDockWidget(Text(title), this);
    dock->setObjectName(QLatin1String(name));
    dock->setWidget(widget);
    addDockWidget(area, dock);
    return dock;
  };
  QDockWidget* const project = add(shell::kDockProject, "dock_project", tree_, Qt::LeftDockWidgetArea);
  QDockWidget* const told = add(shell::kDockMessages, "dock_messages", messages_, Qt::BottomDockWidgetArea);
  resizeDocks({project}, {FirstSize().width() / 4}, Qt::Horizontal);
  resizeDocks({told}, {FirstSize().height() / 5}, Qt::Vertical);
}

void MainWindow::Run(const std::function<void()>& work) {
  // A command may open windows, in front of which this one waits.
  if (running_ > 0) return;
  ++running_;
  try {
    work();
  } catch (const Interrupted&) {
    Tell(Text(shell::kCancelled));
  } catch (const std::exception& error) {
    ShowMessageBox(NativeNameToGbk(error.what()), MessageIcon::kError);
  }
  front_end_.EndWork();
  --running_;
  ShowProject();
  ShowNotes();
  KeepJournal();
}

// Once for each project: the person goes on all the same.
void MainWindow::KeepJournal() {
  try {
    session_.journal().Keep();
  } catch (const Error& error) {
    Tell(QString::fromStdString(error.what()));
  }
}

void MainWindow::Tell(const QString& line) { messages_->appendPlainText(line); }

void MainWindow::TellOutcome(const LogOutcome& outcome) {
  const auto result_text = [&] {
    switch (outcome.result) {
      case kImportDone:
        return Text(shell::kImported);
      case kImportCancelled:
        return Text(shell::kCancelled);
      case kImportAlreadyPresent:
        return Text(shell::kAlreadyPresent);
      default:
        return Text(shell::kFailed);
    }
  };
  QString line = PathToQt(outcome.path) + QStringLiteral(": ") + result_text();
  if (outcome.logfile && outcome.result == kImportDone) {
    const LogRowCounts counts = CountRows(*outcome.logfile);
    const auto number = [](std::int64_t count) { return QLocale().toString(static_cast<qint64>(count)); };
    line += QStringLiteral(", ") + Text(shell::kStreamsAndRows).arg(number(counts.streams), number(counts.rows));
    if (counts.merged_streams > 0)
      line += QStringLiteral(", ") +
              Text(shell::kMergedStreamsAndRows).arg(number(counts.merged_streams), number(counts.merged_rows));
  }
  for (const auto& [reason, count] : outcome.skipped)
    line += QStringLiteral("\n  %1: %2")
                .arg(QString::fromUtf8(reason.data(), static_cast<qsizetype>(reason.size())))
                .arg(count);
  Tell(line);
}

namespace {

QString NameOfKind(const NoteKind& kind) {
  const std::string_view name = CurrentShellLanguage() == ShellLanguage::kChinese ? kind.chinese_name : kind.name;
  return QString::fromUtf8(name.data(), static_cast<qsizetype>(name.size()));
}

}  // namespace

void MainWindow::ShowNotes() {
  for (const Notes::Kind& kind : session_.notes().kinds()) {
    Tell(QStringLiteral("%1: %2").arg(NameOfKind(*kind.declared)).arg(kind.count));
    for (const Note& place : kind.places)
      Tell(QStringLiteral("  %1, %2: %3")
               .arg(PathToQt(place.file), QString::fromStdString(place.at), QString::fromStdString(place.what)));
  }
  session_.notes().Clear();
}

void MainWindow::ShowProject() {
  CloseTablesOfDroppedStreams();
  tree_->Show(session_);
  const CString& path = session_.project().FilePath();
  const QString name = path.IsEmpty() ? Text(shell::kUntitled) : PathToQt(NameOf(path));
  const std::string& reason = session_.project().ReadOnlyReason();
  const QString read_only = reason.empty() ? QString() : Text(shell::kReadOnly).arg(QString::fromStdString(reason));
  setWindowTitle(name + QStringLiteral("[*]") + read_only + QStringLiteral(" - Quillon Loom"));
  setWindowModified(session_.IsModified());
  for (const auto& [action, is_present] : optional_actions_) action->setEnabled((this->*is_present)());
}

StreamTab* MainWindow::StreamTabAt(int at) const { return dynamic_cast<StreamTab*>(tables_->widget(at)); }

void MainWindow::OpenStream(IDataStream& stream) {
  for (int at = 0; at < tables_->count(); ++at) {
    if (StreamTabAt(at) && &StreamTabAt(at)->stream() == &stream) return tables_->setCurrentIndex(at);
  }
  tables_->setCurrentIndex(tables_->addTab(new StreamTab(stream, tables_), NameToQt(stream.GetName())));
  tables_->currentWidget()->setFocus();
}

void MainWindow::CloseTabs() {
  while (tables_->count() > 0) delete tables_->widget(0);
}

void MainWindow::CloseTab() { delete tables_->currentWidget(); }

void MainWindow::TurnTab(int step) {
  const int count = tables_->count();
  if (count == 0) return;
  tables_->setCurrentIndex((tables_->currentIndex() + step + count) % count);
  tables_->currentWidget()->setFocus();
}

void MainWindow::ShowNetwork() {
  for (int at = 0; at < tables_->count(); ++at) {
    if (dynamic_cast<NetworkView*>(tables_->widget(at))) delete tables_->widget(at);
  }
  auto* const view = new NetworkView(session_.host().network(), session_.project().WorkingCopy(), tables_);
  view->SetChangeListener([this] {
    setWindowModified(session_.IsModified());
    KeepJournal();
  });
  tables_->setCurrentIndex(tables_->addTab(view, Text(shell::kNetworkTitle)));
}

void MainWindow::ReloadNetwork() {
  for (int at = 0; at < tables_->count(); ++at) {
    if (auto* const view = dynamic_cast<NetworkView*>(tables_->widget(at))) view->Reload();
  }
}

void MainWindow::CloseTablesOf(const std::vector<CString>& entries) {
  std::set<const IDataStream*> streams;
  for (const CString& entry : entries) {
    const ILogfile* const logfile = CStreamManagerCreator::CreateStreamManager()->FindLogfile(entry);
    if (!logfile) continue;
    for (const IDataStream* const stream : logfile->GetStreams()) streams.insert(stream);
  }
  for (int at = tables_->count() - 1; at >= 0; --at) {
    if (StreamTabAt(at) && streams.contains(&StreamTabAt(at)->stream())) delete tables_->widget(at);
  }
}

void MainWindow::CloseTablesOfDroppedStreams() {
  std::set<const IDataStream*> streams;
  for (const ILogfile* const logfile : session_.LoadedLogs()) {
    for (const IDataStream* const stream : logfile->GetStreams()) streams.insert(stream);
  }
  for (int at = tables_->count() - 1; at >= 0; --at) {
    if (StreamTabAt(at) && !streams.contains(&StreamTabAt(at)->stream())) delete tables_->widget(at);
  }
}

void MainWindow::RemoveEntries(const std::vector<CString>& entries) {
  Run([&] {
    CloseTablesOf(entries);
    session_.Remove(entries);
  });
}

void MainWindow::RemoveSelected() {
  const std::vector<CString> entries = tree_->SelectedEntries();
  if (entries.empty()) return;
  CloseTablesOf(entries);
  session_.Remove(entries);
}

void MainWindow::closeEvent(QCloseEvent* event) {
  bool may_close = false;
  Run([&] { may_close = MayDropProject(); });
  if (!may_close) return event->ignore();
  settings_.setValue(QLatin1String(kGeometryKey), saveGeometry());
  settings_.setValue(QLatin1String(kStateKey), saveState());
  QMainWindow::closeEvent(event);
}

void MainWindow::dragEnterEvent(QDragEnterEvent* event) {
  if (event->mimeData()->hasUrls()) event->acceptProposedAction();
}

void MainWindow::dropEvent(QDropEvent* event) {
  std::vector<CString> paths;
  for (const QUrl& url : event->mimeData()->urls()) {
    if (url.isLocalFile()) paths.push_back(PathFromQt(url.toLocalFile()));
  }
  if (paths.empty()) return;
  event->acceptProposedAction();
  const ImporterTypeEnum node = tree_->NodeAt(tree_->viewport()->mapFrom(this, event->position().toPoint()));
  // The one who drags waits until the drop is done.
  QMetaObject::invokeMethod(
      this, [=, this] { OpenFiles(node, paths); }, Qt::QueuedConnection);
}

}  // namespace loom
