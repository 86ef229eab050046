#pragma once

#include <string>
#include <string_view>

namespace loom {

// Appends UTF-8 text as XML holds it between tags and in attributes. A control character that XML has no place for
// becomes '?'; returns how many there were.
inline int AppendXml(std::string& out, std::string_view text) {
  int replaced = 0;
  for (const char c : text) {
    switch (c) {
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
      case '\n':
        out += "&#10;";
        break;
      case '\r':
        out += "&#13;";
        break;
      case '\t':
        out += "&#9;";
        break;
      default: {
        const bool has_place = static_cast<unsigned char>(c) >= 0x20;
        out += has_place ? c : '?';
        replaced += has_place ? 0 : 1;
      }
    }
  }
  return replaced;
}

inline std::string XmlText(std::string_view text) {
  std::string out;
  AppendXml(out, text);
  return out;
}

}  // namespace loom
