// Finding out how a text file of another tool is written, and writing it anew. QLOOM_BENCH_ROWS rows (default 1000000)
// of time, position, five numbers and a text in the folder for temporary files. Just written, it comes from the page
// cache.
#include <benchmark/benchmark.h>
#include <unistd.h>

#include <cstdlib>
#include <filesystem>
#include <fstream>

#include "host/application.h"
#include "platform/encoding.h"
#include "tests/support/places.h"
#include "text/dialect/converter.h"
#include "text/dialect/finder.h"

namespace loom {
namespace {

class File {
 public:
  File() : path_(std::filesystem::temp_directory_path() / ("qloom-dialect-" + std::to_string(getpid()) + ".csv")) {
    const char* const rows = std::getenv("QLOOM_BENCH_ROWS");
    std::ofstream out(path_);
    out << "timestamp,latitude,longitude,rsrp,rsrq,pci,earfcn,speed,operator\n";
    for (long row = 0, count = rows != nullptr ? std::atol(rows) : 1000000; row < count; ++row) {
      char line[160];
      std::snprintf(line, sizeof(line), "2025-11-08 %02ld:%02ld:%02ld,%.6f,%.6f,%ld,%ld,%ld,1850,%.2f,Operator %ld\n",
                    row / 3600 % 24, row / 60 % 60, row % 60, 37.5 + 1e-6 * static_cast<double>(row % 10000),
                    127.0 + 1e-6 * static_cast<double>(row % 9000), -70 - row % 50, -5 - row % 15, row % 504,
                    0.25 * static_cast<double>(row % 400), row % 3);
      out << line;
    }
  }
  File(const File&) = delete;
  File& operator=(const File&) = delete;
  ~File() {
    std::filesystem::remove(path_);
    std::filesystem::remove(Out());
  }
  CString Path() const { return NativePathToGbk(path_.native()); }
  std::string Out() const { return path_.native() + ".out"; }
  std::int64_t Bytes() const { return static_cast<std::int64_t>(std::filesystem::file_size(path_)); }

 private:
  std::filesystem::path path_;
};

const File& TheFile() {
  static const File file;
  return file;
}

void Inspect(benchmark::State& state) {
  for (auto _ : state) benchmark::DoNotOptimize(dialect::Inspect(TheFile().Path(), {}));
  state.SetBytesProcessed(state.iterations() * TheFile().Bytes());
}
BENCHMARK(Inspect)->Unit(benchmark::kMillisecond);

void ToCsv(benchmark::State& state) {
  const dialect::Findings found = dialect::Inspect(TheFile().Path(), {});
  for (auto _ : state) ConvertToCsv(TheFile().Path(), found, NativePathToGbk(TheFile().Out()));
  state.SetBytesProcessed(state.iterations() * TheFile().Bytes());
}
BENCHMARK(ToCsv)->Unit(benchmark::kMillisecond);

void ToImport(benchmark::State& state) {
  HostApplication host(testing::PlainHost());
  const dialect::Findings found = dialect::Inspect(TheFile().Path(), {});
  const dialect::ElementMapping mapping = MapElements(found, dialect::LoadElementRules(), {});
  for (auto _ : state)
    ConvertToImport(TheFile().Path(), found, mapping, dialect::TimeForm::kSeconds, NativePathToGbk(TheFile().Out()));
  state.SetBytesProcessed(state.iterations() * TheFile().Bytes());
}
BENCHMARK(ToImport)->Unit(benchmark::kMillisecond);

}  // namespace
}  // namespace loom

BENCHMARK_MAIN();
