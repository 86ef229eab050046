#pragma once

#include <compare>
#include <concepts>
#include <cstddef>
#include <functional>
#include <initializer_list>
#include <iosfwd>
#include <string>
#include <string_view>
#include <utility>
#include <variant>
#include <vector>

namespace loom {

// Bytes of the GBK character at `at` (at < text.size()): 2 for a lead byte (0x81-0xFE) with a trail byte after it,
// else 1. A lead byte in front of anything else stands alone, so that bytes below 0x40 are never part of a character.
inline std::size_t GbkCharLength(std::string_view text, std::size_t at) {
  const auto lead = static_cast<unsigned char>(text[at]);
  if (lead < 0x81 || lead == 0xFF || at + 1 >= text.size()) return 1;
  const auto trail = static_cast<unsigned char>(text[at + 1]);
  return trail >= 0x40 && trail != 0x7F && trail != 0xFF ? 2 : 1;
}

// Text in the GBK code page. Lengths and positions count bytes and comparison is by bytes; searching, splitting,
// replacing and case folding see whole characters (a trail byte may look like '\\', '_', '|' or a letter).
// Positions handed in lie on character borders; one out of range is clamped.
class CString {
 public:
  CString() = default;
  CString(const char* ascii) : text_(ascii ? ascii : "") {}  // texts in other characters are written "..."_gbk
  explicit CString(std::string_view gbk) : text_(gbk) {}
  explicit CString(std::string gbk) : text_(std::move(gbk)) {}
  CString(char c, int count) : text_(count > 0 ? static_cast<std::size_t>(count) : 0, c) {}

  int GetLength() const { return static_cast<int>(text_.size()); }
  bool IsEmpty() const { return text_.empty(); }
  void Empty() { text_.clear(); }
  const char* c_str() const { return text_.c_str(); }
  std::string_view view() const { return text_; }
  const std::string& str() const { return text_; }
  operator std::string_view() const { return text_; }
  char operator[](int at) const { return text_[static_cast<std::size_t>(at)]; }

  CString& operator+=(const CString& tail) { return text_ += tail.text_, *this; }
  CString& operator+=(std::same_as<char> auto c) { return text_ += c, *this; }
  friend CString operator+(CString head, const CString& tail) { return head += tail, head; }
  friend CString operator+(CString head, std::same_as<char> auto c) { return head += c, head; }
  friend bool operator==(const CString&, const CString&) = default;
  friend std::strong_ordering operator<=>(const CString& a, const CString& b) { return a.text_ <=> b.text_; }

  // Below 0, 0 or above 0, by bytes.
  int Compare(const CString& other) const { return text_.compare(other.text_); }
  // The same with the Latin letters of both sides in lower case.
  int CompareNoCase(const CString& other) const;

  // Position of the first occurrence at or behind `from`, -1 if none. An empty text is found at `from`.
  int Find(const CString& text, int from = 0) const { return FindView(text.text_, from); }
  int Find(std::same_as<char> auto c, int from = 0) const { return FindView(std::string_view(&c, 1), from); }
  // Position of the last occurrence, -1 if none.
  int ReverseFind(std::same_as<char> auto c) const { return ReverseFindByte(c); }

  CString Mid(int from, int count = -1) const;  // count -1: to the end
  CString Left(int count) const { return Mid(0, count < 0 ? 0 : count); }
  CString Right(int count) const;

  // Replaces every occurrence and returns their number.
  int Replace(const CString& from, const CString& to);
  CString& MakeLower();  // Latin letters only
  CString& MakeUpper();
  CString& TrimLeft();  // blanks, tabs and line ends
  CString& TrimRight();
  CString& Trim() { return TrimRight().TrimLeft(); }

  // Parts between the separators, empty ones included; always at least one.
  std::vector<CString> Split(std::same_as<char> auto separator) const { return SplitAt(separator); }

 private:
  int FindView(std::string_view needle, int from) const;
  int ReverseFindByte(char c) const;
  std::vector<CString> SplitAt(char separator) const;

  std::string text_;
};

// User text written in UTF-8 in the source. Throws EncodingError for a character that GBK lacks.
CString operator""_gbk(const char* utf8, std::size_t length);

// Prints UTF-8.
std::ostream& operator<<(std::ostream& out, const CString& text);

// One argument of Format.
class FormatArg {
 public:
  FormatArg(const CString& text) : value_(text.view()) {}
  FormatArg(const char* ascii) : value_(std::string_view(ascii)) {}
  FormatArg(std::integral auto number) : value_(static_cast<long long>(number)) {}
  const std::variant<std::string_view, long long>& value() const { return value_; }

 private:
  std::variant<std::string_view, long long> value_;
};

CString FormatArgs(const CString& pattern, std::initializer_list<FormatArg> args);

// Fills %s, %d, %u and %I32d in order; %% is a percent sign. A number may stand for %s but no text for a number.
// Throws std::logic_error when pattern and arguments do not fit each other.
template <class... Args>
CString Format(const CString& pattern, const Args&... args) {
  return FormatArgs(pattern, {FormatArg(args)...});
}

}  // namespace loom

template <>
struct std::hash<loom::CString> {
  std::size_t operator()(const loom::CString& text) const noexcept {
    return std::hash<std::string_view>()(text.view());
  }
};
