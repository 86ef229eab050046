#include "host/workbook/xml_text.h"

#include <algorithm>
#include <array>
#include <cctype>

#include "platform/cstring.h"
#include "platform/encoding.h"
#include "platform/hexadecimal.h"

namespace loom {
namespace {

// True for the bytes that stand for themselves wherever they are.
constexpr auto kPlainXml = [] {
  std::array<bool, 256> plain{};
  for (int byte = 0x20; byte < 0x7F; ++byte) plain[static_cast<std::size_t>(byte)] = true;
  plain['&'] = plain['<'] = plain['>'] = plain['"'] = plain['_'] = false;
  plain['\t'] = plain['\n'] = true;
  return plain;
}();

bool IsHexEscape(std::string_view text) {
  return text.size() >= 7 && text[1] == 'x' && text[6] == '_' &&
         std::all_of(text.begin() + 2, text.begin() + 6, [](unsigned char c) { return std::isxdigit(c) != 0; });
}

void AppendHexEscape(std::string& out, unsigned char byte) {
  out += "_x00";
  AppendHex(out, byte);
  out += '_';
}

void AppendSpecial(std::string& out, std::string_view rest) {
  switch (const char c = rest.front()) {
    case '&':
      out += "&amp;";
      break;
    case '<':
      out += "&lt;";
      break;
    case '>':
      out += "&gt;";
      break;
    case '"':
      out += "&quot;";
      break;
    case '_':
      out += IsHexEscape(rest) ? "_x005F_" : "_";
      break;
    default:
      if (static_cast<unsigned char>(c) >= 0x80) {
        out += c;
      } else {
        AppendHexEscape(out, static_cast<unsigned char>(c));
      }
  }
}

bool IsBlank(char c) { return c == ' ' || c == '\t' || c == '\n'; }

}  // namespace

bool IsPlainXmlText(std::string_view gbk) {
  return std::all_of(gbk.begin(), gbk.end(), [](unsigned char c) { return kPlainXml[c]; });
}

void AppendXmlText(std::string& out, std::string_view gbk) {
  const std::string utf8 = GbkToUtf8(gbk);
  const std::string_view text = utf8;
  for (std::size_t at = 0; at < text.size(); ++at) {
    if (kPlainXml[static_cast<unsigned char>(text[at])]) {
      out += text[at];
    } else {
      AppendSpecial(out, text.substr(at));
    }
  }
}

bool NeedsSpacePreserved(std::string_view text) {
  return !text.empty() && (IsBlank(text.front()) || IsBlank(text.back()));
}

std::size_t CharacterCount(std::string_view gbk) {
  std::size_t count = 0;
  for (std::size_t at = 0; at < gbk.size(); at += GbkCharLength(gbk, at)) ++count;
  return count;
}

std::string_view HeadOfCharacters(std::string_view gbk, std::size_t characters) {
  std::size_t at = 0;
  for (; at < gbk.size() && characters > 0; --characters) at += GbkCharLength(gbk, at);
  return gbk.substr(0, at);
}

}  // namespace loom
