#pragma once

#include <cstdint>

#include "platform/cstring.h"

namespace loom {

// The log from which the latest record was read, and the record's position in it: whoever notes something about that
// record names them.
struct ReadingPlace {
  CString path;
  std::uint64_t position_bytes = 0;
};
const ReadingPlace& Reading();

}  // namespace loom
