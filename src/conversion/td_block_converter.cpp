#include "conversion/td_block_converter.h"

#include <algorithm>
#include <array>
#include <tuple>

#include "conversion/field_table.h"

namespace loom {
namespace {

// clang-format off

constexpr auto kBlock288Fields = FieldTable<TdBlock288>({
    Own<&TdBlock288::ie4610>(),
});

// Entry k of an array becomes IE id + k. The selection shows the HSDPA arrays as one item each, which stands for their
// first IE.
constexpr std::size_t kArray292 = 400;
constexpr auto kBlock292Fields = FieldTable<TdBlock292>({
    Own<&TdBlock292::ie21355>(),
});
constexpr auto kEntry292Fields = FieldTable<TdEntry292>({
    Own<&TdEntry292::ie21356>(SelectedBy(21356)),
    Own<&TdEntry292::ie21756>(SelectedBy(21756)),
    Own<&TdEntry292::ie22156>(SelectedBy(22156)),
    Own<&TdEntry292::ie22556>(SelectedBy(22556)),
    Own<&TdEntry292::ie22956>(SelectedBy(22956)),
    Own<&TdEntry292::ie23356>(SelectedBy(23356)),
    Own<&TdEntry292::ie23756>(SelectedBy(23756)),
    Own<&TdEntry292::ie24156>(SelectedBy(24156)),
    Own<&TdEntry292::ie24556>(SelectedBy(24556)),
});

constexpr std::size_t kArray296 = 400;
constexpr auto kBlock296Fields = FieldTable<TdBlock296>({
    Own<&TdBlock296::ie24956>(),
});
constexpr auto kEntry296Fields = FieldTable<TdEntry296>({
    Own<&TdEntry296::ie24957>(SelectedBy(24957)),
    Own<&TdEntry296::ie25357>(SelectedBy(25357)),
    Own<&TdEntry296::ie25757>(SelectedBy(25757)),
    Own<&TdEntry296::ie26157>(SelectedBy(26157)),
});

constexpr auto kSampleFields = FieldTable<TdSample>({
    Own<&TdSample::ie5132>(),
    Own<&TdSample::ie5165>(),
});

constexpr auto kBlock304Fields = FieldTable<TdBlock304>({
    Own<&TdBlock304::ie5248>(Shifted(-116)),
    Own<&TdBlock304::ie5249>(Shifted(-116)),
    Own<&TdBlock304::ie26608>(Shifted(-116)),
    Own<&TdBlock304::ie26609>(Shifted(-116)),
});

constexpr auto kBlock308Fields = FieldTable<TdBlock308>({
    Own<&TdBlock308::ie26610>(),
    Own<&TdBlock308::ie26611>(),
});
constexpr std::array<NumberArray<TdBlock308>, 1> kBlock308Arrays{{
    {&TdBlock308::ie26611, &TdBlock308::ie26612, IE{26612}, 20},
}};

constexpr auto kBlock312Fields = FieldTable<TdBlock312>({
    Own<&TdBlock312::ie26632>(),
    Own<&TdBlock312::ie26633>(),
    Own<&TdBlock312::ie26634>(),
    Own<&TdBlock312::ie26635>(),
    Own<&TdBlock312::ie26636>(),
    Own<&TdBlock312::ie26637>(),
    Own<&TdBlock312::ie26638>(),
    Own<&TdBlock312::ie26639>(),
    Own<&TdBlock312::ie26640>(),
    Own<&TdBlock312::ie26641>(),
});

constexpr auto kBlock316Fields = FieldTable<TdBlock316>({
    Own<&TdBlock316::ie26642>(),
    Own<&TdBlock316::ie26643>(),
});

constexpr auto kBlock320Fields = FieldTable<TdBlock320>({
    Own<&TdBlock320::ie5253>(),
    Own<&TdBlock320::ie5254>(),
    Own<&TdBlock320::ie5255>(),
});

constexpr auto kBlock324Fields = FieldTable<TdBlock324>({
    Own<&TdBlock324::ie4612>(),
    Own<&TdBlock324::ie4699>(),
});

constexpr auto kBlock328Fields = FieldTable<TdBlock328>({
    Own<&TdBlock328::ie5250>(),
    Own<&TdBlock328::ie5251>(),
    Own<&TdBlock328::ie5252>(),
});

constexpr auto kBlock332Fields = FieldTable<TdBlock332>({
    Own<&TdBlock332::ie5259>(),
});

constexpr auto kBlock344Fields = FieldTable<TdBlock344>({
    Own<&TdBlock344::ie4611>(),
});

constexpr std::size_t kArray348 = 32;
constexpr auto kBlock348Fields = FieldTable<TdBlock348>({
    Own<&TdBlock348::ie26668>(),
});
constexpr auto kEntry348Fields = FieldTable<TdEntry348>({
    Own<&TdEntry348::ie26669>(),
    Own<&TdEntry348::ie26701>(),
});

constexpr auto kRecordFields = FieldTable<CTestdataBase>({
    Own<&CTestdataBase::ie5247>(),
    Own<&CTestdataBase::ie5256>(),
    Own<&CTestdataBase::ie5257>(),
    Own<&CTestdataBase::ie5258>(),
});

// Sub-blocks of the block table: value k becomes IE id + k.
template <std::size_t kValues>
struct Run {
  std::optional<TdTableRun<kValues>> TdBlockTable::*block;
  IE ie;
};
template <auto kMember>
consteval auto OwnRun() {
  return []<std::size_t kValues>(std::optional<TdTableRun<kValues>> TdBlockTable::*block) {
    return Run<kValues>{block, OwnIE<kMember>()};
  }(kMember);
}
constexpr std::tuple kBlockTableRuns{
    OwnRun<&TdBlockTable::ie21255>(),
    OwnRun<&TdBlockTable::ie21260>(),
    OwnRun<&TdBlockTable::ie5930>(),
    OwnRun<&TdBlockTable::ie6933>(),
    OwnRun<&TdBlockTable::ie9735>(),
    OwnRun<&TdBlockTable::ie10736>(),
    OwnRun<&TdBlockTable::ie8734>(),
    OwnRun<&TdBlockTable::ie21249>(),
    OwnRun<&TdBlockTable::ie21138>(),
    OwnRun<&TdBlockTable::ie21166>(),
    OwnRun<&TdBlockTable::ie21240>(),
    OwnRun<&TdBlockTable::ie21243>(),
    OwnRun<&TdBlockTable::ie21246>(),
    OwnRun<&TdBlockTable::ie21207>(),
    OwnRun<&TdBlockTable::ie21211>(),
    OwnRun<&TdBlockTable::ie21215>(),
};

// clang-format on

template <std::size_t kValues>
void WriteRun(CRowIEWriter& writer, const TdBlockTable& table, const Run<kValues>& run) {
  const auto& block = table.*run.block;
  if (!block) return;
  for (std::size_t at = 0; at < kValues; ++at) {
    const std::int32_t value = block->values[at];
    writer.PutIntIfSelected(value, value, run.ie.id + static_cast<std::int32_t>(at));
  }
}

}  // namespace

void CTDBlockConverter::Convert(const CTestdataBase& record, struct_STREAMINFO& stream, std::int32_t selection_switch,
                                CMemDataRow& row) {
  writer_.Begin(stream, selection_switch, row);
  WriteFields<kBlock288Fields>(writer_, record.block288);
  WriteFields<kBlock292Fields>(writer_, record.block292);
  if (const TdBlock292* block = record.block292) {
    WriteArray<kEntry292Fields>(writer_, block->entries,
                                UsableEntries(block->ie21355, block->entries.size(), kArray292));
  }
  WriteFields<kBlock296Fields>(writer_, record.block296);
  if (const TdBlock296* block = record.block296) {
    WriteArray<kEntry296Fields>(writer_, block->entries,
                                UsableEntries(block->ie24956, block->entries.size(), kArray296));
  }
  WriteSamples(record.samples);
  WriteFields<kBlock304Fields>(writer_, record.block304);
  WriteFields<kBlock308Fields>(writer_, record.block308);
  if (record.block308) WriteNumberArrays<kBlock308Arrays>(writer_, *record.block308);
  WriteFields<kBlock312Fields>(writer_, record.block312);
  WriteFields<kBlock316Fields>(writer_, record.block316);
  WriteFields<kBlock320Fields>(writer_, record.block320);
  WriteFields<kBlock324Fields>(writer_, record.block324);
  WriteFields<kBlock328Fields>(writer_, record.block328);
  WriteFields<kBlock332Fields>(writer_, record.block332);
  if (record.block344 && record.block344->first == 1) WriteFields<kBlock344Fields>(writer_, *record.block344);
  WriteFields<kBlock348Fields>(writer_, record.block348);
  if (const TdBlock348* block = record.block348) {
    WriteArray<kEntry348Fields>(writer_, block->entries,
                                UsableEntries(block->ie26668, block->entries.size(), kArray348));
  }
  WriteFields<kRecordFields>(writer_, record);
}

void CTDBlockConverter::WriteSamples(const TdSamples* block) {
  announced_samples_ = 0;
  sample_count_ = 0;
  if (block == nullptr) return;
  const std::int32_t count = std::clamp(block->count, -2, kMaxSamples);  // a negative count is no count
  announced_samples_ = count;
  writer_.PutIntIfSelected(count, count, 5065);
  const std::size_t size = UsableEntries(count, block->samples.size(), kMaxSamples);
  std::copy_n(block->samples.begin(), size, samples_.begin());
  sample_count_ = static_cast<std::int32_t>(size);
  if (const TdSample* first = Sample(0)) WriteSample(writer_, *first);
}

void CTDBlockConverter::WriteSample(CRowIEWriter& writer, const TdSample& sample) {
  WriteFields<kSampleFields>(writer, sample);
}

void CTDBlockTableConverter::Convert(const CTestdataBase& record, struct_STREAMINFO& stream,
                                     std::int32_t selection_switch, CMemDataRow& row) {
  if (record.block_table == nullptr) return;
  writer_.Begin(stream, selection_switch, row);
  std::apply([&](const auto&... runs) { (WriteRun(writer_, *record.block_table, runs), ...); }, kBlockTableRuns);
}

}  // namespace loom
