#pragma once

#include <bit>
#include <cstddef>
#include <cstdint>
#include <span>
#include <vector>

namespace loom {

// The 64 bits from bit `first` on of a row of words, the first one lowest; bits behind the last word are clear.
inline std::uint64_t BitsFrom(std::span<const std::uint64_t> words, std::int32_t first) {
  const auto word = static_cast<std::size_t>(first) / 64;
  const std::size_t shift = static_cast<std::size_t>(first) % 64;
  std::uint64_t bits = word < words.size() ? words[word] >> shift : 0;
  if (shift != 0 && word + 1 < words.size()) bits |= words[word + 1] << (64 - shift);
  return bits;
}

// Calls visit(n) for each bit that is set, ascending; the lowest bit is n = 0.
template <class Visit>
void ForEachBit(std::uint64_t bits, Visit visit) {
  for (; bits != 0; bits &= bits - 1) visit(std::countr_zero(bits));
}

// Ordered set of small non-negative integers (IE ids): one bit each, so that asking costs no search.
class IdSet {
 public:
  // True when the id was not in the set before.
  bool Insert(std::int32_t id) {
    const auto word = static_cast<std::size_t>(id) / 64;
    if (word >= words_.size()) words_.resize(word + 1);
    const std::uint64_t bit = std::uint64_t{1} << (static_cast<std::size_t>(id) % 64);
    const bool is_new = (words_[word] & bit) == 0;
    words_[word] |= bit;
    return is_new;
  }
  bool Contains(std::int32_t id) const {
    const auto word = static_cast<std::size_t>(id) / 64;
    return word < words_.size() && (words_[word] >> (static_cast<std::size_t>(id) % 64) & 1) != 0;
  }
  // The members from first to first + 63, first + n as bit n.
  std::uint64_t BitsFrom(std::int32_t first) const { return loom::BitsFrom(words_, first); }
  void Clear() { words_.clear(); }

  // Calls visit(id) for each member, ascending.
  template <class Visit>
  void ForEach(Visit visit) const {
    for (std::size_t word = 0; word < words_.size(); ++word) {
      ForEachBit(words_[word], [&](int bit) { visit(static_cast<std::int32_t>(word * 64) + bit); });
    }
  }
  std::size_t Size() const {
    std::size_t size = 0;
    for (const std::uint64_t word : words_) size += static_cast<std::size_t>(std::popcount(word));
    return size;
  }

 private:
  std::vector<std::uint64_t> words_;
};

}  // namespace loom
