#include "platform/cstring.h"

#include <algorithm>
#include <ostream>
#include <stdexcept>

#include "platform/characters.h"
#include "platform/encoding.h"

namespace loom {
namespace {

char Lower(char c) { return c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c; }
char Upper(char c) { return c >= 'a' && c <= 'z' ? static_cast<char>(c - 'a' + 'A') : c; }

template <class Fold>
void FoldCase(std::string* text, Fold fold) {
  for (std::size_t at = 0; at < text->size();) {
    const std::size_t length = GbkCharLength(*text, at);
    if (length == 1) (*text)[at] = fold((*text)[at]);
    at += length;
  }
}

// A needle that starts below 0x40 cannot match in the middle of a character.
bool CanSearchBytes(std::string_view needle) { return static_cast<unsigned char>(needle[0]) < 0x40; }

std::size_t FindFrom(std::string_view text, std::string_view needle, std::size_t from) {
  if (needle.empty()) return from;
  if (CanSearchBytes(needle)) return text.find(needle, from);
  while (from + needle.size() <= text.size()) {
    if (text.compare(from, needle.size(), needle) == 0) return from;
    from += GbkCharLength(text, from);
  }
  return std::string_view::npos;
}

}  // namespace

int CString::CompareNoCase(const CString& other) const {
  CString a = *this;
  CString b = other;
  return a.MakeLower().Compare(b.MakeLower());
}

int CString::FindView(std::string_view needle, int from) const {
  const auto start = std::min(static_cast<std::size_t>(std::max(from, 0)), text_.size());
  const std::size_t at = FindFrom(text_, needle, start);
  return at == std::string::npos ? -1 : static_cast<int>(at);
}

int CString::ReverseFindByte(char c) const {
  const std::string_view needle(&c, 1);
  int last = -1;
  for (int at = FindView(needle, 0); at >= 0; at = FindView(needle, at + 1)) last = at;
  return last;
}

CString CString::Mid(int from, int count) const {
  const auto start = std::min(static_cast<std::size_t>(std::max(from, 0)), text_.size());
  return CString(text_.substr(start, count < 0 ? std::string::npos : static_cast<std::size_t>(count)));
}

CString CString::Right(int count) const { return Mid(GetLength() - std::clamp(count, 0, GetLength())); }

int CString::Replace(const CString& from, const CString& to) {
  if (from.IsEmpty()) return 0;
  std::string result;
  int count = 0;
  std::size_t at = 0;
  for (std::size_t hit; (hit = FindFrom(text_, from.text_, at)) != std::string::npos; ++count) {
    result.append(text_, at, hit - at).append(to.text_);
    at = hit + from.text_.size();
  }
  if (count > 0) text_ = result.append(text_, at);
  return count;
}

CString& CString::MakeLower() {
  FoldCase(&text_, Lower);
  return *this;
}

CString& CString::MakeUpper() {
  FoldCase(&text_, Upper);
  return *this;
}

CString& CString::TrimLeft() {
  text_.erase(0, text_.size() - TrimmedLeft(text_).size());
  return *this;
}

CString& CString::TrimRight() {
  text_.erase(TrimmedRight(text_).size());
  return *this;
}

std::vector<CString> CString::SplitAt(char separator) const {
  std::vector<CString> parts;
  int start = 0;
  for (int at; (at = Find(separator, start)) >= 0; start = at + 1) parts.push_back(Mid(start, at - start));
  parts.push_back(Mid(start));
  return parts;
}

CString operator""_gbk(const char* utf8, std::size_t length) { return Utf8ToGbk({utf8, length}); }

std::ostream& operator<<(std::ostream& out, const CString& text) { return out << GbkToUtf8(text); }

namespace {

struct Placeholder {
  std::string_view text;
  bool is_number;
};
constexpr Placeholder kPlaceholders[] = {{"%s", false}, {"%d", true}, {"%u", true}, {"%I32d", true}};

const Placeholder& PlaceholderAt(std::string_view pattern, std::size_t at) {
  for (const Placeholder& placeholder : kPlaceholders) {
    if (pattern.substr(at).starts_with(placeholder.text)) return placeholder;
  }
  throw std::logic_error("unknown placeholder in '" + GbkToUtf8(pattern) + "'");
}

std::string ArgumentText(const FormatArg& arg, const Placeholder& placeholder, std::string_view pattern) {
  if (const auto* number = std::get_if<long long>(&arg.value())) return std::to_string(*number);
  if (placeholder.is_number) throw std::logic_error("a text for a number in '" + GbkToUtf8(pattern) + "'");
  return std::string(std::get<std::string_view>(arg.value()));
}

}  // namespace

CString FormatArgs(const CString& pattern, std::initializer_list<FormatArg> args) {
  const std::string_view text = pattern.view();
  std::string result;
  const FormatArg* next = args.begin();
  std::size_t at = 0;
  for (std::size_t hit; (hit = text.find('%', at)) != std::string_view::npos;) {
    result += text.substr(at, hit - at);
    if (text.substr(hit).starts_with("%%")) {
      result += '%';
      at = hit + 2;
      continue;
    }
    const Placeholder& placeholder = PlaceholderAt(text, hit);
    if (next == args.end()) throw std::logic_error("too few arguments for '" + GbkToUtf8(text) + "'");
    result += ArgumentText(*next++, placeholder, text);
    at = hit + placeholder.text.size();
  }
  if (next != args.end()) throw std::logic_error("too many arguments for '" + GbkToUtf8(text) + "'");
  return CString(result.append(text.substr(at)));
}

}  // namespace loom
