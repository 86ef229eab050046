#pragma once

#include <iosfwd>
#include <optional>
#include <string>
#include <vector>

#include "apps/qloom/recording_report.h"

namespace loom {

// Recordings among the files of an import. The log of each lies beside the project as TITLE.log, without a project in
// the folder for temporary files; TITLE_2.log, TITLE_3.log ... where that name is taken.
class RecordingImport {
 public:
  // Tells by their contents which files are recordings. Throws UsageError for a track without any.
  RecordingImport(const std::vector<std::string>& files, const std::optional<std::string>& track,
                  const std::string& project);

  bool IsEmpty() const { return recordings_.empty(); }
  // The files, native, with the logs in the place of the recordings.
  const std::vector<std::string>& Files() const { return files_; }
  // A recording of which no log comes is left to the import to report.
  void MakeLogs();

  Json ToJson() const;
  void Print(std::ostream& out) const;

 private:
  struct Recording {
    CString path;
    CString log;
    RecordingReport report;
  };

  std::vector<std::string> files_;
  std::optional<CString> track_;
  std::vector<Recording> recordings_;
};

}  // namespace loom
