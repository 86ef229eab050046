// Writing a stream as layers: QLOOM_BENCH_ROWS rows (default 200,000) of a drive with 20 columns, a tenth of the values
// missing. Files go into the folder for temporary files (TMPDIR).
#include <benchmark/benchmark.h>
#include <sys/resource.h>

#include <cstdlib>
#include <random>

#include "host/application.h"
#include "host/sinks/export_layers.h"
#include "host/sinks/stream_layer.h"
#include "host/streams/stream_store.h"
#include "tests/support/places.h"
#include "tests/support/temp_folder.h"

namespace loom {
namespace {

constexpr std::int32_t kFirstInt = 140;    // TD-SCDMA serving cell
constexpr std::int32_t kFirstReal = 1034;  // block error rates
constexpr std::int32_t kMessageName = 35;

int RowCount() {
  const char* const rows = std::getenv("QLOOM_BENCH_ROWS");
  return rows != nullptr ? std::atoi(rows) : 200'000;
}

CMemDataRow MakeRow(int number, std::mt19937& random) {
  CMemDataRow row;
  row.SetRecordTime(1715910000 + number * 0.5);
  row.QuickAddIE(2379, uniFieldValue(116.3f + static_cast<float>(number % 3000) * 1e-4f));
  row.QuickAddIE(2380, uniFieldValue(39.8f + static_cast<float>(number / 3000) * 1e-3f));
  for (std::int32_t id = 0; id < 12; ++id)
    if (random() % 10 != 0) row.QuickAddIE(kFirstInt + id, uniFieldValue(static_cast<std::int32_t>(random() % 65536)));
  for (std::int32_t id = 0; id < 5; ++id)
    if (random() % 10 != 0) row.QuickAddIE(kFirstReal + id, uniFieldValue(static_cast<float>(random() % 10'000) / 100));
  if (random() % 8 == 0) row.QuickAddIE(kMessageName, uniFieldValue::Text(row.AddText("rrcConnectionRequest")));
  return row;
}

IDataStream& Drive() {
  static IDataStream* stream = nullptr;
  if (stream != nullptr) return *stream;
  std::mt19937 random(11);
  stream = StreamStore::Instance().MakeStream("drive", kStreamOutdoorHandset);
  for (int number = 1; number <= RowCount(); ++number) StoreRow(*stream->GetRows(), number, MakeRow(number, random));
  return *stream;
}

double UsedSeconds() {
  rusage use{};
  getrusage(RUSAGE_SELF, &use);
  const auto seconds = [](const timeval& time) {
    return static_cast<double>(time.tv_sec) + 1e-6 * static_cast<double>(time.tv_usec);
  };
  return seconds(use.ru_utime) + seconds(use.ru_stime);
}

void BM_ExportLayer(benchmark::State& state, const char* out) {
  static const HostApplication host(testing::PlainHost());
  const testing::TempFolder folder;
  std::vector<std::unique_ptr<ILayerSource>> layers;
  layers.push_back(std::make_unique<StreamLayer>(Drive(), "drive.log", std::span<const CString>()));
  const double before = UsedSeconds();
  for (auto _ : state) ExportLayers(layers, {.out = folder.File(out)});
  state.counters["processor_s"] = benchmark::Counter(UsedSeconds() - before, benchmark::Counter::kAvgIterations);
  state.SetItemsProcessed(state.iterations() * RowCount());
}
BENCHMARK_CAPTURE(BM_ExportLayer, geopackage, "x.gpkg")->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(BM_ExportLayer, geojson, "x.geojson")->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(BM_ExportLayer, kmz, "x.kmz")->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(BM_ExportLayer, gpx, "x.gpx")->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(BM_ExportLayer, flatgeobuf, "x.fgb")->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(BM_ExportLayer, shapefile, "x.shp")->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(BM_ExportLayer, tab, "x.tab")->Unit(benchmark::kMillisecond);

}  // namespace
}  // namespace loom

BENCHMARK_MAIN();
