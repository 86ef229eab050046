#include "apps/qloom/log_source.h"

#include <iostream>

#include "apps/qloom/commands.h"
#include "platform/encoding.h"
#include "platform/path.h"
#include "resources/handset_type_templates.h"

namespace loom {
namespace {

// By its extension, or because options of a text import are given.
bool IsTextSource(const ImportOptions& options) {
  const CString extension = ExtensionOf(FirstLog(options));
  const auto is = [&](const char* known) { return extension.CompareNoCase(known) == 0; };
  return !options.intermediate && (options.text.IsAnyGiven() || is("txt") || is("csv") || is("tsv"));
}

// clang-format off
std::vector<WindowPage> HandsetPages(const ImportOptions& options) {
  const auto check = [](std::optional<bool> on) { return on ? act::Check(*on ? 1 : 0) : UserAction(); };
  return {{kDialogHandsetType, {
    {kComboHandsetType,    ChooseIfGiven(options.handset.value_or(""))},
    {kCheckKeepForThisLog, check(options.keep_log)},
    {kCheckKeepForAllLogs, check(options.keep_all)},
    {kIdOk,                act::Press()},
  }}};
}
// clang-format on

}  // namespace

void AddHandsetOptions(Command& command, ImportOptions& options) {
  command.AddOption("--handset", options.handset, "Handset type for logs that do not tell it, as the question lists it")
      .OneOf(HandsetNames());
  command.AddFlag("--keep-log,!--no-keep-log", options.keep_log, "Keep that choice for the log (default: kept)");
  command.AddFlag("--keep-all,!--no-keep-all", options.keep_all, "Keep that choice for all logs (default: kept)");
}

void AddNodeOption(Command& command, ImportOptions& options) {
  command.AddOption("--node", options.node, "Project node: outdoor, indoor or cmcc").OneOf(LogNodes());
}

Option AddSourceOptions(Command& command, ImportOptions& options) {
  Option source = command.AddOption("SOURCE", options.logs, "Log, intermediate file or text file").Takes(1);
  AddNodeOption(command, options);
  AddHandsetOptions(command, options);
  command.AddFlag("--intermediate", options.intermediate, "The source is an intermediate file");
  AddTextImportOptions(command, options.text, "source-");
  return source;
}

CString FirstLog(const ImportOptions& options) { return AbsolutePath(options.logs.front()); }

BatchAnswers AnswersFrom(const ImportOptions& options) {
  BatchAnswers answers;
  for (const std::string& log : options.logs) answers.files.push_back(AbsolutePath(log));
  answers.Fill(HandsetPages(options));
  answers.Fill(ImportSheetPages(options.sheet));
  return answers;
}

BatchAnswers SourceAnswersFrom(const ImportOptions& options) {
  BatchAnswers answers = AnswersFrom(options);
  if (IsTextSource(options)) answers.Fill(TextImportPages(options.text, ExistingPath(options.logs.front())));
  return answers;
}

// An intermediate file of which no stream came has failed.
int ImportSource(CIOManager& manager, const ImportOptions& options, const LogReport& report) {
  if (IsTextSource(options)) return manager.ImportTxt();
  if (!options.intermediate) return manager.ImportLog(LogNodes().at(options.node));
  std::vector<CString> paths = ExistingFiles(options.logs);
  manager.OpenImmediateLogFile(paths);
  return report.StreamNames().empty() ? kBatchNothing : kBatchDone;
}

IDataStream* FindStreamOrList(const LogReport& report, const std::string& name) {
  IDataStream* const stream = report.FindStream(NativeNameToGbk(name));
  if (stream != nullptr) return stream;
  std::cerr << "qloom: the file has no stream \"" << name << "\"; it has:\n";
  for (const std::string& known : report.StreamNames()) std::cerr << "  " << known << '\n';
  return nullptr;
}

}  // namespace loom
