#include "manager/log_row_counts.h"

#include <algorithm>

namespace loom {

LogRowCounts CountRows(const ILogfile& logfile) {
  LogRowCounts counts;
  for (IDataStream* const stream : logfile.GetStreams()) {
    const bool is_merged = !stream->GetMergedRows()->empty();
    (is_merged ? counts.merged_streams : counts.streams) += 1;
    (is_merged ? counts.merged_rows : counts.rows) += std::max(stream->GetRowCount(), 0);
  }
  return counts;
}

}  // namespace loom
