#include <algorithm>
#include <iostream>

#include "apps/qloom/commands.h"
#include "apps/qloom/log_report.h"
#include "apps/text_files/text_file_import.h"
#include "components/project.h"
#include "platform/encoding.h"
#include "platform/file.h"

namespace loom {
namespace {

struct OpenOptions {
  std::string project;
  bool save = false;
};

// What the project lists, as it stands before the first log: one that cannot be opened leaves the list.
std::vector<CString> ListedLogs() {
  std::vector<CString> paths;
  for (const CProjectLogfile* log : g_project->GetNTLog()->GetProjectLogFiles()) paths.push_back(log->GetLogFilePath());
  return paths;
}

int OpenText(Session& session, const CString& name) {
  RefreshConvertedText(session.host().project(), name);
  const int result = session.manager().OpenTxt(name);
  RestoreProtocol(session.host().project(), name);
  return result;
}

Json OpenTexts(Session& session, LogReport& report) {
  std::vector<CString> names;
  for (const CProjectTxtFile& text : session.host().project().Content().text_files) names.push_back(text.GetTxtName());
  Json texts = Json::array();
  for (const CString& name : names) {
    const bool is_left = WasInterrupted();
    if (is_left) report.LeaveText(name);
    texts.push_back({{"name", JsonText(name)}, {"result", is_left ? kNotAttempted : OpenText(session, name)}});
  }
  return texts;
}

// A log or text that was cancelled has left the list, and those behind an interrupt were not opened.
bool WasCancelled(const Json& outcomes) {
  return WasInterrupted() || std::any_of(outcomes.begin(), outcomes.end(),
                                         [](const Json& outcome) { return outcome["result"] == kImportCancelled; });
}

int RunOpen(const CommandLine& line, const OpenOptions& options) {
  CommonOptions common = line.common;
  common.project = options.project;
  if (!FileExists(NamedPath(options.project))) throw Error(options.project + ": there is no such project");
  Session session(common, {}, {}, options.save ? ProjectUse::kChange : ProjectUse::kRead);
  LogReport report(session);
  const std::vector<CString> listed = ListedLogs();
  report.Expect(listed);
  for (const CString& path : listed) {
    if (WasInterrupted()) break;
    session.manager().OpenLog(path, false);
  }
  Json document = report.ToJson(kBatchNothing);
  document["texts"] = OpenTexts(session, report);
  Json outcomes = document["logs"];
  outcomes.insert(outcomes.end(), document["texts"].begin(), document["texts"].end());
  const int result = BatchResultOf(outcomes);
  document["result"] = result;
  const bool is_cancelled = WasCancelled(outcomes);
  if (is_cancelled) session.KeepProjectFile();
  if (is_cancelled && options.save) document["error"] = "the project is not saved: an import was cancelled";
  if (!common.json) report.PrintHuman(std::cout);
  if (document.contains("error")) std::cerr << "qloom: " << document["error"].get<std::string>() << '\n';
  return session.Finish(std::move(document), report.ExitCodeOf(result));
}

}  // namespace

void AddOpenCommand(Command& program, CommandLine& line) {
  const auto options = std::make_shared<OpenOptions>();
  Command open = program.AddCommand("open", "Import again everything that a project lists");
  open.AddOption("PROJECT", options->project, "Project file").Required();
  open.AddFlag("--save", options->save, "Save the project afterwards; what could not be opened is no longer listed");
  open.Runs([&line, options] { return RunOpen(line, *options); });
}

}  // namespace loom
