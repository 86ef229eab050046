#pragma once

#include "platform/cstring.h"

namespace loom {

enum class FileKind { kMissing, kProject, kLog, kRecording, kIntermediate, kText, kUnknown };

// What a file is, by its content; kMissing for a folder and for what cannot be read, too.
FileKind KindOfFile(const CString& path);

}  // namespace loom
