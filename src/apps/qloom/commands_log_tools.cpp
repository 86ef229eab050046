#include <cstdio>
#include <filesystem>
#include <iostream>

#include "apps/qloom/commands.h"
#include "platform/ui/ole_date_time.h"
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

std::vector<CString> FromTheRoot(const std::vector<std::string>& native) {
  std::vector<CString> paths;
  for (const std::string& name : native) paths.push_back(AbsolutePath(name));
  return paths;
}

// clang-format off
std::vector<WindowPage> CombinePages(const CombineOptions& options) {
  return {{kDialogCombine, {
    {kComboCombineKind,    act::ChooseAt(kKindEntries.at(options.kind))},
    {kButtonAddLogs,       act::Press(), {}, FromTheRoot(options.logs)},
    {kButtonCombineTarget, act::Press(), {}, {AbsolutePath(options.out)}},
    {kIdOk,                act::Reach(), "fewer than two logs are listed, there is nothing to merge"},
    {kIdOk,                act::Press()},
  }}};
}

std::vector<WindowPage> CutPages(const CutOptions& options) {
  const LocalTime from = *WholeSecond(options.from);
  const LocalTime to = *WholeSecond(options.to);
  return {{kDialogPartition, {
    {kButtonPartitionSource, act::Press(), {}, {AbsolutePath(options.log)}},
    {kButtonPartitionTarget, act::Press(), {}, {AbsolutePath(options.out)}},
    {kPickerStartDate,       act::PickDate(from.day)},
    {kPickerStartTime,       act::PickTime(from.hour, from.minute, from.second)},
    {kPickerEndDate,         act::PickDate(to.day)},
    {kPickerEndTime,         act::PickTime(to.hour, to.minute, to.second)},
    {kIdOk,                  act::Press()},
  }}};
}
// clang-format on

BatchResult ResultOf(DialogOutcome outcome) {
  if (outcome == DialogOutcome::kDone) return kBatchDone;
  return outcome == DialogOutcome::kInPart ? kBatchInPart : kBatchNothing;
}

// A command with one dialog, whose outcome is the command's result.
int RunTool(const CommandLine& line, const std::string& out, const std::vector<WindowPage>& pages,
            void (CIOManager::*command)()) {
  Session session(line.common, BatchAnswers{.ends_at_interrupt = true}.Fill(pages), AbsolutePath(out));
  (session.manager().*command)();
  const BatchResult result = ResultOf(session.front_end().Outcome());
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
    return RunTool(line, options->out, CombinePages(*options), &CIOManager::CombineLogFile);
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
    return RunTool(line, options->out, CutPages(*options), &CIOManager::PartitionLogfile);
  });
}

}  // namespace

void AddLogToolCommands(Command& program, CommandLine& line) {
  AddCombine(program, line);
  AddCut(program, line);
}

}  // namespace loom
