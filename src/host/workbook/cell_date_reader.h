#pragma once

#include <optional>
#include <string_view>

#include "components/workbook_reader.h"

namespace loom {

// Whether a number format shows dates or times: by its id where that is a standard one (ECMA-376 Part 1, 18.8.30, with
// those of East Asian languages), and by its code.
bool IsDateFormatId(int id);
bool IsDateFormatCode(std::string_view code);

// A serial of a sheet's date system as days since 1899-12-30; nothing for one outside the years 1900 to 9999. Times of
// day are below 1. The 1900 system has a 29 February 1900, the 1904 system counts from 1904-01-01.
std::optional<double> DaysOfSerial(double serial, bool from_1904);

// Makes the cell a number, or a date where its format shows one and the serial has a day.
void SetWorksheetNumber(WorksheetCell& cell, double number, bool shows_date, bool from_1904);
// Makes the cell a date; its number is the serial in the sheet's date system.
void SetWorksheetDate(WorksheetCell& cell, double days, bool from_1904);

// "2012-05-03", "2012-05-03T10:30:00(.fff)(Z)", with a blank for the T, "10:30:00": days as above.
std::optional<double> DaysOfIsoText(std::string_view text);

}  // namespace loom
