#include "text/import/line_splitter.h"

#include <algorithm>
#include <bit>
#include <cstdint>

#include "text/import/byte_words.h"
#include "text/separator.h"

namespace loom {
namespace {

constexpr unsigned char kFirstTrailByte = 0x40;

bool IsPlainByte(std::string_view separator) {
  return separator.size() == 1 && static_cast<unsigned char>(separator[0]) < kFirstTrailByte;
}

// Sees whole characters: the separator may equal the trail byte of one.
std::size_t FindSeparator(std::string_view line, std::string_view separator, std::size_t from) {
  if (static_cast<unsigned char>(separator[0]) < kFirstTrailByte) return line.find(separator, from);
  while (from + separator.size() <= line.size()) {
    if (line.compare(from, separator.size(), separator) == 0) return from;
    from += GbkCharLength(line, from);
  }
  return std::string_view::npos;
}

std::size_t CountOf(char byte, std::string_view line) {
  std::size_t count = 0;
  for (; kHasWords && line.size() >= 64; line.remove_prefix(64))
    count +=
        static_cast<std::size_t>(std::popcount(EqualBytesOf64(line.data(), kEach * static_cast<unsigned char>(byte))));
  return count + static_cast<std::size_t>(std::ranges::count(line, byte));
}

}  // namespace

LineSplitter::LineSplitter(const CString& separator)
    : separator_(WidenedSeparator(separator)), is_plain_byte_(IsPlainByte(separator_)) {}

void LineSplitter::Split(std::string_view line, std::vector<std::string_view>& cells, std::size_t most) const {
  if (is_plain_byte_) return SplitAtByte(line, cells, most);
  cells.clear();
  const std::string_view separator = separator_.view();
  std::size_t start = 0;
  while (cells.size() < most) {
    const std::size_t at = separator.empty() ? std::string_view::npos : FindSeparator(line, separator, start);
    if (at == std::string_view::npos || at + separator.size() == line.size())
      return cells.push_back(line.substr(start));
    cells.push_back(line.substr(start, at - start));
    start = at + separator.size();
  }
}

std::size_t LineSplitter::CountCells(std::string_view line) const {
  const std::string_view separator = separator_.view();
  if (line.size() <= separator.size() || separator.empty()) return 1;
  if (is_plain_byte_) return CountOf(separator[0], line.substr(0, line.size() - 1)) + 1;
  std::size_t count = 1;
  for (std::size_t at = 0; (at = FindSeparator(line, separator, at)) != std::string_view::npos; ++count) {
    at += separator.size();
    if (at == line.size()) break;
  }
  return count;
}

void LineSplitter::SplitAtByte(std::string_view line, std::vector<std::string_view>& cells, std::size_t most) const {
  const char separator = separator_[0];
  cells.resize(most <= line.size() ? most : CountOf(separator, line) + 1);
  std::string_view* cell = cells.data();
  const std::string_view* const behind = cell + cells.size();
  const char* start = line.data();
  const char* at = start;
  const char* const line_end = start + line.size();
  // Behind this no separator counts: one in the last place belongs to the last cell.
  const char* const end = line.empty() ? start : line_end - 1;
  const auto cut = [&](const char* place) __attribute__((always_inline)) {
    *cell++ = {start, static_cast<std::size_t>(place - start)};
    start = place + 1;
    return cell == behind;
  };
  if constexpr (kHasWords) {
    const std::uint64_t pattern = kEach * static_cast<unsigned char>(separator);
    for (; end - at >= 64; at += 64) {
      for (std::uint64_t hits = EqualBytesOf64(at, pattern); hits != 0; hits &= hits - 1) {
        if (cut(at + std::countr_zero(hits))) return;
      }
    }
    for (; end - at >= std::ptrdiff_t{kWordBytes}; at += kWordBytes) {
      for (std::uint64_t hits = EqualBytes(WordAt(at), pattern); hits != 0; hits &= hits - 1) {
        if (cut(at + (std::countr_zero(hits) >> 3))) return;
      }
    }
  }
  for (; at < end; ++at) {
    if (*at == separator && cut(at)) return;
  }
  *cell++ = {start, static_cast<std::size_t>(line_end - start)};
  cells.resize(static_cast<std::size_t>(cell - cells.data()));
}

}  // namespace loom
