#include <iostream>

#include "apps/qloom/commands.h"
#include "apps/qloom/log_report.h"
#include "apps/qloom/text_import_wizard.h"
#include "platform/encoding.h"

namespace loom {
namespace {

struct TextOptions {
  std::string file;
  TextImportOptions wizard;
};

int Finish(Session& session, const LogReport& report, int result, const CString& path) {
  if (!session.options().json) report.PrintHuman(std::cout);
  Json document{{"result", result}, {"path", JsonText(path)}, {"stream", nullptr}};
  if (IDataStream* const stream = report.TextStream(path)) document["stream"] = StreamJson(*stream);
  return session.Finish(std::move(document), report.ExitCodeOf(result));
}

BatchAnswers AnswersFrom(const CommonOptions& common) {
  BatchAnswers answers;
  answers.yes = !common.no;
  answers.cancel_at = common.cancel_at;
  return answers;
}

int RunImportText(const CommandLine& line, const TextOptions& options) {
  const CString path = ExistingPath(options.file);
  BatchAnswers answers = AnswersFrom(line.common);
  answers.text_import = TextImportAnswersFrom(options.wizard, path);
  Session session(line.common, std::move(answers), path);
  const LogReport report(session);
  const int result = session.manager().ImportTxt();
  return Finish(session, report, result, path);
}

int RunOpenText(const CommandLine& line, const TextOptions& options) {
  const CString path = AbsolutePath(options.file);
  BatchAnswers answers = AnswersFrom(line.common);
  if (options.wizard.IsAnyGiven()) answers.text_import = TextImportAnswersFrom(options.wizard, path);
  Session session(line.common, std::move(answers), path);
  const LogReport report(session);
  const int result = session.manager().OpenTxt(path);
  return Finish(session, report, result, path);
}

}  // namespace

void AddTextImportCommands(Command& program, CommandLine& line) {
  const auto add = [&](const char* name, const char* description, int (*run)(const CommandLine&, const TextOptions&)) {
    const auto options = std::make_shared<TextOptions>();
    Command command = program.AddCommand(name, description);
    command.AddOption("FILE", options->file, "Text file").Required();
    AddTextImportOptions(command, options->wizard);
    command.Runs([&line, options, run] { return run(line, *options); });
  };
  add("import-text", "Import a delimited text file as a stream", &RunImportText);
  add("open-text", "Import a text file of the project again; the options are for a file that changed", &RunOpenText);
}

}  // namespace loom
