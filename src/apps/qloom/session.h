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

// The path of a file named on the command line, from the root: a project finds its logs again from any folder.
CString AbsolutePath(const std::string& native);

// Notes as every command reports them: the first places of a kind one by one, the rest of the kind counted.
Json NotesJson(const Notes& notes);
void PrintNotes(const Notes& notes);  // on stderr

Json MessageJson(const MessageBoxRequest& request);

// One run of `qloom`: the host with its project, the person in front, the facade, and what is reported at the end.
class Session {
 public:
  // A temporary project lives in the folder of the file that is worked on, if any.
  Session(const CommonOptions& options, BatchAnswers answers, const CString& worked_on);
  ~Session();

  HostApplication& host() { return host_; }
  const BatchFrontEnd& front_end() const { return front_end_; }
  CIOManager& manager() { return manager_; }
  const CommonOptions& options() const { return options_; }
  const Notes& notes() const { return notes_; }
  const std::vector<MessageShown>& messages() const { return front_end_.messages(); }

  // Leaves the project's file as it is, whatever the command does.
  void KeepProjectFile() { save_project_ = false; }

  // Saves the project after a command that did something, reports messages and notes (in `document`, or on stderr) and
  // prints the document with --json. Gives the program's exit code.
  int Finish(Json document, int exit_code);

 private:
  Json MessagesJson() const;
  void PrintDiagnostics() const;

  CommonOptions options_;
  bool save_project_ = true;
  Notes notes_;
  NotesScope notes_scope_;
  HostApplication host_;
  BatchFrontEnd front_end_;
  CIOManager manager_;
};

}  // namespace loom
