#include "text/dialect/encoding_finder.h"

#include <algorithm>

#include "components/encoding_guess.h"
#include "platform/transcoder.h"
#include "text/dialect/byte_source.h"
#include "text/dialect/cell_value.h"

namespace loom::dialect {
namespace {

constexpr double kZeroShareOfUtf16 = 0.25;
constexpr std::size_t kEnoughSyllables = 20;

struct HighBytes {
  std::size_t all = 0;
  std::size_t good_utf8 = 0;  // sequences
  std::size_t bad_utf8 = 0;
  std::size_t single = 0;  // between ASCII bytes
  std::size_t gbk_pairs = 0;
  std::size_t common_pairs = 0;  // of the characters in daily use
  std::size_t low_trails = 0;    // second bytes that characters in daily use do not have
  std::size_t high_leads = 0;    // first bytes behind the range of Korean syllables
  std::size_t gbk_faults = 0;
};

HighBytes CountHighBytes(std::string_view bytes, bool is_whole) {
  HighBytes count;
  const auto is_high = [&](std::size_t at) {
    return at < bytes.size() && static_cast<unsigned char>(bytes[at]) >= 0x80;
  };
  for (std::size_t at = 0; at < bytes.size();) {
    if (!is_high(at)) {
      ++at;
      continue;
    }
    const int length = Utf8LengthAt(bytes, at);
    if (length < 0 && !is_whole) break;
    ++(length > 0 ? count.good_utf8 : count.bad_utf8);
    at += length > 0 ? static_cast<std::size_t>(length) : 1;
  }
  for (std::size_t at = 0; at < bytes.size(); ++at) {
    if (!is_high(at)) continue;
    ++count.all;
    if ((at == 0 || !is_high(at - 1)) && !is_high(at + 1)) ++count.single;
  }
  for (std::size_t at = 0; at < bytes.size(); ++at) {
    if (!is_high(at)) continue;
    const auto lead = static_cast<unsigned char>(bytes[at]);
    const auto trail = static_cast<unsigned char>(at + 1 < bytes.size() ? bytes[at + 1] : 0);
    if (lead < 0x81 || lead == 0xFF || trail < 0x40 || trail == 0x7F || trail == 0xFF) {
      ++count.gbk_faults;
      continue;
    }
    ++count.gbk_pairs;
    if (trail < 0xA1) ++count.low_trails;
    if (lead > 0xC8) ++count.high_leads;
    if (lead >= 0xB0 && lead <= 0xD7 && trail >= 0xA1) ++count.common_pairs;
    ++at;
  }
  return count;
}

EncodingFound Utf16By(std::string_view bytes) {
  std::size_t even = 0;
  std::size_t odd = 0;
  for (std::size_t at = 0; at < bytes.size(); ++at) {
    if (bytes[at] == '\0') ++(at % 2 == 0 ? even : odd);
  }
  const double share = static_cast<double>(std::max(even, odd)) / static_cast<double>(bytes.size());
  if (share < kZeroShareOfUtf16 || std::min(even, odd) * 10 > std::max(even, odd)) return {};
  return {odd > even ? "UTF-16LE" : "UTF-16BE", false, 0.95};
}

// One-byte encodings of the west differ in what hardly occurs.
std::string Normalised(const std::string& guess) {
  const std::string lower = Lower(guess);
  if (lower == "iso-8859-1" || lower == "iso-8859-15" || lower == "iso-8859-9" || lower == "windows-1252")
    return "Windows-1252";
  if (lower == "gb18030" || lower == "gb2312" || lower == "gbk" || lower == "hz-gb-2312") return "GBK";
  if (lower == "windows-1251") return "Windows-1251";
  return guess;
}

}  // namespace

EncodingFound FindEncoding(std::string_view bytes, bool is_whole) {
  if (bytes.starts_with("\xEF\xBB\xBF")) return {"UTF-8", true, 1};
  if (bytes.starts_with("\xFF\xFE")) return {"UTF-16LE", true, 1};
  if (bytes.starts_with("\xFE\xFF")) return {"UTF-16BE", true, 1};
  if (!bytes.empty()) {
    if (const EncodingFound found = Utf16By(bytes); !found.name.empty()) return found;
  }
  const HighBytes count = CountHighBytes(bytes, is_whole);
  if (count.all == 0) return {"ASCII", false, 1};
  if (count.bad_utf8 == 0) return {"UTF-8", false, count.good_utf8 > 1 ? 0.97 : 0.9};
  if (count.good_utf8 >= 2 * count.bad_utf8) return {"UTF-8", false, 0.9};
  const bool is_gbk = count.gbk_faults == 0 && count.gbk_pairs > 0 && count.single * 10 <= count.all;
  const std::string guess = Normalised(GuessEncoding(bytes));
  const bool is_korean = count.high_leads == 0 && count.gbk_pairs >= kEnoughSyllables && Lower(guess) == "uhc";
  const bool is_other = count.low_trails * 10 > count.gbk_pairs || is_korean;
  if (is_gbk && !is_other && count.common_pairs * 10 >= count.gbk_pairs * 6) return {"GBK", false, 0.92};
  const bool is_one_byte = guess.starts_with("Windows-") || guess.starts_with("WINDOWS-") ||
                           Lower(guess).starts_with("iso-8859") || Lower(guess).starts_with("koi8") ||
                           Lower(guess).starts_with("mac") || Lower(guess).starts_with("ibm");
  // Single high bytes between letters and digits are no halves of characters.
  if (count.single * 10 >= count.all * 8) {
    const bool is_western = !is_one_byte || guess == "Windows-1252" || count.all < 20;
    return {is_western ? "Windows-1252" : guess, false, 0.85};
  }
  if (!guess.empty() && Transcoder::Knows(guess) && Lower(guess) != "ascii" && Lower(guess) != "utf-8")
    return {guess, false, 0.8};
  return {"GBK", false, 0.4};
}

}  // namespace loom::dialect
