#pragma once

#include <bit>
#include <cstddef>
#include <cstdint>
#include <vector>

namespace loom {

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
    return id >= 0 && word < words_.size() && (words_[word] >> (static_cast<std::size_t>(id) % 64) & 1) != 0;
  }
  void Clear() { words_.clear(); }

  // Calls visit(id) for each member, ascending.
  template <class Visit>
  void ForEach(Visit visit) const {
    for (std::size_t word = 0; word < words_.size(); ++word) {
      for (std::uint64_t bits = words_[word]; bits != 0; bits &= bits - 1) {
        visit(static_cast<std::int32_t>(word * 64 + static_cast<std::size_t>(std::countr_zero(bits))));
      }
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
