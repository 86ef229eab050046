#pragma once

#include <string>
#include <vector>

#include "text/dialect/text_dialect.h"

// What was found of a text file, in words for people. All texts are UTF-8.
namespace loom {

enum class WordsLanguage { kChinese, kEnglish };

struct FindingSentence {
  std::string text;
  bool is_doubt = false;  // something that a person should look at
};

// The most important first.
std::vector<FindingSentence> FindingSentences(const dialect::Findings& found, WordsLanguage language);

// "tab", "runs of blanks", "none, one column", "';'".
std::string SeparatorWords(const std::string& separator, WordsLanguage language);

// "2025-07-18T22:11:08.25Z", a time of the day without its day where that is not known.
std::string InstantText(double seconds, bool has_date);

}  // namespace loom
