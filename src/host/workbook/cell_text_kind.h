#pragma once

#include <cstddef>
#include <string_view>

namespace loom {

// What an assigned text becomes, as the published object model converts texts on assignment; kept to forms that lose
// nothing of the text's value.

// Whether a text is a plain decimal number: an optional minus, digits without a zero before another digit, perhaps a
// point and digits behind it, 15 digits at most.
bool IsPlainNumber(std::string_view text);

// Writes the serial in the 1900 date system of a date and time "2012-05-03 10:30:00.250" at `out`, where kSerialRoom
// bytes are, and returns its end; null for any other text, and for times before 1900-03-01.
inline constexpr std::size_t kSerialRoom = 32;
char* PutSerial(std::string_view text, char* out);

}  // namespace loom
