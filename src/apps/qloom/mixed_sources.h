#pragma once

#include <optional>
#include <string>
#include <vector>

#include "apps/qloom/log_source.h"
#include "apps/qloom/recording_import.h"

namespace loom {

// Files of several kinds for one command: logs, recordings of handsets, intermediate files and text files, told apart
// by what they hold.
class MixedSources {
 public:
  // Throws Error for a file that is not there. `options` name the files, and the project node and the handset of logs.
  MixedSources(const ImportOptions& options, const std::string& project);

  const std::vector<CString>& Files() const { return files_; }
  // For the session that imports them.
  BatchAnswers Answers() const { return AnswersFrom(logs_); }

  // Imports all of them; a text file that cannot be read is noted. Gives the program's exit code.
  int Import(Session& session, LogReport& report);

 private:
  int ImportLogs(Session& session);
  int ImportIntermediate(Session& session);
  int ImportTexts(Session& session);

  std::vector<CString> files_;
  ImportOptions logs_;
  std::vector<CString> intermediate_;
  std::vector<CString> texts_;
  std::optional<RecordingImport> recordings_;
};

}  // namespace loom
