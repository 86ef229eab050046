// Import of a delimited text file of 23 columns: time, position, 8 small and 6 larger integers, 5 decimals, a short
// text, a twentieth of the numbers empty. QLOOM_BENCH_ROWS rows (default 200000) in the folder for temporary files, or
// the file QLOOM_BENCH_TEXT of the same columns. Just written, it comes from the page cache.
#include <benchmark/benchmark.h>
#include <unistd.h>

#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <random>
#include <string>

#include "components/row_cursor.h"
#include "host/application.h"
#include "platform/encoding.h"
#include "platform/file.h"
#include "tests/support/places.h"
#include "text/import/text_importer.h"
#include "text/import/text_lines.h"

namespace loom {
namespace {

constexpr const char* kNames[] = {"RecordTime", "Longitude", "Latitude", "RSCP",       "RSSI",      "CI",
                                  "ISCP",       "TxPower",   "SIR",      "TA",         "Rank",      "CellID",
                                  "LAC",        "Freq",      "ScrCode",  "BlockCount", "ByteCount", "BLER",
                                  "Throughput", "SINR",      "Speed",    "Height",     "Event"};
constexpr const char* kTypes[] = {"float", "float", "float", "short", "short", "short", "short", "short",
                                  "short", "short", "short", "int",   "int",   "int",   "int",   "int",
                                  "int",   "float", "float", "float", "float", "float", "text"};
constexpr std::int32_t kFirstId = 3000;
constexpr std::int32_t kLongitudeId = 2379;
constexpr const char* kLayout = "yyyy-mm-dd hh:nn:ss.ms";

std::int32_t IdOf(std::size_t column) {
  if (column == 0) return kRecordTimeIe;
  const auto number = static_cast<std::int32_t>(column);
  return column < 3 ? kLongitudeId + number - 1 : kFirstId + number;
}

IECatalogue Catalogue() {
  std::string lines;
  for (std::size_t column = 0; column < std::size(kNames); ++column) {
    lines += std::to_string(IdOf(column)) + "\t1\t" + kNames[column] + "\t\t" + kTypes[column] + "\n";
  }
  return IECatalogue::Parse(lines, "columns", "", "events");
}

ColumnMap Columns() {
  ColumnMap map;
  for (std::size_t column = 0; column < std::size(kNames); ++column)
    map[static_cast<std::int32_t>(column)] = kNames[column];
  return map;
}

std::string RowText(std::uint64_t row, std::mt19937_64& random) {
  char text[96];
  const std::uint64_t ms = 29730250 + row * 45 % 50000000;
  std::snprintf(text, sizeof text, "2010-03-%02d %02d:%02d:%02d.%03d,%.6f,%.6f",
                static_cast<int>(5 + row / 1000000 % 20), static_cast<int>(ms / 3600000),
                static_cast<int>(ms / 60000 % 60), static_cast<int>(ms / 1000 % 60), static_cast<int>(ms % 1000),
                116.397128 + 1e-6 * static_cast<double>(row % 100000), 39.916527);
  std::string line = text;
  for (std::size_t column = 3; column < std::size(kNames) - 1; ++column) {
    line += ',';
    if (random() % 20 == 0) continue;
    const auto value = static_cast<double>(random() % 100000000);
    if (column < 11) {
      line += std::to_string(static_cast<int>(value) % 120 - 100);
    } else if (column < 17) {
      line += std::to_string(static_cast<int>(value));
    } else {
      std::snprintf(text, sizeof text, "%.3f", value / 1e4);
      line += text;
    }
  }
  return line + (random() % 12 == 0 ? ",Handover Success\n" : ",\n");
}

// The file of the environment, or one that is gone at the end of the program.
class BenchFile {
 public:
  BenchFile() {
    if (const char* given = std::getenv("QLOOM_BENCH_TEXT")) {
      path_ = given;
      is_given_ = true;
      return;
    }
    path_ = std::filesystem::temp_directory_path() / ("qloom-bench-" + std::to_string(getpid()) + ".csv");
    const char* rows = std::getenv("QLOOM_BENCH_ROWS");
    std::mt19937_64 random(1);
    AtomicFile file(Path());
    for (const char* name : kNames) file.Write(std::string(name == kNames[0] ? "" : ",") + name);
    file.Write("\n");
    for (long row = 0; row < (rows != nullptr ? std::atol(rows) : 200000); ++row) {
      file.Write(RowText(static_cast<std::uint64_t>(row), random));
    }
    file.Commit();
  }
  BenchFile(const BenchFile&) = delete;
  BenchFile& operator=(const BenchFile&) = delete;
  ~BenchFile() {
    if (!is_given_) std::filesystem::remove(path_);
  }
  CString Path() const { return NativePathToGbk(path_.native()); }
  std::int64_t Bytes() const { return static_cast<std::int64_t>(std::filesystem::file_size(path_)); }

 private:
  std::filesystem::path path_;
  bool is_given_ = false;
};

double ResidentBytes() {
  std::ifstream statm("/proc/self/statm");
  double total = 0;
  double resident = 0;
  statm >> total >> resident;
  return resident * static_cast<double>(sysconf(_SC_PAGESIZE));
}

void BM_Lines(benchmark::State& state, const BenchFile& file) {
  for (auto _ : state) {
    TextLines lines(file.Path());
    for (std::string_view line; lines.Next(line);) benchmark::DoNotOptimize(line);
  }
  state.SetBytesProcessed(file.Bytes() * state.iterations());
}

void BM_Cells(benchmark::State& state, const BenchFile& file) {
  const LineSplitter splitter(",");
  std::vector<std::string_view> cells;
  for (auto _ : state) {
    TextLines lines(file.Path());
    for (std::string_view line; lines.Next(line);) {
      splitter.Split(line, cells);
      benchmark::DoNotOptimize(cells.data());
    }
  }
  state.SetBytesProcessed(file.Bytes() * state.iterations());
}

// The whole import; dropping the rows is not timed. `beyond_fields_B` is the memory of a row above 8 bytes a field.
void BM_ImportText(benchmark::State& state, const BenchFile& file) {
  CTextImporter importer;
  importer.SetStreamFullName("bench_UE1");
  importer.SetStreamName("UE1");
  importer.SetDataFormat(kLayout);
  importer.SetSeparate(",");
  double beyond = -1.0;
  std::int64_t rows = 0;
  for (auto _ : state) {
    state.PauseTiming();
    const double before = ResidentBytes();
    importer.SetColumnMapIE(Columns());
    ILogfile* logfile = nullptr;
    state.ResumeTiming();
    importer.Import(file.Path(), &logfile);
    state.PauseTiming();
    if (logfile == nullptr) return state.SkipWithError("the file was not imported");
    rows = logfile->GetRowTotal();
    if (beyond < 0.0) {
      double fields = 0;
      for (const auto& [number, row] : *logfile->GetStreams().front()->GetRows()) {
        fields += static_cast<double>(row->GetParamID().size());
      }
      beyond = (ResidentBytes() - before - 8.0 * fields) / static_cast<double>(rows);
    }
    CStreamManagerCreator::CreateStreamManager()->DropLogfile(file.Path());
    state.ResumeTiming();
  }
  state.SetBytesProcessed(file.Bytes() * state.iterations());
  state.SetItemsProcessed(rows * state.iterations());
  state.counters["beyond_fields_B"] = beyond;
}

void BM_TimeText(benchmark::State& state) {
  TimeTextConverter converter(kLayout);
  const std::string text = "2010-03-05 08:15:30.250";
  for (auto _ : state) benchmark::DoNotOptimize(converter.Seconds(text));
}

}  // namespace
}  // namespace loom

int main(int argc, char** argv) {
  using namespace loom;
  benchmark::Initialize(&argc, argv);
  const BenchFile file;
  const HostApplication host(Catalogue(), testing::PlainHost());
  const auto add = [&](const char* name, void (*run)(benchmark::State&, const BenchFile&)) {
    benchmark::RegisterBenchmark(name, [&file, run](benchmark::State& state) { run(state, file); })
        ->Unit(benchmark::kMillisecond)
        ->Iterations(3);
  };
  add("BM_Lines", &BM_Lines);
  add("BM_Cells", &BM_Cells);
  add("BM_ImportText", &BM_ImportText);
  benchmark::RegisterBenchmark("BM_TimeText", &BM_TimeText);
  benchmark::RunSpecifiedBenchmarks();
  benchmark::Shutdown();
}
