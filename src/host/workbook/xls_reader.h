#pragma once

#include <memory>

#include "components/workbook_reader.h"

namespace loom {

// A BIFF workbook. It is read as a whole when it is opened.
std::unique_ptr<IWorkbookReader> OpenXls(const CString& path);

}  // namespace loom
