#pragma once

#include <string_view>

namespace loom {

// How many fields a line of titles has when a project looks whether its text file still fits: every separator is
// widened by a blank, so that empty fields count; every character of the separator delimits, and runs of delimiters
// delimit once.
int CountTitleTokens(std::string_view line, std::string_view separator);

}  // namespace loom
