#include "apps/report/stream_part.h"

#include <algorithm>
#include <cmath>
#include <numeric>

#include "host/analysis/elements.h"
#include "host/analysis/statistics.h"
#include "host/analysis/thinning.h"
#include "platform/encoding.h"
#include "platform/interrupt.h"

namespace loom::report {
namespace {

using analysis::Bins;
using analysis::Samples;
using analysis::Series;
using analysis::Weighting;

constexpr std::size_t kMostElements = 10;
constexpr double kDegreeStep = 1e-6;
constexpr double kTimeStep_s = 1e-3;
constexpr double kNear_degrees = 0.03;

struct NamedWeighting {
  const char* name;
  Weighting weighting;
};
constexpr NamedWeighting kWeightings[] = {{"sample", Weighting::kSample},
                                          {"time", Weighting::kTime},
                                          {"distance", Weighting::kDistance},
                                          {"grid", Weighting::kGrid}};

Json Number(double value) { return std::isfinite(value) ? Json(value) : Json(); }

Json StatisticsJson(const analysis::Statistics& statistics) {
  return {{"count", statistics.count},
          {"invalid", statistics.invalid},
          {"min", Number(statistics.minimum)},
          {"mean", Number(statistics.mean)},
          {"max", Number(statistics.maximum)},
          {"p5", Number(statistics.percentile_5)},
          {"p50", Number(statistics.percentile_50)},
          {"p95", Number(statistics.percentile_95)},
          {"classes", statistics.classes},
          {"first", statistics.histogram.first},
          {"step", statistics.histogram.step},
          {"bars", statistics.histogram.counts}};
}

// A stream's part of the page, made piece by piece.
class StreamWriter {
 public:
  StreamWriter(IDataStream& stream, PageParts& parts)
      : stream_(stream), parts_(parts), protocol_(stream.GetProtocol()), rows_(*stream.GetRows()) {
    ChooseElements();
    samples_ = analysis::CollectSamples(rows_, wanted_);
    DropEmptySeries();
    cells_ = analysis::FindServedCells(samples_, protocol_);
    for (const NamedWeighting& named : kWeightings)
      bins_.push_back(analysis::MakeBins(samples_, named.weighting, parts.options.bins));
    FillTimes();
    kept_ = analysis::ThinRows(samples_.RowCount(), Shown(), parts.options.max_points);
    std::ranges::stable_sort(kept_, {}, [&](std::uint32_t row) { return samples_.time_s[row]; });
  }

  Json Write() {
    parts_.summary.rows += samples_.RowCount();
    parts_.summary.points += kept_.size();
    Json json{{"name", GbkNameToUtf8(stream_.GetName())},
              {"device", GbkToUtf8(stream_.GetDeviceName())},
              {"protocol", GbkToUtf8(protocol_)},
              {"scanner", stream_.GetStreamClass() == kStreamClassScanner},
              {"rows", samples_.RowCount()},
              {"kept", kept_.size()},
              {"timed", is_timed_},
              {"positions", TakePositions()},
              {"length", bins_[2].length_m}};
    json["columns"] = RowColumns();
    json["series"] = Json::array();
    for (const Series& series : Shown()) json["series"].push_back(SeriesJson(series));
    json["entries"] = EntriesPart(rows_, samples_, parts_);
    json["cells"] = CellsJson();
    json["handovers"] = HandoversJson();
    return json;
  }

 private:
  void ChooseElements() {
    const std::vector<std::uint32_t> counts = analysis::CountByElement(rows_);
    const auto is_held = [&](std::int32_t id) {
      return id >= 0 && static_cast<std::size_t>(id) < counts.size() && counts[static_cast<std::size_t>(id)] > 0;
    };
    if (parts_.options.elements.empty()) {
      wanted_ = analysis::TellingElements(parts_.classes, parts_.catalogue.Entries(), counts, kMostElements);
    } else {
      std::ranges::copy_if(parts_.options.elements, std::back_inserter(wanted_), is_held);
    }
    shown_ = wanted_.size();
    for (const std::int32_t id : analysis::CellElements(protocol_)) {
      if (is_held(id) && std::ranges::find(wanted_, id) == wanted_.end()) wanted_.push_back(id);
    }
  }

  // Elements that every row has as invalid.
  void DropEmptySeries() {
    for (std::size_t at = shown_; at-- > 0;) {
      const std::vector<double>& values = samples_.series[at].values;
      if (std::ranges::any_of(values, [](double value) { return !std::isnan(value); })) continue;
      if (!parts_.options.elements.empty()) continue;
      samples_.series.erase(samples_.series.begin() + static_cast<std::ptrdiff_t>(at));
      --shown_;
    }
  }

  std::span<const Series> Shown() const { return std::span(samples_.series).first(shown_); }

  // For drawing, a row without a time takes that of the row before. Where no row has one, rows count as seconds.
  void FillTimes() {
    double last_s = analysis::kNoValue;
    for (const double time_s : samples_.time_s) {
      if (std::isnan(time_s)) continue;
      last_s = time_s;
      break;
    }
    is_timed_ = !std::isnan(last_s) || samples_.time_s.empty();
    if (!is_timed_) return std::iota(samples_.time_s.begin(), samples_.time_s.end(), 1.0);
    for (double& time_s : samples_.time_s) {
      if (std::isnan(time_s)) time_s = last_s;
      last_s = time_s;
    }
  }

  std::size_t TakePositions() {
    std::size_t count = 0;
    for (std::size_t row = 0; row < samples_.RowCount(); ++row) {
      if (!samples_.HasPosition(row)) continue;
      parts_.bounds.Take(samples_.longitude[row], samples_.latitude[row]);
      ++count;
    }
    return count;
  }

  template <class ValueOf>
  std::vector<double> OfKept(ValueOf value_of) const {
    std::vector<double> values;
    values.reserve(kept_.size());
    for (const std::uint32_t row : kept_) values.push_back(value_of(row));
    return values;
  }

  Json RowColumns() {
    const auto cell_of = [&](std::uint32_t row) {
      return cells_.of_row[row] == analysis::ServedCells::kNone ? analysis::kNoValue : cells_.of_row[row];
    };
    return {
        {"time", parts_.columns.AddStepped(OfKept([&](auto row) { return samples_.time_s[row]; }), kTimeStep_s)},
        {"longitude",
         parts_.columns.AddStepped(OfKept([&](auto row) { return samples_.longitude[row]; }), kDegreeStep)},
        {"latitude", parts_.columns.AddStepped(OfKept([&](auto row) { return samples_.latitude[row]; }), kDegreeStep)},
        {"row", parts_.columns.AddStepped(OfKept([&](auto row) { return samples_.numbers[row]; }), 1.0)},
        {"cell", parts_.columns.AddStepped(OfKept(cell_of), 1.0)}};
  }

  Json SeriesJson(const Series& series) {
    StopIfInterrupted();
    const std::size_t element = parts_.elements.NumberOf(series);
    const analysis::Scale& scale = parts_.elements.ScaleOf(element);
    Json json{{"element", element}};
    for (std::size_t at = 0; at < std::size(kWeightings); ++at) {
      const bool is_plain = kWeightings[at].weighting == Weighting::kSample;
      json["statistics"][kWeightings[at].name] = StatisticsJson(
          analysis::Summarise(is_plain ? series.values : analysis::MeansByBin(series, bins_[at]), scale));
    }
    json["values"] = parts_.columns.AddNumbers(ValuesOfKept(series));
    json["starts"] = parts_.columns.AddStepped(StartsAmongKept(series), 1.0);
    return json;
  }

  std::vector<double> ByRow(const Series& series) const {
    std::vector<double> values(samples_.RowCount(), analysis::kNoValue);
    for (std::size_t i = 0; i < series.at.size(); ++i) values[series.at[i]] = series.values[i];
    return values;
  }
  std::vector<double> ValuesOfKept(const Series& series) const {
    const std::vector<double> values = ByRow(series);
    return OfKept([&](auto row) { return values[row]; });
  }

  // Places among the kept rows that no line leads to: of each start, the first sample kept behind it.
  std::vector<double> StartsAmongKept(const Series& series) const {
    std::vector<bool> is_start(samples_.RowCount());
    for (const std::uint32_t sample : analysis::LineStarts(samples_, series)) is_start[series.at[sample]] = true;
    const std::vector<double> values = ByRow(series);
    std::vector<double> starts;
    std::uint32_t row = 0;
    bool is_new = false;
    for (std::size_t kept = 0; kept < kept_.size(); ++kept) {
      for (; row <= kept_[kept]; ++row) is_new = is_new || is_start[row];
      if (!is_new || std::isnan(values[kept_[kept]])) continue;
      starts.push_back(static_cast<double>(kept));
      is_new = false;
    }
    return starts;
  }

  Json CellsJson() {
    const analysis::CellFinder finder(parts_.network);
    Json cells = Json::array();
    for (const analysis::ServedCell& cell : cells_.cells) {
      const auto found = finder.Find(cell, protocol_);
      if (found) parts_.network_serves[*found] = true;
      cells.push_back({{"label", analysis::LabelOf(cell.identity)},
                       {"network", found ? Json(*found) : Json()},
                       {"samples", cell.samples},
                       {"level", Number(cell.MeanLevel())},
                       {"time", cell.time_s}});
    }
    return {{"level", GbkToUtf8(LevelName())}, {"list", std::move(cells)}};
  }

  CString LevelName() const {
    const CIEEntry* const entry = parts_.catalogue.Find(cells_.level_element);
    return entry != nullptr ? entry->name : CString();
  }

  Json HandoversJson() {
    std::vector<double> times;
    std::vector<double> from;
    std::vector<double> to;
    for (const analysis::Handover& handover : cells_.handovers) {
      times.push_back(samples_.time_s[handover.at]);
      from.push_back(handover.from);
      to.push_back(handover.to);
    }
    return {{"time", parts_.columns.AddStepped(times, kTimeStep_s)},
            {"from", parts_.columns.AddStepped(from, 1.0)},
            {"to", parts_.columns.AddStepped(to, 1.0)}};
  }

  IDataStream& stream_;
  PageParts& parts_;
  const CString protocol_;
  const RowMap& rows_;
  std::vector<std::int32_t> wanted_;
  std::size_t shown_ = 0;  // the first of the wanted ones; the others name cells
  Samples samples_;
  analysis::ServedCells cells_;
  std::vector<Bins> bins_;  // one for each weighting
  std::vector<std::uint32_t> kept_;
  bool is_timed_ = true;
};

}  // namespace

void RouteBounds::Take(double longitude, double latitude) {
  west = std::min(west, longitude);
  east = std::max(east, longitude);
  south = std::min(south, latitude);
  north = std::max(north, latitude);
}

bool RouteBounds::IsNear(double longitude, double latitude) const {
  return longitude > west - kNear_degrees && longitude < east + kNear_degrees && latitude > south - kNear_degrees &&
         latitude < north + kNear_degrees;
}

Json StreamPart(IDataStream& stream, PageParts& parts) { return StreamWriter(stream, parts).Write(); }

}  // namespace loom::report
