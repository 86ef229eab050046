#pragma once

#include <memory>

#include "components/workbook_reader.h"

namespace loom {

// A BIFF workbook. It is read as a whole when it is opened. The library under it gives no formula results and no error
// values: those cells come as formulas without a value.
std::unique_ptr<IWorkbookReader> OpenXls(const CString& path);

}  // namespace loom
