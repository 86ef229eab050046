// Writing workbooks: 196,602 rows of 23 columns, split over three worksheets, in the folder for temporary files. The
// cells are like those of a drive test: a time, a position, 14 integers, 5 decimals, a text; one of twenty is empty.
// With QLOOM_BENCH_TEXT=FILE the cells of ready tables are those of a comma separated file with a header.
#include <benchmark/benchmark.h>
#include <sys/resource.h>
#include <unistd.h>

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <memory>
#include <random>
#include <string>
#include <vector>

#include "components/project.h"
#include "excel/excel_exporter.h"
#include "host/application.h"
#include "host/streams/stream_store.h"
#include "host/subjects/stream_subject.h"
#include "host/workbook/workbook_server.h"
#include "platform/encoding.h"
#include "platform/number.h"
#include "tests/support/places.h"

namespace loom {
namespace {

constexpr std::int32_t kRows = 196602;
constexpr std::int32_t kFirstCounterIe = 160;
constexpr int kCounters = 13;
constexpr int kDecimals = 5;
constexpr std::int32_t kDecimalIes[kDecimals] = {501, 2381, 2386, 2379, 2380};
constexpr double kMegabyte = 1e6;

double MemoryBytes(bool peak) {
  rusage usage{};
  getrusage(RUSAGE_SELF, &usage);
  if (peak) return static_cast<double>(usage.ru_maxrss) * 1024.0;
  std::ifstream statm("/proc/self/statm");
  double total = 0;
  double resident = 0;
  statm >> total >> resident;
  return resident * static_cast<double>(sysconf(_SC_PAGESIZE));
}

std::vector<std::string> SplitLine(const std::string& line) {
  std::vector<std::string> cells;
  for (std::size_t from = 0; from <= line.size();) {
    const std::size_t end = std::min(line.find(',', from), line.size());
    cells.push_back(line.substr(from, end - from));
    from = end + 1;
  }
  return cells;
}

// Lines like those of the drive.
std::vector<std::string> MadeRow(std::mt19937& random, std::int32_t row) {
  std::vector<std::string> cells{NumberText(36000.25 + row * 0.1, 3), NumberText(116.397128 + row * 1e-6, 6),
                                 NumberText(39.916527 + row * 1e-6, 6)};
  const auto number = [&](int low, int high) { return std::uniform_int_distribution<int>(low, high)(random); };
  for (int at = 0; at < 8; ++at) cells.push_back(std::to_string(number(-120, 40)));
  for (int at = 0; at < 6; ++at) cells.push_back(std::to_string(number(1, 268435455)));
  for (int at = 0; at < 5; ++at) cells.push_back(NumberText(number(-20000, 30000) / 1000.0, 3));
  for (std::size_t at = 3; at < cells.size(); ++at) {
    if (number(0, 19) == 0) cells[at].clear();
  }
  cells.push_back(number(0, 19) == 0 ? "Handover Request" : "");
  return cells;
}

void PutRow(COleSafeArray& table, std::int32_t row, const std::vector<std::string>& cells) {
  const std::span<VARIANT> places = table.Row(row);
  for (std::size_t at = 0; at < places.size() && at < cells.size(); ++at)
    places[at] = VARIANT(std::string_view(cells[at]));
}

COleSafeArray MakeTable() {
  COleSafeArray table;
  const std::uint32_t counts[] = {kRows + 1, 23};
  table.Create(VT_VARIANT, counts);
  if (const char* path = std::getenv("QLOOM_BENCH_TEXT")) {
    std::ifstream file(path);
    std::string line;
    for (std::int32_t row = 0; row <= kRows && std::getline(file, line); ++row) PutRow(table, row, SplitLine(line));
    return table;
  }
  std::mt19937 random(1);
  PutRow(table, 0, std::vector<std::string>(23, "Column"));
  for (std::int32_t row = 0; row < kRows; ++row) PutRow(table, row + 1, MadeRow(random, row));
  return table;
}

// A stream with the columns that the drive has.
IDataStream* MakeStream() {
  IDataStream* stream = StreamStore::Instance().MakeStream("drive", kStreamOutdoorHandset);
  std::mt19937 random(1);
  const auto number = [&](int low, int high) { return std::uniform_int_distribution<int>(low, high)(random); };
  for (std::int32_t row = 1; row <= kRows; ++row) {
    CMemDataRow filled;
    filled.SetRecordTime(1715938200.25 + row * 0.1);
    for (int at = 0; at < kCounters; ++at) {
      const bool gap = number(0, 19) == 0;
      filled.QuickAddIE(kFirstCounterIe + at, uniFieldValue(gap ? kInvalidInt : number(1, 1 << (2 * at + 2))));
    }
    for (const std::int32_t ie : kDecimalIes)
      filled.QuickAddIE(ie, uniFieldValue(static_cast<float>(number(-20000, 30000)) / 1000.0f));
    if (number(0, 19) == 0) filled.QuickAddIE(35, uniFieldValue::Text(filled.AddText("rrcConnectionRequest")));
    StoreRow(*stream->GetRows(), row, filled);
  }
  stream->FinishRows();
  return stream;
}

std::vector<CString> StreamColumns() {
  std::vector<CString> columns{"RecordTime"};
  for (int at = 0; at < kCounters; ++at) columns.push_back(g_sysProject->GetIEName(kFirstCounterIe + at));
  for (const std::int32_t ie : kDecimalIes) columns.push_back(g_sysProject->GetIEName(ie));
  columns.push_back("MsgName");
  return columns;
}

class Target {
 public:
  Target() : path_(std::filesystem::temp_directory_path() / ("qloom-bench-" + std::to_string(getpid()) + ".xlsx")) {}
  ~Target() { std::filesystem::remove(path_); }
  CString Path() const { return NativePathToGbk(path_.native()); }
  double Megabytes() const { return static_cast<double>(std::filesystem::file_size(path_)) / kMegabyte; }

 private:
  std::filesystem::path path_;
};

// The export alone, the table being there. `peak_to_table` is what the process had at its peak beyond what it had
// before the table was made, in times of the table.
void BM_ExportTable(benchmark::State& state, HostApplication& host) {
  const double before = MemoryBytes(false);
  std::vector<COleSafeArray> tables{MakeTable()};
  const double with_table = MemoryBytes(false);
  std::vector<CString> names{"drive"};
  const Target target;
  CExcelExporter exporter;
  for (auto _ : state) {
    host.workbooks().SaveNextAs(target.Path());
    exporter.Export("", tables, names);
  }
  if (host.workbooks().SavedPaths().empty()) return state.SkipWithError("nothing was saved");
  state.SetItemsProcessed(static_cast<std::int64_t>(kRows) * state.iterations());
  state.counters["file_MB"] = target.Megabytes();
  state.counters["table_MB"] = (with_table - before) / kMegabyte;
  state.counters["beyond_table_MB"] = (MemoryBytes(true) - with_table) / kMegabyte;
}

// From the rows of a stream to the workbook, by the export of one subject.
void BM_ExportStream(benchmark::State& state, HostApplication& host) {
  static IDataStream* const stream = MakeStream();
  std::vector<CString> columns = StreamColumns();
  StreamSubject subject(*stream);
  const Target target;
  CExcelExporter exporter;
  for (auto _ : state) {
    host.workbooks().SaveNextAs(target.Path());
    if (exporter.Export("", &subject, columns) != 1) return state.SkipWithError("the export failed");
  }
  state.SetItemsProcessed(static_cast<std::int64_t>(kRows) * state.iterations());
  state.counters["file_MB"] = target.Megabytes();
}

}  // namespace
}  // namespace loom

int main(int argc, char** argv) {
  benchmark::Initialize(&argc, argv);
  loom::HostApplication host(loom::testing::PlainHost());
  const auto add = [&](const char* name, auto run) {
    benchmark::RegisterBenchmark(name, [&host, run](benchmark::State& state) { run(state, host); })
        ->Unit(benchmark::kMillisecond)
        ->Iterations(3);
  };
  add("BM_ExportTable", loom::BM_ExportTable);
  add("BM_ExportStream", loom::BM_ExportStream);
  benchmark::RunSpecifiedBenchmarks();
  benchmark::Shutdown();
}
