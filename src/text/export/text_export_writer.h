#pragma once

#include <cstdint>
#include <map>
#include <vector>

#include "components/stream_manager.h"
#include "platform/cstring.h"

// Text files with one line per row of a stream.
namespace loom {

// Values of an information element outside the limits are written as invalid.
struct ExportLimit {
  CString ie_name;
  double minimum = kInvalidDouble;
  double maximum = kInvalidDouble;
};
using ExportLimits = std::map<CString, ExportLimit>;  // by IE name

struct TextExportSettings {
  CString file_name = {};                // full path
  CString separator = "\t";              // as it stands between the values
  std::int32_t write_header = 1;         // 1: the first line has the names
  std::int32_t write_units = 0;          // 1: and their units
  std::int32_t binned_data = 0;          // 1: merged and averaged data were asked for; rows are written as they are
  std::int32_t fill_gaps = 0;            // 1: values that a row lacks are those of an earlier row
  const ExportLimits* limits = nullptr;  // null: none
};

// Writes the rows of the stream. `parameters` are the names of the information elements to write; the record time and
// the position in front of them and distance and time stamp behind them are added here. Lines end with CR LF. The file
// is complete or what it was before: 1, or 0 with the reason in the log. Throws Interrupted.
int WriteStreamAsText(TextExportSettings settings, IDataStream* stream, std::vector<CString>& parameters);

}  // namespace loom
