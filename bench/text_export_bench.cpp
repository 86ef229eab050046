// Writing a stream as a text file: QLOOM_BENCH_ROWS rows (default 1 million) of 23 columns, the first three time and
// position, 8 small and 6 large integers, 5 decimals and a short text that is mostly missing; 5 % of the numbers are
// missing too. The file goes into the folder for temporary files (TMPDIR); `user_s` is user CPU time of one export.
#include <benchmark/benchmark.h>
#include <sys/resource.h>
#include <unistd.h>

#include <array>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <random>
#include <string>

#include "host/application.h"
#include "host/streams/data_stream.h"
#include "platform/encoding.h"
#include "text/export/text_export_writer.h"

namespace loom {
namespace {

constexpr double kMegabyte = 1e6;

struct IntColumn {
  const char* name;
  int lowest;
  int highest;
};
struct DecimalColumn {
  const char* name;
  int lowest;  // both times 10 to the power of `decimals`
  int highest;
  int decimals;
};

// clang-format off
constexpr IntColumn kShorts[] = {
    {"RSCP", -115, -40}, {"RSSI", -100, -30}, {"CI", -20, 40}, {"ISCP", -120, -60},
    {"TxPower", -50, 24}, {"SIR", -15, 30}, {"TA", 0, 63}, {"Rank", 1, 4}};
constexpr IntColumn kInts[] = {
    {"CellID", 1, 268435455}, {"LAC", 1, 65533}, {"Freq", 9400, 10120}, {"ScrCode", 0, 127},
    {"BlockCount", 0, 2000000}, {"ByteCount", 0, 2000000000}};
constexpr DecimalColumn kDecimals[] = {
    {"BLER", 0, 10000, 2}, {"Throughput", 0, 9999999, 2}, {"SINR", -20000, 30000, 3},
    {"Speed", 0, 12000, 2}, {"Height", -100000, 5000000, 4}};
constexpr const char* kEvents[] = {
    "Handover Success", "Handover Request", "Call Setup", "Call End",
    "Dropped Call", "Cell Reselection", "RRC Connection Setup", "FTP Start"};
// clang-format on

constexpr std::int32_t kFirstShort = 100;
constexpr std::int32_t kFirstInt = 200;
constexpr std::int32_t kFirstDecimal = 300;
constexpr std::int32_t kEvent = 400;
constexpr std::int32_t kLongitude = 2379;
constexpr std::int32_t kLatitude = 2380;

IECatalogue Catalogue() {
  std::string lines = "2\t1\tRecordTime\t\tfloat\n";
  const auto add = [&](std::int32_t id, const char* name, const char* type) {
    lines += std::to_string(id) + "\t1\t" + name + "\t\t" + type + "\n";
  };
  for (std::size_t at = 0; at < std::size(kShorts); ++at)
    add(kFirstShort + static_cast<int>(at), kShorts[at].name, "short");
  for (std::size_t at = 0; at < std::size(kInts); ++at) add(kFirstInt + static_cast<int>(at), kInts[at].name, "int");
  for (std::size_t at = 0; at < std::size(kDecimals); ++at)
    add(kFirstDecimal + static_cast<int>(at), kDecimals[at].name, "float");
  add(kEvent, "Event", "text");
  add(kLongitude, "Longitude", "float");
  add(kLatitude, "Latitude", "float");
  add(2381, "Distance", "float");
  add(2386, "TimeStamp", "int");
  return IECatalogue::Parse(lines, "ies", "", "events");
}

std::vector<CString> Parameters() {
  std::vector<CString> names;
  for (const IntColumn& column : kShorts) names.emplace_back(column.name);
  for (const IntColumn& column : kInts) names.emplace_back(column.name);
  for (const DecimalColumn& column : kDecimals) names.emplace_back(column.name);
  names.emplace_back("Event");
  return names;
}

std::int32_t RowCount() {
  const char* rows = std::getenv("QLOOM_BENCH_ROWS");
  return rows != nullptr ? std::atoi(rows) : 1'000'000;
}

class RowMaker {
 public:
  void Fill(DataStream& stream, std::int32_t rows) {
    CMemDataRow row;
    for (std::int32_t number = 1; number <= rows; ++number) {
      row.Release();
      FillRow(row);
      StoreRow(*stream.GetRows(), number, row);
    }
  }

 private:
  int Within(int lowest, int highest) { return std::uniform_int_distribution(lowest, highest)(random_); }
  bool IsMissing() { return Within(1, 20) == 1; }

  void FillRow(CMemDataRow& row) {
    row.SetRecordTime(1267773330.25 + static_cast<double>(time_ms_) / 1000.0);
    row.QuickAddIE(kLongitude, uniFieldValue(static_cast<float>(longitude_ / 1e6)));
    row.QuickAddIE(kLatitude, uniFieldValue(static_cast<float>(latitude_ / 1e6)));
    time_ms_ += Within(20, 70);
    longitude_ += Within(-40, 55);
    latitude_ += Within(-40, 50);
    std::int32_t id = kFirstShort;
    for (const IntColumn& column : kShorts) {
      const int value = Within(column.lowest, column.highest);
      if (!IsMissing()) row.QuickAddIE(id, uniFieldValue::Short(static_cast<std::uint16_t>(value)));
      ++id;
    }
    id = kFirstInt;
    for (const IntColumn& column : kInts) {
      if (!IsMissing()) row.QuickAddIE(id, uniFieldValue(Within(column.lowest, column.highest)));
      ++id;
    }
    id = kFirstDecimal;
    for (const DecimalColumn& column : kDecimals) {
      constexpr double kPowers[] = {1, 10, 100, 1000, 10000};
      const double value = Within(column.lowest, column.highest) / kPowers[column.decimals];
      if (!IsMissing()) row.QuickAddIE(id, uniFieldValue(static_cast<float>(value)));
      ++id;
    }
    if (Within(1, 12) == 1) row.QuickAddIE(kEvent, uniFieldValue::Text(row.AddText(kEvents[Within(0, 7)])));
  }

  std::mt19937 random_{1};
  std::int64_t time_ms_ = 0;
  double longitude_ = 116397128;
  double latitude_ = 39916527;
};

double UserSeconds() {
  rusage usage{};
  getrusage(RUSAGE_SELF, &usage);
  return static_cast<double>(usage.ru_utime.tv_sec) + static_cast<double>(usage.ru_utime.tv_usec) / 1e6;
}

double PeakBytes() {
  rusage usage{};
  getrusage(RUSAGE_SELF, &usage);
  return static_cast<double>(usage.ru_maxrss) * 1024.0;
}

void BM_ExportText(benchmark::State& state, std::int32_t fill_gaps) {
  DataStream stream("bench", kStreamOutdoorHandset);
  RowMaker().Fill(stream, RowCount());
  const std::filesystem::path path =
      std::filesystem::temp_directory_path() / ("qloom-bench-" + std::to_string(getpid()) + ".txt");
  const double peak_before = PeakBytes();
  double user_s = 0;
  for (auto _ : state) {
    std::vector<CString> names = Parameters();
    const double start_s = UserSeconds();
    const int result = WriteStreamAsText(
        {.file_name = NativePathToGbk(path.native()), .separator = ",", .fill_gaps = fill_gaps}, &stream, names);
    user_s += UserSeconds() - start_s;
    if (result != 1) return state.SkipWithError("the file was not written");
  }
  const auto rounds = static_cast<double>(state.iterations());
  const auto bytes = static_cast<double>(std::filesystem::file_size(path));
  std::filesystem::remove(path);
  state.SetItemsProcessed(RowCount() * state.iterations());
  state.SetBytesProcessed(static_cast<std::int64_t>(bytes) * state.iterations());
  state.counters["user_s"] = user_s / rounds;
  state.counters["peak_beyond_rows_MB"] = (PeakBytes() - peak_before) / kMegabyte;
}

}  // namespace
}  // namespace loom

int main(int argc, char** argv) {
  benchmark::Initialize(&argc, argv);
  const loom::HostApplication host{loom::Catalogue(), loom::HostOptions()};
  for (const int fill_gaps : {0, 1}) {
    benchmark::RegisterBenchmark(fill_gaps != 0 ? "BM_ExportTextFilled" : "BM_ExportText",
                                 [=](benchmark::State& state) { loom::BM_ExportText(state, fill_gaps); })
        ->Unit(benchmark::kMillisecond)
        ->Iterations(3);
  }
  benchmark::RunSpecifiedBenchmarks();
  benchmark::Shutdown();
}
