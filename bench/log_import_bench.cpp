// Reading, decoding and importing one log. The log is named by QLOOM_BENCH_LOG; bench/README.md has the command that
// makes one of two million records.
#include <benchmark/benchmark.h>
#include <unistd.h>

#include <cstdio>
#include <cstdlib>
#include <fstream>
#include <memory>
#include <memory_resource>

#include "components/decoder.h"
#include "components/factory.h"
#include "components/log_store.h"
#include "components/stream_manager.h"
#include "host/application.h"
#include "manager/io_manager.h"
#include "platform/encoding.h"
#include "platform/file.h"
#include "platform/path.h"
#include "tests/support/places.h"

namespace loom {
namespace {

constexpr int kRecordsPerArena = 100;

CString LogPath() {
  const char* path = std::getenv("QLOOM_BENCH_LOG");
  return path != nullptr ? NativePathToGbk(path) : CString();
}

double ResidentBytes() {
  std::ifstream statm("/proc/self/statm");
  double total = 0;
  double resident = 0;
  statm >> total >> resident;
  return resident * static_cast<double>(sysconf(_SC_PAGESIZE));
}

// Reads the whole log once, calling use(record) for each record; gives the number of records.
template <class Use>
std::int64_t ReadLog(const CString& path, Use use) {
  CLogFileManager store;
  const PathParts parts = SplitPath(path);
  if (store.OpenFile(parts.folder, parts.name, 0) == 0) return 0;
  const int version = store.GetLogFileVersion();
  std::vector<std::byte> block(4 << 20);
  std::int64_t records = 0;
  for (bool more = true; more;) {
    std::pmr::monotonic_buffer_resource arena(block.data(), block.size());
    for (int n = 0; n < kRecordsPerArena && more; ++n) {
      CTestdataBase record(false, 0);
      record.arena = &arena;
      more = store.ReadFile(record) != 0;
      if (more) {
        use(version, record);
        ++records;
      }
    }
  }
  store.CloseReadingFile();
  return records;
}

void SetRates(benchmark::State& state, std::int64_t records, const CString& path) {
  state.SetItemsProcessed(records);
  state.SetBytesProcessed(state.iterations() * static_cast<std::int64_t>(InputFile(path).Size()));
}

void BM_Read(benchmark::State& state) {
  const CString path = LogPath();
  if (path.IsEmpty()) return state.SkipWithError("QLOOM_BENCH_LOG names no log");
  std::int64_t records = 0;
  for (auto _ : state) records += ReadLog(path, [](int, CTestdataBase& record) { benchmark::DoNotOptimize(record); });
  SetRates(state, records, path);
}
BENCHMARK(BM_Read)->Unit(benchmark::kMillisecond);

void BM_ReadAndDecode(benchmark::State& state) {
  const CString path = LogPath();
  if (path.IsEmpty()) return state.SkipWithError("QLOOM_BENCH_LOG names no log");
  const auto decoder = CFactory::Instance().CreateDecoder();
  std::int64_t records = 0;
  for (auto _ : state) {
    records += ReadLog(path, [&](int version, CTestdataBase& record) {
      benchmark::DoNotOptimize(decoder->Decode(version, record, record));
    });
  }
  SetRates(state, records, path);
}
BENCHMARK(BM_ReadAndDecode)->Unit(benchmark::kMillisecond);

// The whole import into an empty project; dropping the log is not timed. Memory is what the process gained.
void BM_Import(benchmark::State& state) {
  const CString path = LogPath();
  if (path.IsEmpty()) return state.SkipWithError("QLOOM_BENCH_LOG names no log");
  CIOManager manager;
  IStreamManager* streams = CStreamManagerCreator::CreateStreamManager();
  std::int64_t rows = 0;
  double fields = 0;
  double bytes = 0;
  for (auto _ : state) {
    const double before = ResidentBytes();
    ILogfile* logfile = nullptr;
    if (manager.GetImporterByType(kImporterOutdoorLog)->Import(path, &logfile) != kImportDone) {
      return state.SkipWithError("the log was not imported");
    }
    state.PauseTiming();
    bytes = ResidentBytes() - before;
    fields = 0;
    for (IDataStream* stream : logfile->GetStreams()) {
      if (stream->GetProtocol() == CString("DOUBLEPROTOCOL")) continue;
      for (const auto& [number, row] : *stream->GetRows()) fields += static_cast<double>(row->GetParamID().size());
    }
    rows += logfile->GetRowTotal();
    streams->DropLogfile(path);
    state.ResumeTiming();
  }
  const auto rows_per_import = static_cast<double>(rows) / static_cast<double>(state.iterations());
  SetRates(state, rows, path);
  state.counters["fields_per_row"] = fields / rows_per_import;
  state.counters["bytes_per_row"] = bytes / rows_per_import;
  state.counters["overhead_per_row"] = (bytes - 8 * fields) / rows_per_import;
}
BENCHMARK(BM_Import)->Unit(benchmark::kMillisecond)->Iterations(3);

}  // namespace
}  // namespace loom

int main(int argc, char** argv) {
  benchmark::Initialize(&argc, argv);
  loom::HostApplication host(loom::testing::PlainHost());
  benchmark::RunSpecifiedBenchmarks();
  benchmark::Shutdown();
}
