// Conversion of one scanner record and of one LTE record.
#include <benchmark/benchmark.h>

#include <vector>

#include "components/stream_manager.h"
#include "conversion/td_record_converter.h"
#include "host/application.h"
#include "tests/support/records.h"

namespace loom {
namespace {

constexpr std::size_t kEntries = 32;
constexpr std::size_t kLteNeighbourEntries = 16;

// 32 carriers each; about 500 values when the RSSI of the timeslots 1 to 6 is not there, 770 with all.
TestRecord ScanRecord(bool with_timeslots) {
  std::vector<ScanPccpch> pccpch(kEntries);
  std::vector<ScanDwPch> dwpch(kEntries);
  std::vector<ScanRssi> rssi(kEntries);
  for (std::size_t at = 0; at < kEntries; ++at) {
    const auto step = static_cast<float>(at);
    const auto number = static_cast<std::uint8_t>(at);
    pccpch[at] = {.carrier_hz = 2010800000,
                  .cell_parameter_id = number,
                  .ec_io = -3.5f,
                  .sir = 12,
                  .cir = -1.5f - step,
                  .iscp = -90.0f - step,
                  .rscp = -80.5f - step,
                  .timing = 100};
    dwpch[at] = {.carrier_hz = 2010800000,
                 .cell_parameter_id = number,
                 .sync_dl = number,
                 .rscp = -70.5f - step,
                 .cir = 3.0f,
                 .iscp = -88.0f,
                 .ec_io = -4.0f,
                 .timing = 7};
    rssi[at] = {.carrier_hz = 2010800000, .ts0 = -60, .frame = -61};
    if (with_timeslots) {
      rssi[at].dwpts = -70;
      rssi[at].ts1 = rssi[at].ts2 = rssi[at].ts3 = rssi[at].ts4 = rssi[at].ts5 = rssi[at].ts6 = -75;
    }
  }
  return RecordBuilder(kRecordScanner)
      .With(ScanBlock{
          .scan_type = 0,
          .carriers = ScanCarriers{.pccpch_count = kEntries, .pccpch = pccpch, .dwpch_count = kEntries, .dwpch = dwpch},
          .rssi = ScanRssiList{.count = kEntries, .carriers = rssi}});
}

TestRecord LteMeasurement() {
  const std::vector<LteNeighbour> neighbours(
      kLteNeighbourEntries,
      LteNeighbour{.earfcn = 38950, .physical_cell_id = 7, .ie33899 = 40, .ie33963 = 20, .ie34027 = 50, .ie34091 = 3});
  return LteRecord(kModelTn300Lte)
      .With(LteMeasBlock{
          .serving = LteServingCell{.earfcn = 38950, .physical_cell_id = 301, .ie33364 = 0xFFA0},
          .meas24 = LteMeas24{.ie33650 = 3, .ie33652 = 4},
          .neighbours = LteNeighbourList{.count_plus_one = kLteNeighbourEntries + 1, .neighbours = neighbours},
          .physical = LtePhysicalConfig{}});
}

template <class Convert>
void Run(benchmark::State& state, Convert convert) {
  const HostApplication host(IECatalogue{}, HostOptions{});
  CTDRecordConverter converter;
  struct_STREAMINFO stream;
  std::size_t values = 0;
  for (auto _ : state) {
    ++stream.row_number;
    const auto row = convert(converter, stream);
    values = row->GetParamID().size();
    benchmark::DoNotOptimize(row);
  }
  state.counters["values"] = static_cast<double>(values);
}

void BM_Scanner(benchmark::State& state) {
  const TestRecord record = ScanRecord(state.range(0) != 0);
  Run(state, [&](CTDRecordConverter& converter, struct_STREAMINFO& stream) {
    stream.stream_type = kStreamScanner;
    return converter.ConvertScanner(record, stream, 0);
  });
}
BENCHMARK(BM_Scanner)->Arg(0)->Arg(1);

void BM_Lte(benchmark::State& state) {
  const TestRecord record = LteMeasurement();
  Run(state, [&](CTDRecordConverter& converter, struct_STREAMINFO& stream) {
    stream.stream_type = kStreamOutdoorHandset;
    return converter.ConvertLTE(record, stream.state, stream, 0);
  });
}
BENCHMARK(BM_Lte);

}  // namespace
}  // namespace loom

BENCHMARK_MAIN();
