#pragma once

#include "platform/cstring.h"
#include "text/dialect/text_dialect.h"

namespace loom::dialect {

// Finds how a text file is written: a guess by at most its first megabyte, then a proof over all its rows. What
// `overrides` says is not guessed. Throws FileError for a file that cannot be read, Error for an override that the file
// cannot have.
Findings Inspect(const CString& path, const Overrides& overrides);

}  // namespace loom::dialect
