#pragma once

#include <memory>

#include "components/workbook_reader.h"

namespace loom {

// A zipped workbook (ECMA-376), read as a stream: besides the block at hand it keeps the shared texts up to the last
// one that was needed.
std::unique_ptr<IWorkbookReader> OpenXlsx(const CString& path);

}  // namespace loom
