#pragma once

#include <vector>

#include "components/project.h"

namespace loom {

// The recent logs, latest first, each once. They live in a list of the caller's or in a file of the user's, one path a
// line in UTF-8, which every change rewrites.
class RecentLogs final : public CSystemConfig {
 public:
  static constexpr std::size_t kKept = 20;

  explicit RecentLogs(std::vector<CString>& paths) : paths_(paths) {}
  // A missing file is an empty list; throws FileError when it cannot be read.
  explicit RecentLogs(const CString& file);
  RecentLogs(const RecentLogs&) = delete;
  RecentLogs& operator=(const RecentLogs&) = delete;

  CString GetRecentLogFile(std::int32_t index) const override;
  // A list that cannot be written is logged: what the user does goes on without it.
  void SetRecentLogFile(const CString& path) override;

 private:
  void WriteFile() const;

  std::vector<CString> own_paths_;
  std::vector<CString>& paths_;
  CString file_;
};

}  // namespace loom
