#pragma once

#include <string>
#include <vector>

#include "host/workbook/workbook_writer.h"

namespace loom {

// The XML of a workbook's parts around the cells. Sheets are numbered from 1 in their order.
std::string ContentTypesXml(std::size_t sheets);
std::string PackageRelationsXml();
std::string WorkbookXml(const std::vector<CString>& names, std::size_t active);
std::string WorkbookRelationsXml(std::size_t sheets);
struct CellStyle {
  std::optional<std::int32_t> vertical_align;  // in the object model's numbers
  bool shows_time = false;                     // date and time with milliseconds
};
// `styles` by number; style 0 is that of cells without one.
std::string StylesXml(const std::vector<CellStyle>& styles);
// Everything of a sheet in front of its rows.
std::string SheetHeadXml(const WrittenSheet& sheet, bool active);
std::string SheetPartName(std::size_t number);

}  // namespace loom
