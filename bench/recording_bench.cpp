// Recordings of handsets: from a file in the cache to the log, on one core.
#include <benchmark/benchmark.h>

#include <string>
#include <vector>

#include "host/recordings/make_log.h"
#include "tests/recordings/recording_builder.h"
#include "tests/support/temp_folder.h"

namespace {

using namespace loom;
using Builder = test::RecordingBuilder;

constexpr std::size_t kBytes = 64U << 20;

// B193 with a part 25 of version 4, whose levels are all told.
Builder::Bytes ServingMeasurement() {
  Builder::Bytes body;
  ByteWriter out(body);
  out.U32(1 << 8 | 1);
  out.U8(25);
  out.U8(4);
  out.U16(80);
  out.U16(5'230);
  for (int i = 0; i < 37; ++i) out.U16(static_cast<std::uint16_t>(i == 0 ? 101 : 0x5A5A + i));
  return body;
}

// One packet of a code 0 stands for a debug text.
struct Piece {
  std::uint16_t code;
  Builder::Bytes body;
  int count;
};

std::vector<Piece> PiecesOf(int mix) {
  const Builder::Bytes text(110, std::byte{'d'});
  const Builder::Bytes unread(160, std::byte{7});
  const Builder::Bytes message = Builder::Rrc(101, 7, std::string(28, '\x22'));
  switch (mix) {
    case 0:  // messages only
      return {{0xB0C0, message, 1}};
    case 1:  // measurements only
      return {{0xB193, ServingMeasurement(), 1}};
    default:  // what a handset writes: mostly texts and codes that are not read
      return {{0, text, 12}, {0xB063, unread, 8}, {0xB0C0, message, 1}, {0xB193, ServingMeasurement(), 2}};
  }
}

void SaveRecording(const std::string& path, int mix) {
  Builder recording;
  const std::vector<Piece> pieces = PiecesOf(mix);
  for (double time_s = 0.0; recording.bytes().size() < kBytes; time_s += 0.01) {
    for (const Piece& piece : pieces) {
      for (int i = 0; i < piece.count; ++i) {
        if (piece.code != 0)
          recording.Put(piece.code, time_s + i * 0.001, piece.body);
        else
          recording.Frame(piece.body);
      }
    }
  }
  recording.Save(path);
}

void BM_RecordingToLog(benchmark::State& state) {
  testing::TempFolder folder;
  SaveRecording((folder.native() / "recording").string(), static_cast<int>(state.range(0)));
  RecordingOptions options;
  options.files = {folder.File("recording")};
  options.out = folder.File("out.log");
  options.utc_offset_s = 0;
  std::uint64_t records = 0;
  for (auto _ : state) {
    const RecordingReport report = MakeLogFromRecordings(options);
    for (const auto& [kind, count] : report.records) records += count;
  }
  state.SetBytesProcessed(static_cast<std::int64_t>(state.iterations() * kBytes));
  state.SetItemsProcessed(static_cast<std::int64_t>(records));
  state.SetLabel(state.range(0) == 0 ? "messages" : state.range(0) == 1 ? "measurements" : "mixed");
}
BENCHMARK(BM_RecordingToLog)->Arg(0)->Arg(1)->Arg(2)->Unit(benchmark::kMillisecond)->UseRealTime();

}  // namespace

BENCHMARK_MAIN();
