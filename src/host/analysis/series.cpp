#include "host/analysis/series.h"

#include <algorithm>
#include <cmath>

#include "components/project.h"
#include "host/analysis/element_ids.h"

namespace loom::analysis {
namespace {

constexpr std::int32_t kHighestId = 1'000'000;  // a field of a higher one is passed over
constexpr double kGapIntervals = 5.0;
constexpr double kShortestGap_s = 3.0;

double Measured(double value) { return value != kInvalidDouble && std::isfinite(value) ? value : kNoValue; }

double ValueOf(uniFieldValue value, MemTableFieldTypeEnum type) {
  switch (type) {
    case kFieldFloat:
      return Measured(static_cast<double>(value.float_value));
    case kFieldShort:
      return Measured(static_cast<std::int16_t>(value.short_value));
    case kFieldBool:
      return value.bool_value != 0 ? 1.0 : 0.0;
    default:
      return Measured(value.int_value);
  }
}

bool IsPlace(double longitude, double latitude) {
  const bool is_default = longitude == latitude && (longitude == 0.0 || longitude == -1.0);
  return std::abs(longitude) <= 180.0 && std::abs(latitude) <= 90.0 && !is_default;
}

// Puts the fields of rows into columns.
class Collector {
 public:
  Collector(Samples& samples, std::span<const std::int32_t> elements) : samples_(samples) {
    for (const std::int32_t element : elements) {
      samples_.series.push_back({.element = element});
      AddColumn(element, g_memDataType->GetType(element));
    }
    AddColumn(kLongitude, kFieldFloat);
    AddColumn(kLatitude, kFieldFloat);
    positions_ = elements.size();
  }

  void Take(std::int32_t number, const CMemDataRow& row) {
    const auto place = static_cast<std::uint32_t>(samples_.numbers.size());
    samples_.numbers.push_back(number);
    samples_.time_s.push_back(Measured(row.GetRecordTime()));
    const auto ids = row.GetParamID();
    const auto values = row.GetParamValue();
    double position[2] = {kNoValue, kNoValue};
    for (std::size_t at = std::min(ids.size(), values.size()); at-- > 0;) {
      const auto id = static_cast<std::uint32_t>(ids[at]);
      const std::uint32_t column = id < columns_.size() ? columns_[id] : 0;
      if (column == 0) continue;
      const double value = ValueOf(values[at], types_[column - 1]);
      if (column > positions_) {
        position[column - 1 - positions_] = value;
      } else {
        Put(samples_.series[column - 1], place, value);
      }
    }
    const bool is_place = IsPlace(position[0], position[1]);
    samples_.longitude.push_back(is_place ? position[0] : kNoValue);
    samples_.latitude.push_back(is_place ? position[1] : kNoValue);
  }

 private:
  void AddColumn(std::int32_t element, MemTableFieldTypeEnum type) {
    types_.push_back(type);
    if (element < 0 || element > kHighestId || type == kFieldText) return;
    const auto id = static_cast<std::size_t>(element);
    if (id >= columns_.size()) columns_.resize(id + 1);
    columns_[id] = static_cast<std::uint32_t>(types_.size());
  }
  // Fields come from the last to the first, which is the one that counts.
  static void Put(Series& series, std::uint32_t place, double value) {
    if (!series.at.empty() && series.at.back() == place) {
      series.values.back() = value;
    } else {
      series.at.push_back(place);
      series.values.push_back(value);
    }
  }

  Samples& samples_;
  std::vector<std::uint32_t> columns_;  // by element; 0 = not asked for
  std::vector<MemTableFieldTypeEnum> types_;
  std::size_t positions_ = 0;  // columns before longitude and latitude
};

}  // namespace

const Series* Samples::Find(std::int32_t element) const {
  const auto found = std::ranges::find(series, element, &Series::element);
  return found != series.end() ? &*found : nullptr;
}

std::vector<std::uint32_t> CountByElement(const RowMap& rows) {
  std::vector<std::uint32_t> counts;
  std::vector<std::int32_t> last_row;
  for (const auto& [number, row] : rows) {
    for (const std::int32_t id : row->GetParamID()) {
      if (id < 0 || id > kHighestId) continue;
      const auto at = static_cast<std::size_t>(id);
      if (at >= counts.size()) {
        counts.resize(at + 1);
        last_row.resize(at + 1, -1);
      }
      counts[at] += last_row[at] != number ? 1 : 0;
      last_row[at] = number;
    }
  }
  return counts;
}

Samples CollectSamples(const RowMap& rows, std::span<const std::int32_t> elements) {
  Samples samples;
  samples.numbers.reserve(rows.size());
  samples.time_s.reserve(rows.size());
  samples.longitude.reserve(rows.size());
  samples.latitude.reserve(rows.size());
  Collector collector(samples, elements);
  for (const auto& [number, row] : rows) collector.Take(number, *row);
  return samples;
}

double GapOf(const Samples& samples, const Series& series) {
  std::vector<double> steps;
  steps.reserve(series.at.size());
  for (std::size_t i = 1; i < series.at.size(); ++i) {
    const double step = samples.time_s[series.at[i]] - samples.time_s[series.at[i - 1]];
    if (step > 0.0) steps.push_back(step);
  }
  if (steps.empty()) return kShortestGap_s;
  const auto middle = steps.begin() + static_cast<std::ptrdiff_t>(steps.size() / 2);
  std::ranges::nth_element(steps, middle);
  return std::max(kGapIntervals * *middle, kShortestGap_s);
}

std::vector<std::uint32_t> LineStarts(const Samples& samples, const Series& series) {
  const double gap_s = GapOf(samples, series);
  std::vector<std::uint32_t> starts;
  bool is_broken = true;
  double last_s = kNoValue;
  for (std::uint32_t i = 0; i < series.at.size(); ++i) {
    if (std::isnan(series.values[i])) {
      is_broken = true;
      continue;
    }
    const double now_s = samples.time_s[series.at[i]];
    if (is_broken || now_s - last_s > gap_s) starts.push_back(i);
    is_broken = false;
    last_s = now_s;
  }
  return starts;
}

}  // namespace loom::analysis
