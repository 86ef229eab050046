#include <unistd.h>

#include <iostream>

#include "apps/qloom/commands.h"
#include "apps/qloom/log_report.h"
#include "apps/qloom/ui_script.h"
#include "apps/text_files/finder_dialog.h"
#include "platform/encoding.h"
#include "platform/ui/property_sheet.h"
#include "platform/ui/scripted_user.h"

namespace loom {
namespace {

struct UiOptions {
  std::string command;
  std::vector<std::string> sources;
  std::string script;
  std::string node = "outdoor";
};

using FacadeCommand = int (*)(Session&, ImporterTypeEnum node);
const std::map<std::string, FacadeCommand> kCommands{
    {"import-log", [](Session& session, ImporterTypeEnum node) { return session.manager().ImportLog(node); }},
    {"import-txt", [](Session& session, ImporterTypeEnum) { return session.manager().ImportTxt(); }},
    {"recognise-txt",
     [](Session& session, ImporterTypeEnum) {
       return AskAndImportWithFinder(session.host().project(), session.manager());
     }},
    {"export-txt", [](Session& session, ImporterTypeEnum) { return session.manager().ExportTxt(); }},
    {"import-net",
     [](Session& session, ImporterTypeEnum) {
       ProtocolTypeEnum protocol = kProtocolTdScdma;
       return session.manager().ImportNetInfo(protocol) > 0 ? int{kImportDone} : int{kImportFailed};
     }},
    {"combine",
     [](Session& session, ImporterTypeEnum) {
       session.manager().CombineLogFile();
       return int{kImportDone};
     }},
    {"partition",
     [](Session& session, ImporterTypeEnum) {
       session.manager().PartitionLogfile();
       return int{kImportDone};
     }},
};

// The person of a script, with the options that hold for whoever is in front of the program.
class ScriptPerson final : public ScriptedUser {
 public:
  explicit ScriptPerson(const CommonOptions& options) : options_(options) {
    PlayFreely();
    SetStop(&WasInterrupted);
  }

  void ShowDialog(CDialog& dialog) override {
    if (options_.trace_ui) TraceWindow(dialog, dialog.GetTitle());
    ScriptedUser::ShowDialog(dialog);
  }
  void ShowSheet(CPropertySheet& sheet) override {
    if (options_.trace_ui) TraceWindow(*sheet.GetActivePage(), sheet.GetTitle());
    ScriptedUser::ShowSheet(sheet);
  }
  MessageAnswer ShowMessage(const MessageBoxRequest& request) override {
    const MessageAnswer answer = ScriptedUser::ShowMessage(request);
    if (options_.trace_ui) TraceMessage(request, answer);
    return answer;
  }
  std::optional<std::vector<CString>> ShowFileDialog(const FileDialogRequest& request) override {
    if (options_.trace_ui) TraceFileDialog(request);
    return ScriptedUser::ShowFileDialog(request);
  }
  std::unique_ptr<ProgressView> ShowProgress(const ProgressRequest& request) override {
    return MakeBatchProgress(request, options_.cancel_at, options_.trace_ui, isatty(STDERR_FILENO) != 0);
  }

 private:
  const CommonOptions& options_;
};

// Prints the window in front after each step, with the messages that came with it.
class StatePrinter {
 public:
  explicit StatePrinter(ScriptedUser& user) : user_(user) {
    user_.SetStepListener([this] { Print(); });
  }
  // Messages that came behind the last step, in a state of their own.
  void PrintRest() {
    if (seen_ < user_.answers().size()) Print();
  }

 private:
  void Print() {
    Json messages = Json::array();
    for (; seen_ < user_.answers().size(); ++seen_) {
      messages.push_back(MessageJson(user_.messages()[seen_]));
      messages.back()["answer"] = MessageAnswerName(user_.answers()[seen_]);
    }
    std::cout << FrontStateJson(user_, std::move(messages)).dump() << '\n';
  }

  ScriptedUser& user_;
  std::size_t seen_ = 0;
};

// The first thing that went otherwise than the script says; empty when nothing did.
std::string PlayScript(Session& session, const UiOptions& options, int& result) {
  ScriptedUser::SetFailureHandler([](const std::string&) {});  // the user remembers them
  ScriptPerson user(session.options());
  try {
    AddScript(user, options.script);
  } catch (const Error& error) {
    return error.what();
  }
  StatePrinter printer(user);
  result = kCommands.at(options.command)(session, LogNodes().at(options.node));
  user.Finish();
  printer.PrintRest();
  return user.failures().empty() ? std::string() : user.failures().front();
}

int RunUi(const CommandLine& line, const UiOptions& options) {
  BatchAnswers answers;
  for (const std::string& source : options.sources) answers.files.push_back(ExistingPath(source));
  const CString first = answers.files.empty() ? CString() : answers.files.front();
  Session session(line.common, std::move(answers), first);
  LogReport report(session);
  if (!first.IsEmpty()) {
    const int imported = session.manager().ImportLog(LogNodes().at(options.node));
    if (imported != kBatchDone) return session.FinishLines(WasInterrupted() ? kExitCancelled : kExitFailed);
  }
  int result = 0;
  const std::string failure = PlayScript(session, options, result);
  if (failure.empty()) return session.FinishLines(report.ExitCodeOf(result));
  std::cerr << "qloom: " << failure << '\n';
  session.KeepProjectFile();
  return session.FinishLines(kExitUsage, failure);
}

}  // namespace

void AddUiCommand(Command& program, CommandLine& line) {
  const auto options = std::make_shared<UiOptions>();
  Command ui = program.AddCommand("ui", "Play a person's actions in the windows of a command");
  ui.AddOption("COMMAND", options->command,
               "import-log, import-txt, recognise-txt, export-txt, import-net, combine or partition")
      .Required()
      .OneOf(kCommands);
  ui.AddOption("SOURCE", options->sources, "Logs that are imported first");
  ui.AddOption("--node", options->node, "Project node: outdoor, indoor or cmcc").OneOf(LogNodes());
  ui.AddOption("--script", options->script, "JSON lines, one action each").Required();
  ui.Runs([&line, options] { return RunUi(line, *options); });
}

}  // namespace loom
