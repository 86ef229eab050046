#include "conversion/td_block_converter.h"

#include <algorithm>
#include <array>
#include <tuple>

#include "conversion/field_table.h"

namespace loom {
namespace {

// clang-format off

constexpr auto kBlock288Fields = FieldTable<TdBlock288>({
    {&TdBlock288::ie4610, IE{4610}},
});

// Entry k of an array becomes IE id + k. The selection shows the HSDPA arrays as one item each, which stands for their
// first IE.
constexpr std::size_t kArray292 = 400;
constexpr auto kBlock292Fields = FieldTable<TdBlock292>({
    {&TdBlock292::ie21355, IE{21355}},
});
constexpr auto kEntry292Fields = FieldTable<TdEntry292>({
    {&TdEntry292::ie21356, IE{21356}, SelectedBy(21356)},
    {&TdEntry292::ie21756, IE{21756}, SelectedBy(21756)},
    {&TdEntry292::ie22156, IE{22156}, SelectedBy(22156)},
    {&TdEntry292::ie22556, IE{22556}, SelectedBy(22556)},
    {&TdEntry292::ie22956, IE{22956}, SelectedBy(22956)},
    {&TdEntry292::ie23356, IE{23356}, SelectedBy(23356)},
    {&TdEntry292::ie23756, IE{23756}, SelectedBy(23756)},
    {&TdEntry292::ie24156, IE{24156}, SelectedBy(24156)},
    {&TdEntry292::ie24556, IE{24556}, SelectedBy(24556)},
});

constexpr std::size_t kArray296 = 400;
constexpr auto kBlock296Fields = FieldTable<TdBlock296>({
    {&TdBlock296::ie24956, IE{24956}},
});
constexpr auto kEntry296Fields = FieldTable<TdEntry296>({
    {&TdEntry296::ie24957, IE{24957}, SelectedBy(24957)},
    {&TdEntry296::ie25357, IE{25357}, SelectedBy(25357)},
    {&TdEntry296::ie25757, IE{25757}, SelectedBy(25757)},
    {&TdEntry296::ie26157, IE{26157}, SelectedBy(26157)},
});

constexpr auto kSampleFields = FieldTable<TdSample>({
    {&TdSample::ie5132, IE{5132}},
    {&TdSample::ie5165, IE{5165}},
});

constexpr auto kBlock304Fields = FieldTable<TdBlock304>({
    {&TdBlock304::ie5248,  IE{5248},  Shifted(-116)},
    {&TdBlock304::ie5249,  IE{5249},  Shifted(-116)},
    {&TdBlock304::ie26608, IE{26608}, Shifted(-116)},
    {&TdBlock304::ie26609, IE{26609}, Shifted(-116)},
});

constexpr auto kBlock308Fields = FieldTable<TdBlock308>({
    {&TdBlock308::ie26610, IE{26610}},
    {&TdBlock308::ie26611, IE{26611}},
});
constexpr std::array<NumberArray<TdBlock308>, 1> kBlock308Arrays{{
    {&TdBlock308::ie26611, &TdBlock308::ie26612, IE{26612}, 20},
}};

constexpr auto kBlock312Fields = FieldTable<TdBlock312>({
    {&TdBlock312::ie26632, IE{26632}},
    {&TdBlock312::ie26633, IE{26633}},
    {&TdBlock312::ie26634, IE{26634}},
    {&TdBlock312::ie26635, IE{26635}},
    {&TdBlock312::ie26636, IE{26636}},
    {&TdBlock312::ie26637, IE{26637}},
    {&TdBlock312::ie26638, IE{26638}},
    {&TdBlock312::ie26639, IE{26639}},
    {&TdBlock312::ie26640, IE{26640}},
    {&TdBlock312::ie26641, IE{26641}},
});

constexpr auto kBlock316Fields = FieldTable<TdBlock316>({
    {&TdBlock316::ie26642, IE{26642}},
    {&TdBlock316::ie26643, IE{26643}},
});

constexpr auto kBlock320Fields = FieldTable<TdBlock320>({
    {&TdBlock320::ie5253, IE{5253}},
    {&TdBlock320::ie5254, IE{5254}},
    {&TdBlock320::ie5255, IE{5255}},
});

constexpr auto kBlock324Fields = FieldTable<TdBlock324>({
    {&TdBlock324::ie4612, IE{4612}},
    {&TdBlock324::ie4699, IE{4699}},
});

constexpr auto kBlock328Fields = FieldTable<TdBlock328>({
    {&TdBlock328::ie5250, IE{5250}},
    {&TdBlock328::ie5251, IE{5251}},
    {&TdBlock328::ie5252, IE{5252}},
});

constexpr auto kBlock332Fields = FieldTable<TdBlock332>({
    {&TdBlock332::ie5259, IE{5259}},
});

constexpr auto kBlock344Fields = FieldTable<TdBlock344>({
    {&TdBlock344::ie4611, IE{4611}},
});

constexpr std::size_t kArray348 = 32;
constexpr auto kBlock348Fields = FieldTable<TdBlock348>({
    {&TdBlock348::ie26668, IE{26668}},
});
constexpr auto kEntry348Fields = FieldTable<TdEntry348>({
    {&TdEntry348::ie26669, IE{26669}},
    {&TdEntry348::ie26701, IE{26701}},
});

constexpr auto kRecordFields = FieldTable<CTestdataBase>({
    {&CTestdataBase::ie5247, IE{5247}},
    {&CTestdataBase::ie5256, IE{5256}},
    {&CTestdataBase::ie5257, IE{5257}},
    {&CTestdataBase::ie5258, IE{5258}},
});

// Sub-blocks of the block table: value k becomes IE id + k.
template <std::size_t kValues>
struct Run {
  std::optional<TdTableRun<kValues>> TdBlockTable::*block;
  IE ie;
};
constexpr std::tuple kBlockTableRuns{
    Run<5>{&TdBlockTable::ie21255, IE{21255}},
    Run<5>{&TdBlockTable::ie21260, IE{21260}},
    Run<3>{&TdBlockTable::ie5930,  IE{5930}},
    Run<1>{&TdBlockTable::ie6933,  IE{6933}},
    Run<1>{&TdBlockTable::ie9735,  IE{9735}},
    Run<1>{&TdBlockTable::ie10736, IE{10736}},
    Run<1>{&TdBlockTable::ie8734,  IE{8734}},
    Run<3>{&TdBlockTable::ie21249, IE{21249}},
    Run<4>{&TdBlockTable::ie21138, IE{21138}},
    Run<1>{&TdBlockTable::ie21166, IE{21166}},
    Run<3>{&TdBlockTable::ie21240, IE{21240}},
    Run<3>{&TdBlockTable::ie21243, IE{21243}},
    Run<3>{&TdBlockTable::ie21246, IE{21246}},
    Run<4>{&TdBlockTable::ie21207, IE{21207}},
    Run<4>{&TdBlockTable::ie21211, IE{21211}},
    Run<5>{&TdBlockTable::ie21215, IE{21215}},
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
