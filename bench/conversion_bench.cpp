// Conversion of TD-SCDMA handset records into rows, as a whole and by stage. Argument 1 turns the selection on, with
// every IE of the catalogue selected.
#include <benchmark/benchmark.h>

#include <cstdint>
#include <vector>

#include "components/project.h"
#include "components/stream_info.h"
#include "conversion/td_record_converter.h"
#include "host/application.h"
#include "tests/support/places.h"
#include "tests/support/records.h"

namespace loom {
namespace {

template <class Entry, class Make>
std::vector<Entry> ListOf(int size, Make make) {
  std::vector<Entry> list;
  for (int at = 0; at < size; ++at) list.push_back(make(at));
  return list;
}

CIE_SCell_Para ServingCell() {
  CIE_SCell_Para block;
  block.ie142 = 1;
  block.ie143 = 2;
  block.ie144 = 3;
  block.lac = 4;
  block.cell_key = 5;
  block.cell_parameter_id = 6;
  block.uarfcn = 10054;
  block.ie152 = block.ie153 = block.ie155 = block.ie157 = block.ie159 = 7;
  block.ie154 = 8;
  block.ie156 = block.ie5260 = block.ie5261 = 9;
  return block;
}

RecordBuilder WithServingCell() { return HandsetRecord().Text("UE").With(ServingCell()); }

std::vector<TdCodeChannel> CodeChannels() {
  return ListOf<TdCodeChannel>(16, [](int at) {
    return TdCodeChannel{.number = static_cast<std::int8_t>(at),
                         .timeslot = static_cast<std::int8_t>(2 + at % 5),
                         .ie297 = 2,
                         .ie393 = at,
                         .direction = 1,
                         .midamble_configuration = 1,
                         .midamble_shift = at};
  });
}

RecordBuilder WithCodeChannels() {
  return HandsetRecord().With(CIE_Channel_Para{.code_channel_count = 16, .code_channels = CodeChannels()});
}

// Code channels, transport channels and codes.
RecordBuilder WithGroups() {
  const auto transport_channels = ListOf<TdTransportChannel>(4, [](int at) {
    return TdTransportChannel{.number = static_cast<std::int8_t>(at + 1), .ie935 = at, .ie1000 = 50, .ie1033 = 1.5f};
  });
  const auto codes = ListOf<TdCodeEntryD>(2, [](int at) {
    return TdCodeEntryD{.number = static_cast<std::int8_t>(at + 1), .ie1588 = 640, .ie1622 = 3840, .ie1818 = 1};
  });
  return HandsetRecord()
      .With(CIE_Channel_Para{.code_channel_count = 16,
                             .code_channels = CodeChannels(),
                             .transport_channel_count = 4,
                             .transport_channels = transport_channels,
                             .ie174 = 3})
      .With(CIE_Meas_Res{.count_d = 2, .entries_d = codes, .scale_word = 0});
}

// Adds serving cell, timeslots, 8 neighbours and 2 samples.
RecordBuilder WithMeasurements(RecordBuilder record) {
  const auto iscp = ListOf<TimeslotValue>(7, [](int at) {
    return TimeslotValue{static_cast<std::int8_t>(at), static_cast<std::int8_t>(10 + at)};
  });
  const auto rscp = ListOf<TimeslotValue>(2, [](int at) {
    return TimeslotValue{static_cast<std::int8_t>(at + 2), static_cast<std::int8_t>(40 + at)};
  });
  const auto neighbours = ListOf<TdNeighbour>(8, [](int at) {
    return TdNeighbour{.cell_parameter_id = static_cast<std::int8_t>(at),
                       .uarfcn = 10080 + at,
                       .pccpch_rscp = static_cast<std::int8_t>(30 + at),
                       .ie1237 = 3};
  });
  const auto samples = ListOf<TdSample>(2, [](int) { return TdSample{.ie5132 = 1, .ie5165 = 2}; });
  return record.Text("UE")
      .With(ServingCell())
      .With(CIE_SCell_Meas{.pccpch_rscp = 50,
                           .ie498 = 1,
                           .ie508 = 2,
                           .timeslot_iscp_count = 7,
                           .timeslot_iscp = iscp,
                           .timeslot_rscp_count = 2,
                           .timeslot_rscp = rscp,
                           .ie501 = 5,
                           .timeslot = 2,
                           .ie502 = 60,
                           .ie503 = 40,
                           .ie506 = 70})
      .With(CIE_NCell_Meas{.count = 8, .neighbours = neighbours})
      .With(TdSamples{.count = 2, .samples = samples});
}

// About 150 fields.
RecordBuilder FullRecord() { return WithMeasurements(WithCodeChannels()); }
// With transport channels and codes as well.
RecordBuilder LargeRecord() { return WithMeasurements(WithGroups()); }

class Bench {
 public:
  explicit Bench(std::int32_t selection_switch) : selection_switch_(selection_switch) {
    stream_.stream_type = kStreamOutdoorHandset;
    stream_.day_offset_s = 0.0;
    if (selection_switch == 0) return;
    for (const CIEEntry& entry : host_.catalogue().Entries()) settings_[entry.name].ie_name = entry.name;
    for (const char* name : kSelectionNames) settings_[CString(name)].ie_name = CString(name);
    converter_.SetImportSettings(settings_);
  }

  void Run(benchmark::State& bench, const RecordBuilder& builder) {
    const TestRecord record = builder.Build();
    stream_.state.Update<CIE_SCell_Para>(record);
    stream_.crc_channels = {1, 2, 3};
    std::size_t fields = 0;
    for (auto _ : bench) {
      stream_.row_number = 1;
      const auto row = converter_.ConvertUE(record, stream_.state, stream_, selection_switch_);
      fields = row->GetParamID().size();
      benchmark::DoNotOptimize(row.get());
    }
    bench.counters["fields"] = static_cast<double>(fields);
  }
  void RunSignalling(benchmark::State& bench, const RecordBuilder& builder) {
    const TestRecord record = builder.Build();
    stream_.crc_channels = {1, 2, 3};
    const auto row = converter_.ConvertUE(record, stream_.state, stream_, selection_switch_);
    const std::size_t fields = row->GetParamID().size();
    CRowIEWriter writer;
    writer.SetImportSettings(settings_);
    writer.Begin(stream_, selection_switch_, *row);
    SignallingPass pass;
    for (auto _ : bench) {
      row->ResizeFields(fields);
      pass.ApplySignalling(record, stream_.state, writer);
      benchmark::DoNotOptimize(row.get());
    }
  }

 private:
  HostApplication host_{testing::PlainHost()};
  ImpIESettings settings_;
  CTDRecordConverter converter_;
  struct_STREAMINFO stream_;
  std::int32_t selection_switch_;
};

void RunStage(benchmark::State& state, const RecordBuilder& record) {
  Bench(static_cast<std::int32_t>(state.range(0))).Run(state, record);
}

void RowStartStage(benchmark::State& state) { RunStage(state, HandsetRecord()); }
void ServingCellStage(benchmark::State& state) { RunStage(state, WithServingCell()); }
void GroupsStage(benchmark::State& state) { RunStage(state, WithGroups()); }
void FullRecordStage(benchmark::State& state) { RunStage(state, FullRecord()); }
void LargeRecordStage(benchmark::State& state) { RunStage(state, LargeRecord()); }
void SignallingStage(benchmark::State& state) {
  Bench(static_cast<std::int32_t>(state.range(0))).RunSignalling(state, LargeRecord());
}

BENCHMARK(RowStartStage)->Arg(0)->Arg(1);
BENCHMARK(ServingCellStage)->Arg(0)->Arg(1);
BENCHMARK(GroupsStage)->Arg(0)->Arg(1);
BENCHMARK(SignallingStage)->Arg(0)->Arg(1);
BENCHMARK(FullRecordStage)->Arg(0)->Arg(1);
BENCHMARK(LargeRecordStage)->Arg(0)->Arg(1);

}  // namespace
}  // namespace loom

BENCHMARK_MAIN();
