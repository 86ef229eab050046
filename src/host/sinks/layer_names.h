#pragma once

#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "platform/cstring.h"

// Names that a format takes, each once.
namespace loom {

struct NameRules {
  std::size_t most_bytes = 0;  // 0: any number
  bool ascii_only = false;     // letters, digits and '_', a letter first
  std::span<const std::string_view> taken = {};
};

// A name for each, as near to it as the rules allow; two that differ in case alone count as the same. A name that has
// to be cut keeps the number at its end.
std::vector<std::string> UniqueNames(const std::vector<std::string>& names, const NameRules& rules);

// At most so many bytes of a text, no character in halves.
std::string HeadOfUtf8(const std::string& text, std::size_t bytes);

// "TITLE_LAYER.EXTENSION" for each layer; characters that file names cannot have become '_'.
std::vector<CString> FileNamesOf(const CString& title, const std::vector<std::string>& layers,
                                 const CString& extension);

}  // namespace loom
