#include <iostream>

#include "apps/qloom/commands.h"
#include "apps/qloom/log_source.h"
#include "apps/qloom/text_export_wizard.h"
#include "platform/encoding.h"

namespace loom {
namespace {

struct ExportOptions {
  ImportOptions source;
  TextExportOptions wizard;
};

int RunExport(const CommandLine& line, const ExportOptions& options) {
  BatchAnswers answers = SourceAnswersFrom(options.source);
  answers.Fill(TextExportPages(options.wizard));
  Session session(line.common, std::move(answers), FirstLog(options.source));
  LogReport report(session);
  const int imported = ImportSource(session.manager(), options.source, report);
  int exit_code = report.ExitCodeOf(imported);
  Json document{{"result", 0}, {"out", nullptr}};
  if (exit_code == kExitDone) {
    const bool is_known = FindStreamOrList(report, options.wizard.stream) != nullptr;
    const int result = is_known ? session.manager().ExportTxt() : 0;
    exit_code = result == 1 ? kExitDone : kExitFailed;
    document["result"] = result;
    if (result == 1) document["out"] = JsonText(session.front_end().PickedFile());
    if (result == 1 && !line.common.json) std::cout << GbkPathToNative(session.front_end().PickedFile()) << '\n';
  }
  return session.Finish(std::move(document), exit_code);
}

}  // namespace

void AddExportTextCommand(Command& program, CommandLine& line) {
  const auto options = std::make_shared<ExportOptions>();
  Command command =
      program.AddCommand("export-text", "Import a log or a text file and write one of its streams as a text file");
  AddSourceOptions(command, options->source).Required();
  AddTextExportOptions(command, options->wizard);
  command.Runs([&line, options] { return RunExport(line, *options); });
}

}  // namespace loom
