#pragma once

#include <string>

#include "host/recordings/diag_reader.h"
#include "platform/cstring.h"

namespace loom::recordings {

// Told by the content, whatever the name. A capture is one only when its file header says so; logs of ours are none.
// Throws FileError when the file cannot be read.
RecordingFormat FormatOf(const InputFile& file);
// The reason to refuse a file of no such format.
std::string WhyNoRecording(const InputFile& file);

}  // namespace loom::recordings
