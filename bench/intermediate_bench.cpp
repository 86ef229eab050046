// Reading intermediate files. The file lies in the folder for temporary files and holds QLOOM_BENCH_MB megabytes of
// row data (default 256) in one stream; just written, it comes from the page cache.
#include <benchmark/benchmark.h>
#include <sys/resource.h>
#include <unistd.h>

#include <algorithm>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <string>

#include "components/intermediate/header_blocks.h"
#include "components/intermediate/layout.h"
#include "host/application.h"
#include "importers/intermediate_file_importer.h"
#include "platform/encoding.h"
#include "platform/file.h"

namespace loom {
namespace {

namespace layout = intermediate;

constexpr double kMegabyte = 1e6;

double DataMegabytes() {
  const char* megabytes = std::getenv("QLOOM_BENCH_MB");
  return megabytes != nullptr ? std::atof(megabytes) : 256.0;
}

// 50 numbers and a text of 20 bytes.
std::vector<std::byte> RowData() {
  std::vector<std::byte> bytes;
  ByteWriter out(bytes);
  for (std::uint32_t field = 0; field < 50; ++field) {
    out.U32(layout::FieldDescriptor{.length_bytes = 4, .type = kFieldInt, .ie_id = 100 + field}.Bits());
    out.U32(field);
  }
  out.U32(layout::FieldDescriptor{.length_bytes = 20, .type = kFieldText, .ie_id = 35}.Bits());
  out.Text("rrcConnectionRequest");
  return bytes;
}

std::vector<std::byte> HeadOf(std::uint32_t rows, std::size_t row_bytes) {
  std::vector<std::byte> bytes;
  ByteWriter out(bytes);
  for (const std::uint8_t byte : layout::kMagic) out.U8(byte);
  WriteFileHeaderBlock({}, out);
  out.Zeros(layout::kEntryOffsetsAt - out.Size());
  out.U32(layout::kHeaderBytes);
  out.Zeros(layout::kEntryCountAt - out.Size());
  out.U16(1);
  out.Zeros(layout::kHeaderBytes - out.Size());
  out.U32(static_cast<std::uint32_t>(layout::kHeaderBytes + layout::kEntryBytes));
  out.U8(layout::kFlagImport);
  out.Zeros(layout::kStreamHeaderAt - layout::kFlagAt - 1);
  WriteStreamHeaderBlock({.data_length_bytes = static_cast<double>(rows) * static_cast<double>(row_bytes),
                          .row_count = rows,
                          .index_offset = static_cast<std::uint32_t>(rows * row_bytes),
                          .stream_kind = kStreamOutdoorHandset,
                          .device_name = "A(1)",
                          .protocol = "LTE",
                          .host = HostStreamFields()},
                         out);
  out.Zeros(layout::kBaseGapBytes);
  return bytes;
}

// A file that is gone at the end of the program.
class BenchFile {
 public:
  BenchFile()
      : path_(std::filesystem::temp_directory_path() / ("qloom-bench-" + std::to_string(getpid()) + ".imd")),
        row_bytes_(RowData().size()) {
    rows_ = static_cast<std::uint32_t>(DataMegabytes() * kMegabyte / static_cast<double>(row_bytes_));
    AtomicFile file(Path());
    file.Write(HeadOf(rows_, row_bytes_));
    const std::vector<std::byte> row = RowData();
    for (std::uint32_t n = 0; n < rows_; ++n) file.Write(row);
    for (std::uint32_t n = 0; n < rows_; ++n) file.Write(IndexEntry(n));
    file.Commit();
  }
  BenchFile(const BenchFile&) = delete;
  BenchFile& operator=(const BenchFile&) = delete;
  ~BenchFile() { std::filesystem::remove(path_); }

  CString Path() const { return NativePathToGbk(path_.native()); }
  std::uint32_t rows() const { return rows_; }
  double DataBytes() const { return static_cast<double>(rows_) * static_cast<double>(row_bytes_); }

 private:
  std::vector<std::byte> IndexEntry(std::uint32_t n) const {
    std::vector<std::byte> bytes;
    ByteWriter out(bytes);
    out.F64(1715910000.0 + n);
    out.I32(static_cast<std::int32_t>(n + 1));
    out.U32(static_cast<std::uint32_t>(n * row_bytes_));
    out.U16(static_cast<std::uint16_t>(row_bytes_));
    out.Zeros(layout::kIndexEntryUnusedBytes);
    return bytes;
  }

  std::filesystem::path path_;
  std::size_t row_bytes_;
  std::uint32_t rows_;
};

double ResidentBytes() {
  std::ifstream statm("/proc/self/statm");
  double total = 0;
  double resident = 0;
  statm >> total >> resident;
  return resident * static_cast<double>(sysconf(_SC_PAGESIZE));
}

double PeakBytes() {
  rusage usage{};
  getrusage(RUSAGE_SELF, &usage);
  return static_cast<double>(usage.ru_maxrss) * 1024.0;
}

// The whole import; dropping the log is not timed. `peak_beyond_rows_MB` is what the process had at its peak above what
// it keeps when the rows are in, of the first import.
void BM_ImportIntermediate(benchmark::State& state, HostApplication& host) {
  const BenchFile file;
  double beyond = -1.0;
  for (auto _ : state) {
    ILogfile* logfile = nullptr;
    CIntermediateFileImporter(&host.communicator()).Import(file.Path(), &logfile);
    state.PauseTiming();
    if (logfile == nullptr || logfile->GetRowTotal() != static_cast<std::int32_t>(file.rows())) {
      return state.SkipWithError("the file was not imported");
    }
    if (beyond < 0.0) beyond = PeakBytes() - ResidentBytes();
    CStreamManagerCreator::CreateStreamManager()->DropLogfile(file.Path());
    state.ResumeTiming();
  }
  state.SetBytesProcessed(static_cast<std::int64_t>(file.DataBytes()) * state.iterations());
  state.SetItemsProcessed(file.rows() * state.iterations());
  state.counters["peak_beyond_rows_MB"] = beyond / kMegabyte;
}

}  // namespace
}  // namespace loom

int main(int argc, char** argv) {
  benchmark::Initialize(&argc, argv);
  loom::HostApplication host{loom::IECatalogue(), loom::HostOptions()};
  benchmark::RegisterBenchmark("BM_ImportIntermediate",
                               [&](benchmark::State& state) { loom::BM_ImportIntermediate(state, host); })
      ->Unit(benchmark::kMillisecond)
      ->Iterations(3);
  benchmark::RunSpecifiedBenchmarks();
  benchmark::Shutdown();
}
