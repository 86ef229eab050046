#pragma once

#include <cstdint>

#include "platform/cstring.h"
#include "text/import/column_map.h"

namespace loom {

class CProjectTxtFile;

// How a text file becomes a stream: what the importer has to know of it.
struct TextStreamSettings {
  CString stream_full_name;  // title of the file, underscore, stream name
  CString stream_name;
  CString spare_text;  // not read by the import
  CString time_layout;
  CString separator;
  std::int32_t has_header_line = 1;  // nonzero: the first line holds names
  ColumnMap columns;
  std::int32_t stream_type = 0;    // 0 downlink, 1 uplink, 2 scan
  bool protocol_is_given = false;  // by the caller, afterwards: what the import would say of it is not told

  // What the project's record of a text file and a configuration have in common: columns, separator, time layout and
  // what the first line is.
  void PutInto(CProjectTxtFile& record) const;
  void TakeFrom(const CProjectTxtFile& record);
};

// What a stream type of the text import becomes as a kind of stream.
std::int32_t StreamKindOf(std::int32_t text_stream_type);

}  // namespace loom
