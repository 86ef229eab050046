#include "host/workbook/cell_text_reader.h"

#include <charconv>
#include <cstdint>
#include <optional>

#include "platform/encoding.h"

namespace loom {
namespace {

constexpr std::size_t kEscapeLength = 7;
constexpr std::uint32_t kReplacement = 0xFFFD;

std::optional<std::uint32_t> EscapedUnit(std::string_view text, std::size_t at) {
  if (at + kEscapeLength > text.size() || text[at] != '_' || text[at + 1] != 'x' || text[at + 6] != '_')
    return std::nullopt;
  std::uint32_t unit = 0;
  const auto [end, error] = std::from_chars(text.data() + at + 2, text.data() + at + 6, unit, 16);
  if (error != std::errc() || end != text.data() + at + 6) return std::nullopt;
  return unit;
}

bool IsHighSurrogate(std::uint32_t unit) { return unit >= 0xD800 && unit < 0xDC00; }
bool IsLowSurrogate(std::uint32_t unit) { return unit >= 0xDC00 && unit < 0xE000; }

void AppendUtf8(std::uint32_t character, std::string& out) {
  const auto tail = [&](int shift) { out += static_cast<char>(0x80 | ((character >> shift) & 0x3F)); };
  if (character < 0x80) {
    out += static_cast<char>(character);
  } else if (character < 0x800) {
    out += static_cast<char>(0xC0 | (character >> 6));
    tail(0);
  } else if (character < 0x10000) {
    out += static_cast<char>(0xE0 | (character >> 12));
    tail(6);
    tail(0);
  } else {
    out += static_cast<char>(0xF0 | (character >> 18));
    tail(12);
    tail(6);
    tail(0);
  }
}

}  // namespace

void DecodeEscapes(std::string& utf8) {
  std::size_t at = utf8.find("_x");
  if (at == std::string::npos) return;
  std::string decoded = utf8.substr(0, at);
  while (at < utf8.size()) {
    const auto unit = EscapedUnit(utf8, at);
    if (!unit) {
      decoded += utf8[at++];
      continue;
    }
    at += kEscapeLength;
    std::uint32_t character = *unit;
    if (IsHighSurrogate(character)) {
      const auto low = EscapedUnit(utf8, at);
      const bool is_pair = low && IsLowSurrogate(*low);
      character = is_pair ? 0x10000 + ((character - 0xD800) << 10) + (*low - 0xDC00) : kReplacement;
      if (is_pair) at += kEscapeLength;
    } else if (IsLowSurrogate(character)) {
      character = kReplacement;
    }
    AppendUtf8(character, decoded);
  }
  utf8 = std::move(decoded);
}

CString SheetName(std::string_view utf8, std::set<CString>& taken) {
  const CString name = Utf8ToGbkOr(utf8, '?');
  CString distinct = name;
  for (int number = 2; !taken.insert(distinct).second; ++number) distinct = Format("%s (%d)", name, number);
  return distinct;
}

void StringElement::OnStart(std::string_view name) {
  if (name == "rPh") in_phonetic_run_ = true;
  in_text_ = name == "t" && !in_phonetic_run_;
}

void StringElement::OnEnd(std::string_view name) {
  if (name == "rPh") in_phonetic_run_ = false;
  in_text_ = false;
}

bool StringElement::OnText(std::string_view text) {
  if (in_text_) text_ += text;
  return text_.size() <= kLongestCellText_bytes;
}

}  // namespace loom
