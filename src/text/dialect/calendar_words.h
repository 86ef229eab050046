#pragma once

#include <array>
#include <string_view>

#include "platform/characters.h"

// Letters, digits and names of months, as files of other tools spell them.
namespace loom::dialect {

constexpr bool IsLetter(char c) { return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z'); }

inline constexpr int kShortYearPivot = 70;  // 70 is 1970, 69 is 2069

inline constexpr auto kMonths = std::to_array<std::string_view>(
    {"jan", "feb", "mar", "apr", "may", "jun", "jul", "aug", "sep", "oct", "nov", "dec"});

}  // namespace loom::dialect
