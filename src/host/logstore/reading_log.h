#pragma once

#include "platform/cstring.h"

namespace loom {

// Path of the log from which the latest record was read: whoever notes something about that record names it.
const CString& ReadingLogPath();

}  // namespace loom
