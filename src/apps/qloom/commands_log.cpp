#include <iostream>

#include "apps/qloom/commands.h"
#include "apps/qloom/json_rows.h"
#include "apps/qloom/log_report.h"
#include "apps/qloom/text_import_wizard.h"
#include "components/id_set.h"
#include "components/project.h"
#include "platform/encoding.h"
#include "platform/file.h"
#include "platform/path.h"

namespace loom {
namespace {

// Options of the commands that import logs.
struct ImportOptions {
  std::vector<std::string> logs;
  std::string node = "outdoor";
  std::optional<std::string> handset;
  std::optional<bool> keep_log;
  std::optional<bool> keep_all;
  bool no_node_check = false;
  ImportSheetOptions sheet;
  std::string stream;
  std::int32_t from = 1;
  std::optional<std::int32_t> count;
  std::vector<std::string> show;
  bool intermediate = false;
  bool key_rows = false;
  TextImportOptions text;
};

void AddHandsetOptions(CLI::App& command, ImportOptions& options) {
  command
      .add_option("--handset", options.handset, "Handset type for logs that do not tell it, as the question lists it")
      ->check(CLI::IsMember(HandsetNames()));
  command.add_flag("--keep-log,!--no-keep-log", options.keep_log, "Keep that choice for the log (default: kept)");
  command.add_flag("--keep-all,!--no-keep-all", options.keep_all, "Keep that choice for all logs (default: kept)");
}

void AddNodeOption(CLI::App& command, ImportOptions& options) {
  command.add_option("--node", options.node, "Project node: outdoor, indoor or cmcc")->check(CLI::IsMember(LogNodes()));
}

CString FirstLog(const ImportOptions& options) { return AbsolutePath(options.logs.front()); }

// By its extension, or because options of a text import are given.
bool IsTextSource(const ImportOptions& options) {
  const CString extension = ExtensionOf(FirstLog(options));
  const auto is = [&](const char* known) { return extension.CompareNoCase(known) == 0; };
  return options.text.IsAnyGiven() || is("txt") || is("csv") || is("tsv");
}

BatchAnswers AnswersFrom(const CommonOptions& common, const ImportOptions& options) {
  BatchAnswers answers;
  answers.yes = !common.no;
  answers.cancel_at = common.cancel_at;
  for (const std::string& log : options.logs) answers.files.push_back(AbsolutePath(log));
  if (options.handset) answers.handset = Utf8ToGbk(*options.handset);
  answers.keep_for_log = options.keep_log;
  answers.keep_for_all = options.keep_all;
  answers.import_sheet = ImportSheetAnswersFrom(options.sheet);
  return answers;
}

// Runs one facade command that imports, and reports each log. `work` gives the command's own result.
int RunImport(const CommandLine& line, const ImportOptions& options, const std::function<int(CIOManager&)>& work) {
  Session session(line.common, AnswersFrom(line.common, options), FirstLog(options));
  LogReport report(session);
  const int result = work(session.manager());
  if (!line.common.json) report.PrintHuman(std::cout);
  return session.Finish(report.ToJson(result), report.ExitCodeOf(result));
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
  for (auto row = rows.lower_bound(options.from); row != rows.end() && left > 0; ++row, --left) {
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

// An intermediate file of which no stream came has failed.
int ImportSource(CIOManager& manager, const ImportOptions& options, const LogReport& report) {
  if (IsTextSource(options) && !options.intermediate) return manager.ImportTxt();
  if (!options.intermediate) return manager.ImportLog(LogNodes().at(options.node));
  std::vector<CString> paths = ExistingFiles(options.logs);
  manager.OpenImmediateLogFile(paths);
  return report.StreamNames().empty() ? kBatchNothing : kBatchDone;
}

int RunRows(const CommandLine& line, const ImportOptions& options) {
  CommonOptions common = line.common;
  common.json = false;  // rows are JSON lines by themselves
  BatchAnswers answers = AnswersFrom(common, options);
  if (IsTextSource(options))
    answers.text_import = TextImportAnswersFrom(options.text, ExistingPath(options.logs.front()));
  Session session(common, std::move(answers), FirstLog(options));
  LogReport report(session);
  const int result = ImportSource(session.manager(), options, report);
  int exit_code = report.ExitCodeOf(result);
  if (exit_code == kExitDone) {
    const CString name = Utf8ToGbk(options.stream);
    if (IDataStream* stream = report.FindStream(name)) {
      PrintRows(*stream, options);
    } else {
      std::cerr << "qloom: the file has no stream \"" << options.stream << "\"; it has:\n";
      for (const std::string& known : report.StreamNames()) std::cerr << "  " << known << '\n';
      exit_code = kExitFailed;
    }
  }
  return session.Finish(Json::object(), exit_code);
}

// A command of one log: its positional argument and the handset question's options.
CLI::App* AddOneLogCommand(CLI::App& app, CommandLine& line, const std::shared_ptr<ImportOptions>& options,
                           const char* name, const char* description) {
  CLI::App* command = AddCommand(app, line, name, description);
  command->add_option("LOG", options->logs, "Log file")->required()->expected(1);
  AddHandsetOptions(*command, *options);
  return command;
}

void AddImport(CLI::App& app, CommandLine& line) {
  const auto options = std::make_shared<ImportOptions>();
  CLI::App* command = AddCommand(app, line, "import", "Import logs and list their streams");
  command->add_option("LOG", options->logs, "Log files")->required();
  AddNodeOption(*command, *options);
  AddHandsetOptions(*command, *options);
  AddImportSheetOptions(*command, options->sheet);
  command->callback([&line, options] {
    line.run = [&line, options] {
      return RunImport(line, *options,
                       [&](CIOManager& manager) { return manager.ImportLog(LogNodes().at(options->node)); });
    };
  });
}

void AddSingleLogImports(CLI::App& app, CommandLine& line) {
  const auto add = [&](const char* name, const char* description, auto work) {
    const auto options = std::make_shared<ImportOptions>();
    CLI::App* command = AddOneLogCommand(app, line, options, name, description);
    if (std::string_view(name) == "open-log") {
      command->add_flag("--no-node-check", options->no_node_check, "Accept China Mobile logs");
    }
    command->callback([&line, options, work] {
      line.run = [&line, options, work] {
        return RunImport(line, *options, [&](CIOManager& manager) { return work(manager, *options); });
      };
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

void AddRows(CLI::App& app, CommandLine& line) {
  const auto options = std::make_shared<ImportOptions>();
  CLI::App* command =
      AddOneLogCommand(app, line, options, "rows", "Import a log or a text file and print rows as JSON lines");
  AddNodeOption(*command, *options);
  AddImportSheetOptions(*command, options->sheet);
  AddTextImportOptions(*command, options->text);
  command->add_flag("--key-rows", options->key_rows, "Of a text file's stream only the first row and every 500th");
  command->add_flag("--intermediate", options->intermediate, "The file is an intermediate file");
  command->add_option("--stream", options->stream, "Name of the stream")->required();
  command->add_option("--from", options->from, "First row number (default 1)");
  command->add_option("--count", options->count, "Most rows to print")->check(CLI::NonNegativeNumber);
  command->add_option("--show", options->show, "Only fields of these information elements");
  command->callback([&line, options] { line.run = [&line, options] { return RunRows(line, *options); }; });
}

}  // namespace

void AddLogCommands(CLI::App& app, CommandLine& line) {
  AddImport(app, line);
  AddSingleLogImports(app, line);
  AddRows(app, line);
}

}  // namespace loom
