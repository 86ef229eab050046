#pragma once

#include "platform/cstring.h"

// The text between the values of a line in a delimited text file.
namespace loom {

// Whether a person may choose the character: no digit, no letter, nothing outside ASCII.
constexpr bool IsSeparatorSymbol(char symbol) {
  const auto code = static_cast<unsigned char>(symbol);
  return code <= 47 || (code >= 58 && code <= 64) || (code >= 91 && code <= 96) || (code >= 123 && code <= 126);
}

// Characters that occur in times and numbers get a blank behind them.
inline CString WidenedSeparator(const CString& separator) {
  const char first = separator.IsEmpty() ? '\0' : separator[0];
  return first == ' ' || first == '-' || first == ':' || first == '.' ? separator + ' ' : separator;
}

}  // namespace loom
