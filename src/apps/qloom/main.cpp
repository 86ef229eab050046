#include <csignal>
#include <cstdlib>
#include <exception>

#include "apps/qloom/batch_front_end.h"
#include "apps/qloom/commands.h"

int main(int argc, char** argv) {
  loom::Program program("Import and export of drive-test logs", "qloom", "qloom " QLOOM_VERSION);
  loom::CommandLine& line = program.line();
  loom::Command commands = program.commands();
  for (const auto add :
       {&loom::AddLogCommands, &loom::AddStoreCommands, &loom::AddProjectCommands, &loom::AddIntermediateCommands,
        &loom::AddOpenCommand, &loom::AddNavigatorCommands, &loom::AddLogToolCommands, &loom::AddTextImportCommands,
        &loom::AddExportTextCommand, &loom::AddExportExcelCommand, &loom::AddNetImportCommand, &loom::AddUiCommand})
    add(commands, line);
  if (const std::optional<int> failed = program.Parse(argc, argv)) {
    if (*failed == 0) return loom::kExitDone;
    loom::ReportWrongUsage(argc, argv, program.WrongUsage());
    return loom::kExitUsage;
  }
  loom::CatchInterrupts();
  std::signal(SIGXFSZ, SIG_IGN);  // a file that may not grow is a write error like others
  setenv("QLOOM_LOG", "stderr", 0);
  try {
    return line.run();
  } catch (const std::exception& error) {
    return loom::ReportFailure(line.common, error.what());
  }
}
