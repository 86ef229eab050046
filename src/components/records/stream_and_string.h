#pragma once

#include <cstddef>
#include <span>

#include "platform/cstring.h"

namespace loom {

struct CStreamAndString {
  // Raw bytes as text: two hexadecimal digits per byte, capital letters. `length` may be anything; what is below 0
  // counts as 0.
  static void numToString(CString& out, const std::byte* bytes, int length);
};

}  // namespace loom
