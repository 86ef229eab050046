#include <QDir>
#include <QGuiApplication>
#include <QLocale>
#include <QTabWidget>
#include <algorithm>
#include <deque>
#include <map>

#include "apps/qloom-desktop/front_end/qt_text.h"
#include "apps/qloom-desktop/shell/file_kind.h"
#include "apps/qloom-desktop/shell/main_window.h"
#include "apps/qloom-desktop/shell/project_tree.h"
#include "apps/qloom-desktop/shell/report_command.h"
#include "apps/qloom-desktop/shell/shell_filter.h"
#include "apps/qloom-desktop/shell/stream_tab.h"
#include "apps/report/report.h"
#include "host/netdb/db_mapper.h"
#include "host/recordings/make_log.h"
#include "host/sinks/export_layers.h"
#include "host/sinks/stream_layer.h"
#include "host/subjects/stream_subject.h"
#include "host/workbook/workbook_server.h"
#include "manager/mapped_output.h"
#include "platform/encoding.h"
#include "platform/file.h"
#include "platform/path.h"
#include "platform/ui/file_dialog.h"
#include "platform/ui/message_box.h"
#include "platform/ui/template.h"

// What comes into the project and what goes out of it.
namespace loom {

void MainWindow::ImportByName() {
  CFileDialog dialog(true, CString(), CString(), CFileDialog::kFileMustExist, FilterOf(shell::kLogFiles));
  if (dialog.DoModal() == kIdOk) session_.manager().ImportLogByName(dialog.GetPathName());
}

namespace {

// The files that a person picks; none when the dialog is cancelled.
std::vector<CString> PickFiles(const CString& filter) {
  CFileDialog dialog(true, CString(), CString(), CFileDialog::kFileMustExist | CFileDialog::kAllowMultiSelect, filter);
  return dialog.DoModal() == kIdOk ? dialog.GetPathList() : std::vector<CString>();
}

}  // namespace

void MainWindow::ImportIntermediate() { ImportIntermediateFiles(PickFiles(FilterOf(shell::kAllFiles))); }

void MainWindow::ImportIntermediateFiles(std::vector<CString> paths) {
  if (!paths.empty()) session_.manager().OpenImmediateLogFile(paths);
}

void MainWindow::ImportRecordings() {
  OpenFilesNow(kImporterOutdoorLog, PickFiles(FilterOf(shell::kRecordings) + FilterOf(shell::kAllFiles)));
}

void MainWindow::RecogniseText() { AskAndImportWithFinder(session_.project(), session_.manager(), TextImportTeller()); }

void MainWindow::OpenFiles(ImporterTypeEnum node, std::vector<CString> paths) {
  Run([&] { OpenFilesNow(node, paths); });
}

// A project comes first: it takes the place of the open one, and the other files go into it.
void MainWindow::OpenFilesNow(ImporterTypeEnum node, const std::vector<CString>& paths) {
  std::map<FileKind, std::vector<CString>> files;
  for (const CString& path : paths) files[KindOfFile(path)].push_back(path);
  for (const CString& path : files[FileKind::kMissing]) Tell(Text(shell::kMissingFile).arg(PathToQt(path)));
  for (const CString& path : files[FileKind::kUnknown]) Tell(Text(shell::kUnknownFile).arg(PathToQt(path)));
  const std::vector<CString>& projects = files[FileKind::kProject];
  if (!projects.empty() && MayDropProject()) UseProject(projects.back());
  std::vector<CString> logs = files[FileKind::kLog];
  for (const CString& path : files[FileKind::kRecording]) logs.push_back(LogOfRecording(path));
  ImportLogs(node, std::move(logs));
  ImportIntermediateFiles(files[FileKind::kIntermediate]);
  ImportTextFiles(files[FileKind::kText]);
}

void MainWindow::ImportLogs(ImporterTypeEnum node, std::vector<CString> paths) {
  if (paths.empty()) return;
  front_end_.OfferFiles(std::move(paths));
  session_.manager().ImportLog(node);
  front_end_.WithdrawFiles();
}

CString MainWindow::LogOfRecording(const CString& path) {
  const CString folder =
      session_.project().IsTemporary() ? PathFromQt(QDir::tempPath()) : FolderOf(session_.project().FilePath());
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
  return options.out;
}

void MainWindow::ImportTextFiles(const std::vector<CString>& paths) {
  ImportWithFinder(session_.project(), session_.manager(), paths, TextImportTeller());
}

TextImportListener MainWindow::TextImportTeller() {
  return [this](const CString& path, const ImportedTextFile& done) {
    if (done.result == kImportDone)
      Tell(Text(shell::kTextImported).arg(PathToQt(path), QLocale().toString(qulonglong{done.rows})));
  };
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

QStringList MainWindow::ProjectTexts() {
  QStringList names;
  for (const CProjectTxtFile& text : session_.project().Content().text_files) names << PathToQt(text.GetTxtName());
  return names;
}

std::vector<IDataStream*> MainWindow::StreamsToExport() const {
  std::vector<IDataStream*> streams = tree_->SelectedStreams();
  if (streams.empty() && StreamTabAt(tables_->currentIndex()))
    streams.push_back(&StreamTabAt(tables_->currentIndex())->stream());
  if (streams.empty()) ShowMessageBox(FromQt(Text(shell::kSelectStreams)), MessageIcon::kInformation);
  return streams;
}

void MainWindow::ExportExcel() {
  const std::vector<IDataStream*> streams = StreamsToExport();
  if (streams.empty()) return;
  CFileDialog dialog(false, "xlsx", CString(), CFileDialog::kOverwritePrompt, FilterOf(shell::kWorkbooks));
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

// One file for each log that streams are selected of.
void MainWindow::ExportIntermediate() {
  const std::vector<IDataStream*> selected = StreamsToExport();
  for (const ILogfile* const logfile : session_.LoadedLogs()) {
    std::list<IDataStream*> streams = logfile->GetStreams();
    std::erase_if(streams, [&](IDataStream* stream) { return std::ranges::count(selected, stream) == 0; });
    if (streams.empty()) continue;
    CFileDialog dialog(false, "dat", TitleOf(logfile->GetName()) + ".dat", CFileDialog::kOverwritePrompt,
                       FilterOf(shell::kIntermediateFiles) + FilterOf(shell::kAllFiles));
    if (dialog.DoModal() != kIdOk) return;
    const IntermediateSummary summary = SaveIntermediateFile(
        session_.manager(), *logfile, streams, dialog.GetPathName(), session_.host().catalogue().EventIds());
    const auto number = [](auto count) { return QLocale().toString(static_cast<qulonglong>(count)); };
    Tell(
        Text(shell::kWrittenIntermediate)
            .arg(PathToQt(dialog.GetPathName()), number(summary.streams), number(summary.rows), number(summary.bytes)));
  }
}

bool MainWindow::HasReports() { return CanWriteReports(); }

void MainWindow::WriteReport() {
  const std::vector<IDataStream*> streams = StreamsToExport();
  if (streams.empty()) return;
  CFileDialog dialog(false, "html", CString(), CFileDialog::kOverwritePrompt, FilterOf(shell::kReports));
  if (dialog.DoModal() != kIdOk) return;
  WriteReportOf(session_, streams, dialog.GetPathName());
  Tell(PathToQt(dialog.GetPathName()));
}

// The dialog has asked for the file that was named; files of single layers have names of their own.
void MainWindow::ExportLayer() {
  const std::vector<IDataStream*> streams = StreamsToExport();
  if (streams.empty()) return;
  CFileDialog dialog(false, "gpkg", CString(), CFileDialog::kOverwritePrompt, FilterOf(shell::kLayers));
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
  if (session_.manager().ImportNetInfo(protocol) <= 0) return;
  const NetImportReport& report = DBMapper::Instance().Report();
  const auto number = [](auto count) { return QLocale().toString(static_cast<qlonglong>(count)); };
  Tell(Text(shell::kStoredNetwork)
           .arg(ToQt(report.table), number(report.rows_read), number(report.counts.added),
                number(report.counts.replaced)));
  ReloadNetwork();
}

void MainWindow::ShowAbout() {
  ShowMessageBox(FromQt(Text(shell::kAboutText).arg(QStringLiteral(QLOOM_VERSION))), MessageIcon::kInformation);
}

}  // namespace loom
