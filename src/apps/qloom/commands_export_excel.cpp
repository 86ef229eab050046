#include <filesystem>
#include <iostream>

#include "apps/qloom/commands.h"
#include "apps/qloom/log_source.h"
#include "excel/excel_exporter.h"
#include "host/subjects/network_table_subject.h"
#include "host/subjects/stream_subject.h"
#include "host/workbook/workbook_server.h"
#include "platform/automation/safe_array.h"
#include "platform/encoding.h"

namespace loom {
namespace {

struct ExcelOptions {
  ImportOptions source;
  std::vector<std::string> streams;
  std::vector<std::string> network_tables;
  std::vector<std::string> columns;
  std::vector<std::string> sheets;
  std::string out;
  bool tables = false;
};

// What goes into the workbook: for each subject a sheet name and columns.
struct Selection {
  std::vector<std::unique_ptr<ISubject>> owned;
  std::vector<ISubject*> subjects;
  std::vector<CString> sheet_names;
  std::vector<std::vector<CString>> columns;

  void Add(std::unique_ptr<ISubject> subject, const CString& name, std::vector<CString> subject_columns) {
    subjects.push_back(subject.get());
    owned.push_back(std::move(subject));
    sheet_names.push_back(name);
    columns.push_back(std::move(subject_columns));
  }
};

std::vector<CString> ChosenColumns(const ExcelOptions& options, std::vector<CString> standing) {
  if (options.columns.empty()) return standing;
  std::vector<CString> columns;
  for (const std::string& name : options.columns) columns.push_back(Utf8ToGbk(name));
  return columns;
}

// False when a stream is not there, which was said.
bool Select(Session& session, const LogReport& report, const ExcelOptions& options, Selection& selection) {
  for (const std::string& name : options.streams) {
    IDataStream* const stream = FindStreamOrList(report, name);
    if (stream == nullptr) return false;
    selection.Add(std::make_unique<StreamSubject>(*stream), Utf8ToGbk(GbkNameToUtf8(stream->GetName())),
                  ChosenColumns(options, ColumnsOfStream(*stream)));
  }
  for (const std::string& name : options.network_tables) {
    const CString table = Utf8ToGbk(name);
    auto subject = std::make_unique<NetworkTableSubject>(session.host().network(), table);
    std::vector<CString> columns = ChosenColumns(options, subject->Columns());
    selection.Add(std::move(subject), table, std::move(columns));
  }
  for (std::size_t at = 0; at < options.sheets.size(); ++at)
    selection.sheet_names.at(at) = Utf8ToGbk(options.sheets[at]);
  return true;
}

std::vector<COleSafeArray> TablesOf(Selection& selection) {
  std::vector<COleSafeArray> tables(selection.subjects.size());
  for (std::size_t at = 0; at < tables.size(); ++at)
    CExcelExporter().BuildTable(selection.subjects[at], tables[at], selection.columns[at]);
  return tables;
}

void RunExporter(IExporter& exporter, const ExcelOptions& options, Selection& selection) {
  const CString out = AbsolutePath(options.out);
  if (options.tables) {
    std::vector<COleSafeArray> tables = TablesOf(selection);
    exporter.Export(out, tables, selection.sheet_names);
  } else if (selection.subjects.size() == 1 && options.sheets.empty()) {
    exporter.Export(out, selection.subjects.front(), selection.columns.front());
  } else {
    exporter.Export(out, selection.subjects, selection.sheet_names, selection.columns);
  }
}

// Whether the workbook was saved.
bool Export(Session& session, const LogReport& report, const ExcelOptions& options) {
  Selection selection;
  if (!Select(session, report, options, selection)) return false;
  IExporter* const exporter = session.manager().GetExporterByType(kExporterExcel);
  if (exporter == nullptr) return false;
  WorkbookServer& server = session.host().workbooks();
  server.SaveNextAs(AbsolutePath(options.out));
  try {
    RunExporter(*exporter, options, selection);
  } catch (const Error& error) {
    std::cerr << "qloom: " << error.what() << '\n';
    return false;
  }
  return !server.SavedPaths().empty();
}

void CheckOptions(const ExcelOptions& options) {
  const std::size_t subjects = options.streams.size() + options.network_tables.size();
  if (subjects == 0) throw UsageError("export-excel", "--stream or --net is needed");
  if (options.source.logs.empty() && !options.streams.empty())
    throw UsageError("export-excel", "SOURCE is needed for --stream");
  if (options.sheets.size() > subjects) throw UsageError("--sheet", "there are more sheet names than sheets");
}

int RunExportExcel(const CommandLine& line, const ExcelOptions& options) {
  const bool has_source = !options.source.logs.empty();
  Session session(line.common, has_source ? SourceAnswersFrom(options.source) : AnswersFrom(options.source),
                  has_source ? FirstLog(options.source) : CString(),
                  has_source ? ProjectUse::kChange : ProjectUse::kRead);
  LogReport report(session);
  const int imported = has_source ? ImportSource(session.manager(), options.source, report) : kBatchDone;
  int exit_code = report.ExitCodeOf(imported);
  Json document{{"result", 0}, {"out", nullptr}};
  if (exit_code == kExitDone && !session.front_end().MayReplace(AbsolutePath(options.out))) exit_code = kExitFailed;
  if (exit_code == kExitDone) {
    const bool saved = Export(session, report, options);
    exit_code = saved ? kExitDone : kExitFailed;
    document["result"] = saved ? 1 : 0;
    if (saved) {
      const CString& path = session.host().workbooks().SavedPaths().back();
      document["out"] = JsonText(path);
      if (!line.common.json) std::cout << GbkPathToNative(path) << '\n';
    }
  }
  return session.Finish(std::move(document), exit_code);
}

}  // namespace

void AddExportExcelCommand(Command& program, CommandLine& line) {
  const auto options = std::make_shared<ExcelOptions>();
  Command command =
      program.AddCommand("export-excel", "Import a log or a text file and write streams of it as a workbook");
  AddSourceOptions(command, options->source);
  command.AddOption("--stream", options->streams, "Name of a stream; each becomes a sheet");
  command.AddOption("--net", options->network_tables, "Network-element table of the project, as a sheet");
  command.AddOption("--ie", options->columns, "Columns, the same for every sheet (default: everything recorded)");
  command.AddOption("--sheet", options->sheets, "Names of the sheets (default: one is 导出数据, several the streams')");
  command.AddOption("--out", options->out, "Workbook to write (.xlsx)").Required();
  command.AddFlag("--tables", options->tables, "Hand the rows over as ready tables");
  command.Runs(
      [&line, options] {
        if (std::filesystem::path(options->out).extension().empty()) options->out += ".xlsx";
        return RunExportExcel(line, *options);
      },
      [options] { CheckOptions(*options); });
}

}  // namespace loom
