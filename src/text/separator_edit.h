#pragma once

#include <optional>

#include "platform/cstring.h"

namespace loom {

class CEdit;

// What a person typed as separator: one symbol. One that is not allowed is told, taken out of the edit and gives an
// empty text; nothing while the edit is empty.
std::optional<CString> TypedSeparator(CEdit& edit);

}  // namespace loom
