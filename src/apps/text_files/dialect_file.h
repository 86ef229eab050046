#pragma once

#include "platform/cstring.h"
#include "text/dialect/text_dialect.h"

namespace loom {

// A dialect in a file (JSON), of which everything may be left away. Throws Error with file and reason.
dialect::Overrides ReadDialectFile(const CString& path);
void WriteDialectFile(const CString& path, const dialect::Findings& found);

}  // namespace loom
