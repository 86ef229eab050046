#pragma once

#include <cstdint>
#include <limits>
#include <span>
#include <vector>

#include "components/mem_row.h"

// What is computed from the rows of streams. Nothing here knows how it is shown.
namespace loom::analysis {

inline constexpr double kNoValue = std::numeric_limits<double>::quiet_NaN();

// The samples of one information element in the rows of a stream.
struct Series {
  std::int32_t element = 0;
  std::vector<std::uint32_t> at = {};  // places of the samples among the rows, ascending
  std::vector<double> values =
      {};  // of each; NaN where the row holds the invalid value, or a number that is not finite
};

// The rows of a stream, column by column, in row order. NaN stands where a row has no time or no position.
struct Samples {
  std::vector<std::int32_t> numbers;  // of the rows
  std::vector<double> time_s;         // since 1970
  std::vector<double> longitude;      // degrees
  std::vector<double> latitude;
  std::vector<Series> series;  // as they were asked for

  std::size_t RowCount() const { return numbers.size(); }
  bool HasPosition(std::size_t row) const { return longitude[row] == longitude[row]; }
  const Series* Find(std::int32_t element) const;  // null when it was not asked for
};

// In how many rows each information element is, by its id; the first field of an id counts.
std::vector<std::uint32_t> CountByElement(const RowMap& rows);

// One pass over the rows. Texts are no samples. A position of exactly 0, 0 or -1, -1 is that of a receiver that knows
// none.
Samples CollectSamples(const RowMap& rows, std::span<const std::int32_t> elements);

// The time without a sample from which on a series has a gap: five times the usual time between two of them, and three
// seconds at least.
double GapOf(const Samples& samples, const Series& series);

// The samples, by their place in the series, that no line leads to: the first one, and those behind a gap or an invalid
// value. Invalid samples are left out.
std::vector<std::uint32_t> LineStarts(const Samples& samples, const Series& series);

}  // namespace loom::analysis
