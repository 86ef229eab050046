#include <iostream>

#include "apps/qloom/commands.h"
#include "apps/qloom/json_rows.h"
#include "apps/qloom/log_report.h"
#include "apps/qloom/log_source.h"
#include "apps/qloom/recording_import.h"
#include "components/id_set.h"
#include "components/project.h"
#include "platform/encoding.h"
#include "platform/file.h"
#include "platform/path.h"

namespace loom {
namespace {

// Runs one facade command that imports, and reports each log and what became of those `expected`. `work` gives the
// command's own result.
int RunImport(const CommandLine& line, const ImportOptions& options, const std::vector<CString>& expected,
              const std::function<int(CIOManager&)>& work) {
  Session session(line.common, AnswersFrom(options), FirstLog(options));
  LogReport report(session);
  report.Expect(expected);
  const int result = work(session.manager());
  if (!line.common.json) report.PrintHuman(std::cout);
  return session.Finish(report.ToJson(result), report.ExitCodeOf(result));
}

// Recordings among the files become logs first.
int RunImportLogs(const CommandLine& line, ImportOptions options) {
  RecordingImport recordings(options.logs, options.track, line.common.project);
  if (!recordings.IsEmpty()) options.logs = recordings.Files();
  Session session(line.common, AnswersFrom(options), FirstLog(options));
  LogReport report(session);
  report.Expect(AnswersFrom(options).files);
  recordings.MakeLogs();
  const int result = session.manager().ImportLog(LogNodes().at(options.node));
  if (!line.common.json) {
    recordings.Print(std::cout);
    report.PrintHuman(std::cout);
  }
  Json document = report.ToJson(result);
  if (!recordings.IsEmpty()) document["recordings"] = recordings.ToJson();
  return session.Finish(std::move(document), report.ExitCodeOf(result));
}

std::optional<IdSet> ShownIds(const ImportOptions& options) {
  if (options.show.empty()) return std::nullopt;
  IdSet ids;
  for (const std::string& name : options.show) {
    const std::int32_t id = g_sysProject->GetIEID(Utf8ToGbk(name));
    if (id < 0) throw Error("--show: the catalogue has no information element \"" + name + "\"");
    ids.Insert(id);
  }
  return ids;
}

void PrintRows(IDataStream& stream, const ImportOptions& options) {
  const std::optional<IdSet> shown = ShownIds(options);
  const MergedRowMap& merged = *stream.GetMergedRows();
  std::int64_t left = options.count.value_or(INT32_MAX);
  std::string out;
  const RowMap& rows = options.key_rows ? *stream.GetKeyRows() : *stream.GetRows();
  for (auto row = rows.lower_bound(options.from); row != rows.end() && left > 0 && std::cout && !WasInterrupted();
       ++row, --left) {
    const auto pair = merged.find(row->first);
    AppendRowJson(out, row->first, *row->second, pair != merged.end() ? &pair->second : nullptr,
                  shown ? &*shown : nullptr);
    out += '\n';
    if (out.size() > (1u << 20)) {
      std::cout << out;
      out.clear();
    }
  }
  std::cout << out << std::flush;
}

int RunRows(const CommandLine& line, const ImportOptions& options) {
  Session session(line.common, SourceAnswersFrom(options), FirstLog(options));
  LogReport report(session);
  const int result = ImportSource(session.manager(), options, report);
  const int exit_code = report.ExitCodeOf(result);
  if (exit_code != kExitDone) return session.FinishLines(exit_code);
  IDataStream* const stream = FindStreamOrList(report, options.stream);
  if (stream == nullptr) return session.FinishLines(kExitFailed, "the file has no stream \"" + options.stream + '"');
  PrintRows(*stream, options);
  return session.FinishLines(kExitDone);
}

// A command of one log: its positional argument and the handset question's options.
Command AddOneLogCommand(Command& program, const std::shared_ptr<ImportOptions>& options, const char* name,
                         const char* description) {
  Command command = program.AddCommand(name, description);
  command.AddOption("LOG", options->logs, "Log file").Required().Takes(1);
  AddHandsetOptions(command, *options);
  return command;
}

void AddImport(Command& program, CommandLine& line) {
  const auto options = std::make_shared<ImportOptions>();
  Command command = program.AddCommand("import", "Import logs and list their streams");
  command.AddOption("LOG", options->logs, "Log files").Required();
  AddNodeOption(command, *options);
  AddHandsetOptions(command, *options);
  AddImportSheetOptions(command, options->sheet);
  command.AddOption("--track", options->track, "Of recordings: where the handset was, GPX or NMEA");
  command.Runs([&line, options] { return RunImportLogs(line, *options); },
               [&line, options] {
                 if (options->track) RecordingImport(options->logs, options->track, line.common.project);
               });
}

void AddSingleLogImports(Command& program, CommandLine& line) {
  const auto add = [&](const char* name, const char* description, auto work) {
    const auto options = std::make_shared<ImportOptions>();
    Command command = AddOneLogCommand(program, options, name, description);
    if (std::string_view(name) == "open-log") {
      command.AddFlag("--no-node-check", options->no_node_check, "Accept China Mobile logs");
    }
    command.Runs([&line, options, work] {
      return RunImport(line, *options, {}, [&](CIOManager& manager) { return work(manager, *options); });
    });
  };
  add("import-by-name", "Import one indoor log",
      [](CIOManager& manager, const ImportOptions& options) { return manager.ImportLogByName(FirstLog(options)); });
  add("open-log", "Import a log of the project again, with its stored settings",
      [](CIOManager& manager, const ImportOptions& options) {
        return manager.OpenLog(FirstLog(options), !options.no_node_check);
      });
  add("open-recent", "Import a recent log",
      [](CIOManager& manager, const ImportOptions& options) { return manager.OpenRecentLog(FirstLog(options)); });
}

void AddRows(Command& program, CommandLine& line) {
  const auto options = std::make_shared<ImportOptions>();
  Command command =
      AddOneLogCommand(program, options, "rows", "Import a log or a text file and print rows as JSON lines");
  AddNodeOption(command, *options);
  AddImportSheetOptions(command, options->sheet);
  AddTextImportOptions(command, options->text);
  command.AddFlag("--key-rows", options->key_rows, "Of a text file's stream only the first row and every 500th");
  command.AddFlag("--intermediate", options->intermediate, "The file is an intermediate file");
  command.AddOption("--stream", options->stream, "Name of the stream").Required();
  command.AddOption("--from", options->from, "First row number (default 1)");
  command.AddOption("--count", options->count, "Most rows to print").NotNegative();
  command.AddOption("--show", options->show, "Only fields of these information elements");
  command.Runs([&line, options] { return RunRows(line, *options); });
}

}  // namespace

void AddLogCommands(Command& program, CommandLine& line) {
  AddImport(program, line);
  AddSingleLogImports(program, line);
  AddRows(program, line);
}

}  // namespace loom
