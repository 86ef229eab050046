#include "text/import/title_tokens.h"

#include "platform/cstring.h"

namespace loom {
namespace {

std::string_view CharacterAt(std::string_view text, std::size_t at) { return text.substr(at, GbkCharLength(text, at)); }

bool HoldsCharacter(std::string_view text, std::string_view character) {
  for (std::size_t at = 0; at < text.size(); at += CharacterAt(text, at).size()) {
    if (CharacterAt(text, at) == character) return true;
  }
  return false;
}

}  // namespace

int CountTitleTokens(std::string_view line, std::string_view separator) {
  CString widened(line);
  widened.Replace(CString(separator), CString(separator) + ' ');
  const std::string_view text = widened.view();
  int count = 0;
  bool is_in_token = false;
  for (std::size_t at = 0; at < text.size(); at += CharacterAt(text, at).size()) {
    const bool is_delimiter = HoldsCharacter(separator, CharacterAt(text, at));
    if (!is_delimiter && !is_in_token) ++count;
    is_in_token = !is_delimiter;
  }
  return count;
}

}  // namespace loom
