#pragma once

#include <cstddef>
#include <cstdint>
#include <iterator>
#include <vector>

namespace loom {

// Finds the rows of an ordered map of row number -> row by their position from 0. Rows numbered without gaps, the usual
// case, are looked up by number; otherwise every kStride-th place is remembered. Copies no rows; the map neither grows
// nor shrinks meanwhile.
template <class Map>
class RowIndex {
 public:
  using Iterator = typename Map::const_iterator;
  static constexpr std::size_t kStride = 256;

  explicit RowIndex(const Map& rows) : rows_(rows) {
    if (rows.empty()) return;
    first_number_ = rows.begin()->first;
    const std::int64_t span = std::int64_t{rows.rbegin()->first} - first_number_ + 1;
    if (span == static_cast<std::int64_t>(rows.size())) return;
    std::size_t position = 0;
    for (Iterator row = rows.begin(); row != rows.end(); ++row) {
      if (position++ % kStride == 0) places_.push_back(row);
    }
  }

  std::size_t Count() const { return rows_.size(); }

  // `position` < Count().
  Iterator At(std::size_t position) const {
    if (places_.empty())
      return rows_.find(static_cast<typename Map::key_type>(first_number_ + static_cast<std::int64_t>(position)));
    return std::next(places_[position / kStride], static_cast<std::ptrdiff_t>(position % kStride));
  }

 private:
  const Map& rows_;
  std::int64_t first_number_ = 0;
  std::vector<Iterator> places_;  // empty: no number is left out
};

}  // namespace loom
