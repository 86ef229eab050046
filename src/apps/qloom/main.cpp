#include <csignal>
#include <cstdlib>
#include <exception>

#include "apps/qloom/batch_front_end.h"
#include "apps/qloom/commands.h"
#include "apps/qloom/standard_output.h"

namespace loom {
namespace {

int Run(int argc, char** argv) {
  Program program("Import and export of drive-test logs", "qloom", "qloom " QLOOM_VERSION);
  CommandLine& line = program.line();
  Command commands = program.commands();
  for (const auto add : {&AddLogCommands, &AddStoreCommands, &AddRecordingCommands, &AddProjectCommands,
                         &AddIntermediateCommands, &AddOpenCommand, &AddNavigatorCommands, &AddLogToolCommands,
                         &AddTextImportCommands, &AddTextCommands, &AddExportTextCommand, &AddExportExcelCommand,
                         &AddExportLayerCommand, &AddNetImportCommand, &AddReportCommand, &AddUiCommand})
    add(commands, line);
  if (const std::optional<int> failed = program.Parse(argc, argv)) {
    if (*failed == 0) return kExitDone;
    ReportWrongUsage(argc, argv, program.WrongUsage());
    return kExitUsage;
  }
  CatchInterrupts();
  std::signal(SIGXFSZ, SIG_IGN);  // a file that may not grow is a write error like others
  setenv("QLOOM_LOG", "stderr", 0);
  try {
    return line.run();
  } catch (const std::exception& error) {
    return ReportFailure(line.common, error.what());
  }
}

}  // namespace
}  // namespace loom

int main(int argc, char** argv) {
  loom::StandardOutput output;
  return output.Finish(loom::Run(argc, argv));
}
