#pragma once

#include <array>
#include <cstdint>
#include <map>
#include <string_view>

#include "components/records/testdata.h"
#include "platform/cstring.h"

namespace loom {

// Why a record of a log became no row.
enum class SkipReason { kUnknownKind, kNoStream, kNotDecoded, kNoRow };
inline constexpr std::size_t kSkipReasonCount = 4;

// Counts the records of one log that became no row, and notes the place of each in the file unless
// the decoder has done so.
class SkippedRecords {
 public:
  void StartLog(const CString& path);
  void Add(SkipReason reason, const CTestdataBase& record, std::uint64_t position_bytes);
  const CString& path() const { return path_; }
  // The reasons that occurred.
  std::map<std::string_view, std::uint64_t> Counts() const;

 private:
  CString path_;
  std::array<std::uint64_t, kSkipReasonCount> counts_{};
};

}  // namespace loom
