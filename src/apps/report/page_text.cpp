#include "apps/report/page_text.h"

#include "platform/error.h"
#include "platform/file.h"

// Of the build; report_page.cpp in its folder.
extern const char kQloomReportPage[];
extern const unsigned long kQloomReportPageBytes;

namespace loom::report {
namespace {

std::string WithoutMarkup(std::string_view text) {
  std::string safe;
  for (const char c : text) {
    switch (c) {
      case '&':
        safe += "&amp;";
        break;
      case '<':
        safe += "&lt;";
        break;
      case '>':
        safe += "&gt;";
        break;
      case '"':
        safe += "&quot;";
        break;
      default:
        safe += c;
    }
  }
  return safe;
}

// JSON inside of a script element, which a "</" would end.
std::string ScriptJson(const Json& json) {
  const std::string plain = json.dump(-1, ' ', false, Json::error_handler_t::replace);
  std::string safe;
  safe.reserve(plain.size());
  for (const char c : plain) {
    if (c == '<') {
      safe += "\\u003c";
    } else {
      safe += c;
    }
  }
  return safe;
}

// Scheme and host of the tiles: what the page may load images from besides itself.
std::string OriginOf(const std::string& tiles) {
  std::string origin = tiles.substr(0, tiles.find('/', tiles.find("//") + 2));
  if (const auto place = origin.find("{s}"); place != std::string::npos) origin.replace(place, 3, "*");
  return origin;
}

}  // namespace

std::string_view PageText() { return {kQloomReportPage, kQloomReportPageBytes}; }

void WritePage(const PageContent& content, AtomicFile& file) {
  std::string_view rest = PageText();
  const auto fill = [&](std::string_view place, const std::string& text) {
    const auto at = rest.find(place);
    if (at == std::string_view::npos) throw Error("the page has no place " + std::string(place));
    file.Write(rest.substr(0, at));
    file.Write(text);
    rest.remove_prefix(at + place.size());
  };
  fill("@TILES@", content.tiles.empty() ? std::string() : OriginOf(content.tiles));
  fill("@TITLE@", WithoutMarkup(content.title));
  fill("@DOCUMENT@", ScriptJson(content.document));
  fill("@COLUMNS@", Packed(content.columns));
  file.Write(rest);
}

}  // namespace loom::report
