#pragma once

#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "apps/qloom/batch_front_end.h"
#include "apps/qloom/command_line.h"
#include "apps/qloom/json_streams.h"
#include "host/application.h"
#include "manager/io_manager.h"
#include "platform/notes.h"

namespace loom {

enum ExitCode : int {
  kExitDone = 0,
  kExitFailed = 1,  // refused or failed
  kExitUsage = 2,
  kExitInPart = 3,
  kExitCancelled = 130,
};

// A file named on the command line, as it is or with bytes as `\xHH`; from the root where a project has to find it
// again from any folder.
CString NamedPath(const std::string& native);
CString AbsolutePath(const std::string& native);

// Notes as every command reports them: the first places of a kind one by one, the rest of the kind counted.
Json NotesJson(const Notes& notes);
void PrintNotes(const Notes& notes);  // on stderr

Json MessageJson(const MessageBoxRequest& request);

// Whether a command leaves something in the project. One that does holds it from the start, so that whatever keeps it
// from being saved is known before anything is done; one that only reads takes no lock and sees what was saved last.
enum class ProjectUse { kRead, kChange };

// Tells what has ended a command, on stderr and with --json as a document with what its session had to report. Gives
// the exit code.
int ReportFailure(const CommonOptions& options, const std::string& what);
// The document for arguments that were not understood, whose message stands on stderr.
void ReportWrongUsage(int argc, char** argv, const std::string& what);

// One run of `qloom`: the host with its project, the person in front, the facade, and what is reported at the end.
class Session {
 public:
  // A temporary project lives in the folder of the file that is worked on, if any. Throws Error when the project cannot
  // be opened; one that another process holds is waited for, which is told on stderr.
  Session(const CommonOptions& options, BatchAnswers answers, const CString& worked_on,
          ProjectUse use = ProjectUse::kChange);
  Session(const Session&) = delete;
  Session& operator=(const Session&) = delete;
  ~Session();

  HostApplication& host() { return host_; }
  const BatchFrontEnd& front_end() const { return front_end_; }
  CIOManager& manager() { return manager_; }
  const CommonOptions& options() const { return options_; }
  const Notes& notes() const { return notes_; }
  const std::vector<MessageShown>& messages() const { return front_end_.messages(); }

  // Leaves the project's file as it is, whatever the command does from here on.
  void KeepProjectFile() { save_project_ = false; }

  // Saves the project after a command that did something, reports messages and notes (in `document`, or on stderr) and
  // prints the document with --json, also when the saving failed: "error" says why. Gives the program's exit code.
  int Finish(Json document, int exit_code);
  // The same for a command whose output is JSON lines: with --json there is a document, in a line, only when it failed.
  int FinishLines(int exit_code, const std::string& error = {});

 private:
  std::string SaveProject(int exit_code);
  Json MessagesJson() const;
  void PrintDiagnostics() const;

  CommonOptions options_;
  bool save_project_;
  bool is_reported_ = false;
  Notes notes_;
  NotesScope notes_scope_;
  HostApplication host_;
  BatchFrontEnd front_end_;
  CIOManager manager_;
};

}  // namespace loom
