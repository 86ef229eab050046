// Merging and cutting logs. The two logs are named by QLOOM_BENCH_LOG and QLOOM_BENCH_LOG_2 (the first once more
// without it); what is written goes into the folder QLOOM_BENCH_OUT, /dev/shm without it.
#include <benchmark/benchmark.h>
#include <sys/resource.h>

#include <cstdlib>

#include "components/log_store.h"
#include "host/logstore/log_reader.h"
#include "platform/encoding.h"
#include "platform/file.h"
#include "platform/path.h"

namespace loom {
namespace {

CString Named(const char* variable, const CString& otherwise) {
  const char* path = std::getenv(variable);
  return path != nullptr ? NativePathToGbk(path) : otherwise;
}

CString FirstLog() { return Named("QLOOM_BENCH_LOG", ""); }
CString OutFolder() { return WithSeparator(Named("QLOOM_BENCH_OUT", "/dev/shm")); }

// Times `work`, which writes `target` and tells whether it did.
template <class Work>
void Measure(benchmark::State& state, std::uint64_t input_bytes, const CString& target, Work work) {
  for (auto _ : state) {
    if (!work()) return state.SkipWithError("the log tool refused");
    state.PauseTiming();
    RemoveFile(target);
    state.ResumeTiming();
  }
  rusage usage{};
  getrusage(RUSAGE_SELF, &usage);
  state.SetBytesProcessed(static_cast<std::int64_t>(input_bytes * static_cast<std::uint64_t>(state.iterations())));
  state.counters["peak_MB"] = static_cast<double>(usage.ru_maxrss) / 1024.0;
}

void Merge(benchmark::State& state) {
  const CString first = FirstLog();
  if (first.IsEmpty()) return state.SkipWithError("QLOOM_BENCH_LOG names no log");
  const CString second = Named("QLOOM_BENCH_LOG_2", first);
  const CString target = OutFolder() + "qloom-bench-merged.log";
  Measure(state, InputFile(first).Size() + InputFile(second).Size(), target, [&] {
    return CLogFileManager().MergeFile({first, second}, target, 1) == kMergeDone;
  });
}

// The sixth of the log's time in its middle.
void CutSixth(benchmark::State& state) {
  const CString log = FirstLog();
  if (log.IsEmpty()) return state.SkipWithError("QLOOM_BENCH_LOG names no log");
  const auto times = LogReader(log).ReadTimes();
  if (!times) return state.SkipWithError("the log is empty");
  const CalendarDay day = PeekLogHeader(log)->day;
  const auto at = [&](std::int64_t time_ns) {
    return CTime(LocalTime{.day = day, .second = static_cast<int>(time_ns / 1'000'000'000 - MidnightSeconds(day))});
  };
  const std::int64_t sixth_ns = (times->end_ns - times->start_ns) / 6;
  const CString target = "qloom-bench-cut.log";
  Measure(state, InputFile(log).Size(), OutFolder() + target, [&] {
    return CLogFileManager().ExtractLogFile(log, at(times->start_ns + sixth_ns * 5 / 2),
                                            at(times->start_ns + sixth_ns * 7 / 2), OutFolder(),
                                            target) == kExtractDone;
  });
}

BENCHMARK(Merge)->Unit(benchmark::kMillisecond)->MeasureProcessCPUTime();
BENCHMARK(CutSixth)->Unit(benchmark::kMillisecond)->MeasureProcessCPUTime();

}  // namespace
}  // namespace loom

BENCHMARK_MAIN();
