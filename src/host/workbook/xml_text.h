#pragma once

#include <string>
#include <string_view>

namespace loom {

// A GBK text as workbook XML holds it: UTF-8, markup escaped, what XML cannot hold written as _xHHHH_ (and a text that
// looks like that protected). Bytes that are not valid GBK show as \xHH.
void AppendXmlText(std::string& out, std::string_view gbk);
// Whether the text is its own XML form.
bool IsPlainXmlText(std::string_view gbk);
// Whether blanks of the text would be lost without xml:space="preserve".
bool NeedsSpacePreserved(std::string_view text);

// The number of UTF-16 units of a GBK text, by which spreadsheets count.
std::size_t CharacterCount(std::string_view gbk);
// The head of the text with at most so many of them.
std::string_view HeadOfCharacters(std::string_view gbk, std::size_t characters);

}  // namespace loom
