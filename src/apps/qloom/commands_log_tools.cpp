#include <cstdio>
#include <filesystem>
#include <iostream>
#include <set>

#include "apps/qloom/commands.h"
#include "platform/log.h"
#include "platform/ui/date_time_ctrl.h"
#include "platform/ui/list_ctrl.h"
#include "resources/log_tools_templates.h"

namespace loom {
namespace {

struct CombineOptions {
  std::string out;
  std::vector<std::string> logs;
  std::string kind = "lte";
};

struct CutOptions {
  std::string log;
  std::string out;
  std::string from;
  std::string to;
};

constexpr std::string_view kLogEnding = ".log";                          // which the dialogs add, each by its own rule
const std::map<std::string, int> kKindEntries{{"lte", 0}, {"auto", 1}};  // entries of the dialog's list

// "2024-05-17 10:00:00"; a fraction may stand behind it when it is 0. Nothing for any other text.
std::optional<LocalTime> WholeSecond(const std::string& text) {
  LocalTime time;
  int length = 0;
  const int fields = std::sscanf(text.c_str(), "%4d-%2d-%2d %2d:%2d:%2d%n", &time.day.year, &time.day.month,
                                 &time.day.day, &time.hour, &time.minute, &time.second, &length);
  if (fields != 6 || !COleDateTime(time).IsValid()) return std::nullopt;
  const std::string fraction = text.substr(static_cast<std::size_t>(length));
  const bool is_whole = fraction.empty() || (fraction[0] == '.' && fraction.find_first_not_of('0', 1) == fraction.npos);
  return is_whole ? std::optional(time) : std::nullopt;
}

std::string TimeObjection(const std::string& text) {
  return WholeSecond(text) ? std::string() : "'" + text + "' is no time to the second, such as 2024-05-17 10:00:00";
}

void PickTime(CDialog& dialog, int date_id, int time_id, const std::string& text) {
  const LocalTime time = *WholeSecond(text);
  dialog.GetDlgItem<CDateTimeCtrl>(date_id).UserPickDate(time.day);
  dialog.GetDlgItem<CDateTimeCtrl>(time_id).UserPickTime(time.hour, time.minute, time.second);
}

std::vector<CString> FromTheRoot(const std::vector<std::string>& native) {
  std::vector<CString> paths;
  for (const std::string& name : native) paths.push_back(AbsolutePath(name));
  return paths;
}

// Logs that are listed; a log named twice is listed once.
bool AreAllListed(const CDialog& dialog, const CombineOptions& options, const std::vector<CString>& logs) {
  const int list = options.kind == "auto" ? kListAutoTestLogs : kListLteLogs;
  const std::set<CString> named(logs.begin(), logs.end());
  return dialog.GetDlgItem<CListCtrl>(list).GetItemCount() == static_cast<int>(named.size());
}

// The dialog's target is gone when it has merged.
BatchResult FillCombine(CDialog& dialog, BatchFrontEnd& person, const CombineOptions& options) {
  const auto target = [&] { return dialog.GetDlgItem(kEditCombineTarget).GetWindowText(); };
  dialog.GetDlgItem<CComboBox>(kComboCombineKind).UserChoose(kKindEntries.at(options.kind));
  const std::vector<CString> logs = FromTheRoot(options.logs);
  person.SetFiles(logs);
  dialog.UserPress(kButtonAddLogs);
  const BatchResult done = AreAllListed(dialog, options, logs) ? kBatchDone : kBatchInPart;
  person.SetFiles({AbsolutePath(options.out)});
  dialog.UserPress(kButtonCombineTarget);
  const bool can_merge = !WasInterrupted() && !target().IsEmpty() && dialog.GetDlgItem(kIdOk).IsWindowEnabled();
  if (can_merge)
    dialog.UserPress(kIdOk);
  else if (!WasInterrupted() && !target().IsEmpty())
    Log(LogLevel::kError, "fewer than two logs are listed, there is nothing to merge");
  const bool merged = can_merge && target().IsEmpty();
  dialog.UserPress(kIdCancel);
  return merged ? done : kBatchNothing;
}

// The dialog closes itself when it has cut.
BatchResult FillPartition(CDialog& dialog, BatchFrontEnd& person, const CutOptions& options) {
  const auto choose = [&](int button, int edit, const CString& file) {
    person.SetFiles({file});
    dialog.UserPress(button);
    return !dialog.GetDlgItem(edit).GetWindowText().IsEmpty();
  };
  const bool chosen = !WasInterrupted() &&
                      choose(kButtonPartitionSource, kEditPartitionSource, AbsolutePath(options.log)) &&
                      choose(kButtonPartitionTarget, kEditPartitionTarget, AbsolutePath(options.out));
  if (chosen) {
    PickTime(dialog, kPickerStartDate, kPickerStartTime, options.from);
    PickTime(dialog, kPickerEndDate, kPickerEndTime, options.to);
    dialog.UserPress(kIdOk);
    if (!dialog.IsRunning()) return kBatchDone;
  }
  dialog.UserPress(kIdCancel);
  return kBatchNothing;
}

// Runs a command with one dialog, which `fill` fills and presses; it tells what the dialog did.
int RunTool(const CommandLine& line, const std::string& out, int dialog_id, void (CIOManager::*command)(),
            const std::function<BatchResult(CDialog&, BatchFrontEnd&)>& fill) {
  BatchResult result = kBatchNothing;
  BatchAnswers answers;
  answers.yes = !line.common.no;
  answers.dialogs[dialog_id] = [&](CDialog& dialog, BatchFrontEnd& person) { result = fill(dialog, person); };
  Session session(line.common, std::move(answers), AbsolutePath(out));
  (session.manager().*command)();
  if (result != kBatchNothing && !line.common.json) std::cout << out << '\n';
  constexpr ExitCode kExitCodes[] = {kExitFailed, kExitDone, kExitInPart};  // by result
  return session.Finish({{"result", result}, {"out", JsonName(out)}}, kExitCodes[result]);
}

void AddCombine(Command& program, CommandLine& line) {
  const auto options = std::make_shared<CombineOptions>();
  Command command = program.AddCommand("combine", "Merge logs into one, in time order");
  command.AddOption("OUT", options->out, "Log file to write").Required();
  command.AddOption("LOG", options->logs, "Log files").Required().TakesAtLeast(2);
  command
      .AddOption("--kind", options->kind,
                 "Logs of the log store (lte, the default) or of the automatic test system (auto)")
      .OneOf(kKindEntries);
  command.Runs([&line, options] {
    ExistingFiles(options->logs);
    if (std::filesystem::path(options->out).extension().empty()) options->out += kLogEnding;
    return RunTool(line, options->out, kDialogCombine, &CIOManager::CombineLogFile,
                   [&](CDialog& dialog, BatchFrontEnd& person) { return FillCombine(dialog, person, *options); });
  });
}

void AddCut(Command& program, CommandLine& line) {
  const auto options = std::make_shared<CutOptions>();
  Command command = program.AddCommand("cut", "Write a time window of a log into a new one");
  command.AddOption("LOG", options->log, "Log file").Required();
  command.AddOption("OUT", options->out, "Log file to write").Required();
  command.AddOption("--from", options->from, "First second, YYYY-MM-DD hh:mm:ss").Required().Check(TimeObjection);
  command.AddOption("--to", options->to, "Last second, which is in the window").Required().Check(TimeObjection);
  command.Runs([&line, options] {
    ExistingFiles({options->log});
    if (!options->out.ends_with(kLogEnding)) options->out += kLogEnding;
    return RunTool(line, options->out, kDialogPartition, &CIOManager::PartitionLogfile,
                   [&](CDialog& dialog, BatchFrontEnd& person) { return FillPartition(dialog, person, *options); });
  });
}

}  // namespace

void AddLogToolCommands(Command& program, CommandLine& line) {
  AddCombine(program, line);
  AddCut(program, line);
}

}  // namespace loom
