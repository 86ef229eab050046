#pragma once

#include <nlohmann/json.hpp>
#include <optional>
#include <string>

#include "platform/cstring.h"

namespace loom::testing {

// What independent programs read from a workbook, in the form that read_workbook.py gives. Both throw
// std::runtime_error when the program refuses the file.
nlohmann::json ReadWorkbook(const CString& path);
nlohmann::json ReadWorkbookByOpenpyxl(const CString& path);
// The first sheet as comma separated text in UTF-8.
std::string FirstSheetByLibreOffice(const CString& path);

bool HasOpenpyxl();
bool HasLibreOffice();

}  // namespace loom::testing
