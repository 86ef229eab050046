#pragma once

#include <set>
#include <string>
#include <string_view>

#include "platform/cstring.h"

namespace loom {

// Replaces the escapes _xHHHH_ (UTF-16 units; ECMA-376 Part 1, 22.9.2.19) of a text in place. A unit that stands for no
// character becomes U+FFFD.
void DecodeEscapes(std::string& utf8);

// The name of a sheet as it can be shown; one that is `taken` gets a running number.
CString SheetName(std::string_view utf8, std::set<CString>& taken);

// Gathers the text of a string element (si, is): plain and rich runs, without phonetic ones. Depths count from the
// string element, which has 0.
class StringElement {
 public:
  void Begin() { text_.clear(), in_text_ = in_phonetic_run_ = false; }
  void OnStart(std::string_view name);
  void OnEnd(std::string_view name);
  // Returns false when the text has become longer than any cell's.
  bool OnText(std::string_view text);
  std::string& Finish() { return DecodeEscapes(text_), text_; }

 private:
  std::string text_;
  bool in_text_ = false;
  bool in_phonetic_run_ = false;
};

// A cell holds 32767 characters at most; written as escapes they take seven bytes each.
inline constexpr std::size_t kLongestCellText_bytes = 32767 * 7 + 7;

}  // namespace loom
