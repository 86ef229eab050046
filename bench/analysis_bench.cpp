// What a report and the desktop's views compute: QLOOM_BENCH_ROWS rows (default 1 million) of one stream with a
// position, ten levels, and twenty elements that nobody asks for.
#include <benchmark/benchmark.h>

#include <cmath>
#include <cstdlib>
#include <random>

#include "host/analysis/bins.h"
#include "host/analysis/statistics.h"
#include "host/analysis/thinning.h"
#include "host/application.h"
#include "host/streams/stream_store.h"
#include "tests/support/places.h"

namespace loom::analysis {
namespace {

constexpr int kElements = 10;
constexpr std::int32_t kFirstElement = 1205;  // levels of neighbours, integers
constexpr int kOthers = 20;
constexpr std::int32_t kFirstOther = 297;

class Drive {
 public:
  Drive() {
    const char* const given = std::getenv("QLOOM_BENCH_ROWS");
    const int count = given != nullptr ? std::atoi(given) : 1'000'000;
    for (int element = 0; element < kElements; ++element) elements.push_back(kFirstElement + element);
    std::mt19937 random(1);
    CMemDataRow row;
    for (int number = 1; number <= count; ++number) {
      Fill(row, number, random);
      StoreRow(rows, number, row);
    }
  }

  HostApplication host{loom::testing::PlainHost()};
  RowMap& rows = *StreamStore::Instance().MakeStream("bench", kStreamOutdoorHandset)->GetRows();
  std::vector<std::int32_t> elements;

 private:
  static void Fill(CMemDataRow& row, int number, std::mt19937& random) {
    row.Release();
    row.SetRecordTime(1.7e9 + number * 0.1);
    const float turn = static_cast<float>(number) * 1e-5f;
    row.QuickAddIE(2379, uniFieldValue(116.4f + 0.05f * std::sin(turn)));
    row.QuickAddIE(2380, uniFieldValue(39.9f + 0.05f * std::cos(3.0f * turn)));
    for (int other = 0; other < kOthers; ++other) row.QuickAddIE(kFirstOther + other, uniFieldValue(other));
    for (int element = 0; element < kElements; ++element)
      row.QuickAddIE(kFirstElement + element, uniFieldValue(-120 + static_cast<int>(random() % 80)));
  }
};

Drive& TheDrive() {
  static Drive drive;
  return drive;
}

void BM_CollectSamples(benchmark::State& state) {
  Drive& drive = TheDrive();
  for (auto _ : state) benchmark::DoNotOptimize(CollectSamples(drive.rows, drive.elements));
  state.SetItemsProcessed(state.iterations() * static_cast<std::int64_t>(drive.rows.size()));
}
BENCHMARK(BM_CollectSamples)->Unit(benchmark::kMillisecond);

void BM_ThinRows(benchmark::State& state) {
  Drive& drive = TheDrive();
  const Samples samples = CollectSamples(drive.rows, drive.elements);
  for (auto _ : state) benchmark::DoNotOptimize(ThinRows(samples.RowCount(), samples.series, 200'000));
  state.SetItemsProcessed(state.iterations() * static_cast<std::int64_t>(drive.rows.size()));
}
BENCHMARK(BM_ThinRows)->Unit(benchmark::kMillisecond);

// A chart of eight series that is 2,000 pixels wide.
void BM_ThinEightSeries(benchmark::State& state) {
  Drive& drive = TheDrive();
  const Samples samples = CollectSamples(drive.rows, drive.elements);
  const auto rows = static_cast<std::uint32_t>(samples.RowCount());
  for (auto _ : state) {
    for (std::size_t at = 0; at < 8; ++at) benchmark::DoNotOptimize(ThinSeries(samples.series[at], 0, rows, 2000));
  }
}
BENCHMARK(BM_ThinEightSeries)->Unit(benchmark::kMillisecond);

// Every element by every weighting.
void BM_Statistics(benchmark::State& state) {
  Drive& drive = TheDrive();
  const Samples samples = CollectSamples(drive.rows, drive.elements);
  const Scale scale{{-110, -100, -90, -80}, {"#000000", "#000000", "#000000", "#000000", "#000000"}};
  for (auto _ : state) {
    for (const Weighting weighting : {Weighting::kSample, Weighting::kTime, Weighting::kDistance, Weighting::kGrid}) {
      const Bins bins = MakeBins(samples, weighting, {});
      for (const Series& series : samples.series)
        benchmark::DoNotOptimize(
            Summarise(weighting == Weighting::kSample ? series.values : MeansByBin(series, bins), scale));
    }
  }
}
BENCHMARK(BM_Statistics)->Unit(benchmark::kMillisecond);

}  // namespace
}  // namespace loom::analysis

BENCHMARK_MAIN();
