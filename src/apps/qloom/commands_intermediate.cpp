#include <iostream>
#include <memory>

#include "apps/qloom/commands.h"
#include "apps/qloom/log_report.h"
#include "manager/mapped_output.h"
#include "platform/encoding.h"
#include "platform/file.h"

namespace loom {
namespace {

struct IntermediateOptions {
  std::vector<std::string> files;
  std::string log;
  std::string out;
};

int RunImportIntermediate(const CommandLine& line, const IntermediateOptions& options) {
  std::vector<CString> paths = ExistingFiles(options.files);
  Session session(line.common, {}, paths.front());
  LogReport report(session);
  report.Expect(paths);
  session.manager().OpenImmediateLogFile(paths);
  Json document = report.ToJson(kBatchNothing);
  const int result = BatchResultOf(document["logs"]);
  document["result"] = result;
  if (!line.common.json) report.PrintHuman(std::cout);
  return session.Finish(std::move(document), report.ExitCodeOf(result));
}

// The project node that takes a log of the type.
ImporterTypeEnum NodeFor(ImporterTypeEnum type) { return type == kImporterAutoTestLog ? kImporterOutdoorLog : type; }

ILogfile* ImportOneLog(Session& session, const CString& path) {
  const ImporterTypeEnum type = session.manager().GetImporterType(path);
  if (type == kImporterNone || session.manager().ImportLog(NodeFor(type)) != kBatchDone) return nullptr;
  std::map<CString, ILogfile*> logs;
  CStreamManagerCreator::CreateStreamManager()->GetLogfileNames(logs);
  return logs.empty() ? nullptr : logs.begin()->second;
}

int RunToIntermediate(const CommandLine& line, const IntermediateOptions& options) {
  const CString log = ExistingFiles({options.log}).front();
  Session session(line.common, {.files = {log}}, log, ProjectUse::kRead);
  const ILogfile* const logfile = ImportOneLog(session, log);
  if (logfile == nullptr) return session.Finish({{"result", 0}, {"out", JsonName(options.out)}}, kExitFailed);
  const IntermediateSummary summary =
      SaveIntermediateFile(session.manager(), *logfile, logfile->GetStreams(), NamedPath(options.out),
                           session.host().catalogue().EventIds());
  if (!line.common.json) {
    std::cout << options.out << ": " << summary.rows << " rows in " << summary.streams << " streams, " << summary.bytes
              << " bytes\n";
  }
  return session.Finish({{"result", 1},
                         {"out", JsonName(options.out)},
                         {"streams", summary.streams},
                         {"rows", summary.rows},
                         {"bytes", summary.bytes}},
                        kExitDone);
}

}  // namespace

std::vector<CString> ExistingFiles(const std::vector<std::string>& native) {
  std::vector<CString> paths;
  for (const std::string& name : native) {
    paths.push_back(NamedPath(name));
    if (!FileExists(paths.back())) throw Error(name + ": no such file");
  }
  return paths;
}

CString ExistingPath(const std::string& native) {
  const CString path = AbsolutePath(native);
  if (!FileExists(path)) throw Error(native + ": no such file");
  return path;
}

void AddIntermediateCommands(Command& program, CommandLine& line) {
  const auto options = std::make_shared<IntermediateOptions>();
  Command read = program.AddCommand("import-intermediate", "Import intermediate files and list their streams");
  read.AddOption("FILE", options->files, "Intermediate files").Required();
  read.Runs([&line, options] { return RunImportIntermediate(line, *options); });

  Command write =
      program.Group("log").AddCommand("to-intermediate", "Import a log and write its streams as an intermediate file");
  write.AddOption("LOG", options->log, "Log file").Required();
  write.AddOption("OUT", options->out, "Intermediate file to write").Required();
  write.Runs([&line, options] { return RunToIntermediate(line, *options); });
}

}  // namespace loom
