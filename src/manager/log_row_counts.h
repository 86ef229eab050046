#pragma once

#include <cstdint>

#include "components/stream_manager.h"

namespace loom {

// What a log holds: the streams of its devices with their rows, and the streams merged of two of them, whose rows refer
// to rows of those two.
struct LogRowCounts {
  std::int64_t streams = 0;
  std::int64_t rows = 0;
  std::int64_t merged_streams = 0;
  std::int64_t merged_rows = 0;
};

LogRowCounts CountRows(const ILogfile& logfile);

}  // namespace loom
