#pragma once

#include <string>

#include "platform/cstring.h"
#include "text/dialect/column_elements.h"

namespace loom::dialect {

struct Converted {
  std::uint64_t rows = 0;
  std::string separator;                     // of the import form
  std::map<std::int32_t, CString> elements;  // column of the import form -> information element
  bool has_time = false;
  Remarks remarks;
};

// UTF-8, commas, RFC 4180, header first; every cell as its text. Records that are shorter than the table are filled up,
// longer ones keep their cells. The file is complete or absent.
Converted ConvertToCsv(const CString& path, const Findings& found, const CString& out);

enum class TimeForm {
  kSeconds,  // since 1970, with three to six decimals: the importer's free form
  kLayout,   // yyyy-mm-dd hh:nn:ss.ms, local
};

// What the text importer takes: GBK, a separator that no cell contains, one header line; RecordTime, Longitude and
// Latitude in degrees first, then the other columns, at last the number of the source's line. Mapped columns are titled
// by their element and stand in its unit; words for nothing become empty cells. What cannot be a value of its element
// is left out and counted.
Converted ConvertToImport(const CString& path, const Findings& found, const ElementMapping& mapping, TimeForm time_form,
                          const CString& out);

inline constexpr const char* kImportTimeLayout = "yyyy-mm-dd hh:nn:ss.ms";
inline constexpr const char* kClockLayout = "hh:nn:ss.ms";  // where the file has no date

}  // namespace loom::dialect
