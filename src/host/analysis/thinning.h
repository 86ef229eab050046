#pragma once

#include <cstdint>
#include <span>
#include <vector>

#include "host/analysis/series.h"

namespace loom::analysis {

// Places of rows, ascending: all of them where they are no more than `most`. Otherwise the first and the last row, and
// the lowest and the highest value of every series within each of the equal stretches that the rows are cut into, which
// are as many as keep this below `most`, and one at least.
std::vector<std::uint32_t> ThinRows(std::size_t rows, std::span<const Series> series, std::size_t most);

// Samples, by their place in the series, among the rows [first_row, end_row): of each of `buckets` equal stretches the
// lowest and the highest valid one. What a line of that many pixels can show.
std::vector<std::uint32_t> ThinSeries(const Series& series, std::uint32_t first_row, std::uint32_t end_row,
                                      std::uint32_t buckets);

}  // namespace loom::analysis
