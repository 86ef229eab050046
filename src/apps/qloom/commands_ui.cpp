#include <iostream>

#include "apps/qloom/commands.h"
#include "apps/qloom/log_report.h"
#include "apps/qloom/ui_script.h"
#include "platform/encoding.h"
#include "platform/ui/scripted_user.h"

namespace loom {
namespace {

struct UiOptions {
  std::string command;
  std::vector<std::string> sources;
  std::string script;
  std::string node = "outdoor";
};

using FacadeCommand = int (*)(CIOManager&, ImporterTypeEnum node);
const std::map<std::string, FacadeCommand> kCommands{
    {"import-log", [](CIOManager& manager, ImporterTypeEnum node) { return manager.ImportLog(node); }},
    {"import-txt", [](CIOManager& manager, ImporterTypeEnum) { return manager.ImportTxt(); }},
    {"export-txt", [](CIOManager& manager, ImporterTypeEnum) { return manager.ExportTxt(); }},
    {"import-net",
     [](CIOManager& manager, ImporterTypeEnum) {
       ProtocolTypeEnum protocol = kProtocolTdScdma;
       return manager.ImportNetInfo(protocol) > 0 ? int{kImportDone} : int{kImportFailed};
     }},
    {"combine",
     [](CIOManager& manager, ImporterTypeEnum) {
       manager.CombineLogFile();
       return int{kImportDone};
     }},
    {"partition",
     [](CIOManager& manager, ImporterTypeEnum) {
       manager.PartitionLogfile();
       return int{kImportDone};
     }},
};

// Prints the window in front after each step, with the messages that came with it.
class StatePrinter {
 public:
  explicit StatePrinter(ScriptedUser& user) : user_(user) {
    user_.SetStepListener([this] { Print(); });
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
  ScriptedUser user;
  user.PlayFreely();
  try {
    AddScript(user, options.script);
  } catch (const Error& error) {
    return error.what();
  }
  const StatePrinter printer(user);
  result = kCommands.at(options.command)(session.manager(), LogNodes().at(options.node));
  user.Finish();
  return user.failures().empty() ? std::string() : user.failures().front();
}

int RunUi(const CommandLine& line, const UiOptions& options) {
  CommonOptions common = line.common;
  common.json = false;  // states are JSON lines by themselves
  const std::vector<CString> sources = ExistingFiles(options.sources);
  BatchAnswers answers;
  answers.yes = !common.no;
  answers.files = sources;
  Session session(common, std::move(answers), sources.empty() ? CString() : sources.front());
  LogReport report(session);
  if (!sources.empty() && session.manager().ImportLog(LogNodes().at(options.node)) != kBatchDone) {
    return session.Finish(Json::object(), kExitFailed);
  }
  int result = 0;
  const std::string failure = PlayScript(session, options, result);
  if (failure.empty()) return session.Finish(Json::object(), report.ExitCodeOf(result));
  std::cerr << "qloom: " << failure << '\n';
  session.KeepProjectFile();
  return session.Finish(Json::object(), kExitUsage);
}

}  // namespace

void AddUiCommand(Command& program, CommandLine& line) {
  const auto options = std::make_shared<UiOptions>();
  Command ui = program.AddCommand("ui", "Play a person's actions in the windows of a command");
  ui.AddOption("COMMAND", options->command, "import-log, import-txt, export-txt, import-net, combine or partition")
      .Required()
      .OneOf(kCommands);
  ui.AddOption("SOURCE", options->sources, "Logs that are imported first");
  ui.AddOption("--node", options->node, "Project node: outdoor, indoor or cmcc").OneOf(LogNodes());
  ui.AddOption("--script", options->script, "JSON lines, one action each").Required();
  ui.Runs([&line, options] { return RunUi(line, *options); });
}

}  // namespace loom
