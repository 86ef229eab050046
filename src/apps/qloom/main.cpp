#include <csignal>
#include <cstdlib>
#include <exception>
#include <iostream>

#include "apps/qloom/batch_front_end.h"
#include "apps/qloom/commands.h"

namespace {

void AddCommonOptions(CLI::App& command, loom::CommonOptions& options) {
  command.add_flag("--json", options.json, "One JSON document on standard output");
  command.add_flag("--no,!--yes", options.no, "Answer to questions (default --yes)");
  command.add_flag("--trace-ui", options.trace_ui, "Windows, progress and messages as JSON lines on standard error");
  command.add_option("--cancel-at", options.cancel_at, "Press cancel when the progress reaches this percentage")
      ->check(CLI::Range(0, 100));
  command.add_option("--project", options.project, "Project to work in, created when missing");
  command.add_option("--config", options.config,
                     "Folder of the catalogue (default: ../Config from the program's folder)");
}

}  // namespace

namespace loom {

CLI::App* AddCommand(CLI::App& parent, CommandLine& line, const char* name, const char* description) {
  CLI::App* command = parent.add_subcommand(name, description);
  AddCommonOptions(*command, line.common);
  return command;
}

}  // namespace loom

int main(int argc, char** argv) {
  using loom::CommandLine;
  CLI::App app{"Import and export of drive-test logs", "qloom"};
  app.set_version_flag("--version", "qloom " QLOOM_VERSION);
  app.require_subcommand(1);
  CommandLine line;
  loom::AddLogCommands(app, line);
  loom::AddStoreCommands(app, line);
  loom::AddProjectCommands(app, line);
  loom::AddIntermediateCommands(app, line);
  loom::AddOpenCommand(app, line);
  loom::AddNavigatorCommands(app, line);
  loom::AddLogToolCommands(app, line);
  loom::AddTextImportCommands(app, line);
  loom::AddExportTextCommand(app, line);
  loom::AddExportExcelCommand(app, line);
  loom::AddNetImportCommand(app, line);
  loom::AddUiCommand(app, line);
  try {
    app.parse(argc, argv);
  } catch (const CLI::ParseError& error) {
    return app.exit(error) == 0 ? loom::kExitDone : loom::kExitUsage;
  }
  loom::CatchInterrupts();
  std::signal(SIGXFSZ, SIG_IGN);  // a file that may not grow is a write error like others
  setenv("QLOOM_LOG", "stderr", 0);
  try {
    return line.run();
  } catch (const std::exception& error) {
    std::cerr << "qloom: " << error.what() << '\n';
    return loom::kExitFailed;
  }
}
