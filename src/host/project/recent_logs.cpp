#include "host/project/recent_logs.h"

#include <algorithm>

#include "platform/encoding.h"
#include "platform/file.h"
#include "platform/log.h"

namespace loom {

RecentLogs::RecentLogs(const CString& file) : paths_(own_paths_), file_(file) {
  if (!FileExists(file)) return;
  const std::string text = ReadWholeText(file);
  for (std::size_t at = 0; at < text.size();) {
    const std::size_t end = std::min(text.find('\n', at), text.size());
    if (end > at && paths_.size() < kKept) paths_.push_back(NativePathToGbk(text.substr(at, end - at)));
    at = end + 1;
  }
}

CString RecentLogs::GetRecentLogFile(std::int32_t index) const {
  const auto at = static_cast<std::size_t>(index);
  return index >= 0 && at < paths_.size() ? paths_[at] : CString();
}

void RecentLogs::SetRecentLogFile(const CString& path) {
  std::erase(paths_, path);
  paths_.insert(paths_.begin(), path);
  if (paths_.size() > kKept) paths_.resize(kKept);
  if (!file_.IsEmpty()) WriteFile();
}

void RecentLogs::WriteFile() const {
  std::string text;
  for (const CString& path : paths_) text += GbkPathToNative(path) + '\n';
  try {
    WriteWholeFile(file_, text);
  } catch (const FileError& error) {
    Log(LogLevel::kWarning, std::string("recent logs are not remembered: ") + error.what());
  }
}

}  // namespace loom
