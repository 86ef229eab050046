#pragma once

#include <vector>

#include "components/net_info.h"
#include "components/workbook_reader.h"

namespace loom {

// A worksheet of network elements: its first row that is not empty holds the headings.
class NetworkWorksheet {
 public:
  // `path` and `name` stand in errors and notes.
  NetworkWorksheet(IWorkbookReader& workbook, const CString& path, const CString& name);

  // From left to right, without blanks around them. One that comes again gets a running number, " (2)" and so on, which
  // is noted; columns without a heading are left out.
  std::vector<CString> Headings();
  // The rows below that hold something in the columns named by these headings. Error values and formulas without a
  // result count as empty and are noted. Throws Error when a heading is not there.
  std::vector<NetInfoRow> Rows(const std::vector<CString>& headings);

 private:
  IWorkbookReader& workbook_;
  CString path_;
  CString name_;
  std::size_t sheet_;
};

}  // namespace loom
