#pragma once

#include "platform/cstring.h"
#include "text/dialect/text_dialect.h"

namespace loom {

// Puts the remarks on a file to the current notes, with line and column.
void NoteRemarks(const dialect::Remarks& remarks, const CString& path);

}  // namespace loom
