#pragma once

#include <cstdint>
#include <optional>
#include <string>

#include "host/project/stored_project.h"

namespace loom {

// A text file of the project that was converted from a file of another tool.
struct TextSource {
  CString converted;  // as the project's record names it
  CString source;
  std::int64_t size_bytes = 0;  // of the source when it was converted
  std::int64_t changed_ns = 0;
  std::string settings;  // how it was converted: ASCII, the caller's own
};

// The source as it stands now differs from what was recorded. False also when it is not there.
bool HasChanged(const TextSource& source);
// Fills size and time of change. Throws FileError when the source is not there.
void TakeStamp(TextSource& source);

// Kept in the project's file; nothing where the project records no such source.
void PutTextSource(StoredProject& project, const TextSource& source);
std::optional<TextSource> FindTextSource(StoredProject& project, const CString& converted);
std::optional<TextSource> FindConverted(StoredProject& project, const CString& source);

}  // namespace loom
