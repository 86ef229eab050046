#include "apps/qloom/recording_import.h"

#include <filesystem>
#include <ostream>

#include "platform/encoding.h"
#include "platform/path.h"

namespace loom {

RecordingImport::RecordingImport(const std::vector<std::string>& files, const std::optional<std::string>& track,
                                 const std::string& project)
    : files_(files) {
  if (track) track_ = AbsolutePath(*track);
  const CString folder = project.empty() ? NativePathToGbk(std::filesystem::temp_directory_path().native())
                                         : FolderOf(AbsolutePath(project));
  std::vector<CString> logs;
  for (std::string& file : files_) {
    const CString path = AbsolutePath(file);
    if (!IsRecording(path)) continue;
    logs.push_back(FreeLogPath(path, folder, logs));
    recordings_.push_back({path, logs.back(), {}});
    file = GbkPathToNative(logs.back());
  }
  if (track_ && recordings_.empty())
    throw UsageError("--track", "a track goes with recordings, and none is among the files");
}

void RecordingImport::MakeLogs() {
  for (Recording& recording : recordings_) {
    RecordingOptions options;
    options.files = {recording.path};
    options.out = recording.log;
    options.track = track_;
    recording.report = MakeLogFromRecordings(options);
  }
}

Json RecordingImport::ToJson() const {
  Json json = Json::array();
  for (const Recording& recording : recordings_) {
    json.push_back(RecordingReportJson(recording.report));
    json.back()["out"] = recording.report.is_written ? JsonText(recording.log) : Json();
  }
  return json;
}

void RecordingImport::Print(std::ostream& out) const {
  for (const Recording& recording : recordings_)
    PrintRecordingReport(out, recording.report, GbkPathToNative(recording.log));
}

}  // namespace loom
