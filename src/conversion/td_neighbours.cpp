#include <algorithm>
#include <cstddef>
#include <cstdint>

#include "conversion/list_group.h"
#include "conversion/td_record_converter.h"
#include "conversion/td_sizes.h"

namespace loom {
namespace {

constexpr std::int32_t kTimeslotCount = 1333;
constexpr std::int32_t kTimeslotLevels = 1365;  // 7 per neighbour

// Neighbour values have their own invalid marker; -1 and -2 count only as results.
constexpr Rule Neighbour(Rule rule, std::int64_t invalid) {
  return rule.Marked({.base = Markers::Base::kOfResult, .invalid = invalid});
}

// clang-format off

// Neighbour n becomes IE id + n.
constexpr auto kNeighbourFields = FieldTable<TdNeighbour>({
    {&TdNeighbour::cell_parameter_id, IE{1141}, Neighbour(kAsIs, -1)},
    {&TdNeighbour::uarfcn,            IE{1173}, Neighbour(kAsIs, -1)},
    {&TdNeighbour::pccpch_rscp,       IE{1205}, Neighbour(Shifted(-116), -1)},
    Own<&TdNeighbour::ie1237>(Neighbour(kAsIs, kAbsent8)),
    Own<&TdNeighbour::ie1269>(Neighbour(kAsIs, 255), kOnlyWithSettings),
    Own<&TdNeighbour::ie1109>(Neighbour(Shifted(-101), -1), kOnlyWithSettings),
    Own<&TdNeighbour::ie1301>(Neighbour(kAsIs, 255), kOnlyWithSettings),
});

// clang-format on

void WriteTimeslotCount(CRowIEWriter& writer, const TdNeighbour& neighbour, std::int32_t index) {
  if (neighbour.timeslot_count < 0) {
    writer.Invalidate(kTimeslotCount + index, kFieldInt);
  } else if (writer.IsSelected(kTimeslotCount)) {
    writer.Put(kTimeslotCount + index, std::int32_t{neighbour.timeslot_count});
  }
}

void WriteTimeslotLevels(CRowIEWriter& writer, const TdNeighbour& neighbour, std::int32_t index) {
  const std::int32_t base = kTimeslotLevels + kTimeslots * index;
  std::array<bool, kTimeslots> has_value{};
  if (neighbour.timeslot_count > 0) {
    const bool selected = writer.IsSelected(kTimeslotLevels);
    for (const TimeslotValue& entry : neighbour.timeslot_iscp) {
      if (entry.timeslot < 0 || entry.timeslot >= kTimeslots || entry.value == -1) continue;
      bool& seen = has_value[static_cast<std::size_t>(entry.timeslot)];
      const std::int32_t level_dbm = entry.value - 116;
      if (selected && !seen) writer.PutInt(level_dbm, level_dbm, base + entry.timeslot);
      seen = true;
    }
  }
  for (std::int32_t timeslot = 0; timeslot < kTimeslots; ++timeslot) {
    if (!has_value[static_cast<std::size_t>(timeslot)]) writer.Invalidate(base + timeslot, kFieldInt);
  }
}

// Indexes from `first` on, and possibly others, of the neighbours of which the stream has an IE.
NumberSet<kMaxNeighbours - 1> KnownNeighbours(const CRowIEWriter& writer, std::int32_t first) {
  auto known = KnownNumbers<kNeighbourFields, kMaxNeighbours - 1>(writer);
  known.AddKnown(writer, kTimeslotCount);
  NumberSet<kTimeslots * kMaxNeighbours - 1> levels;
  levels.AddKnown(writer, kTimeslotLevels);
  levels.ForEachFrom(kTimeslots * first, [&known](std::int32_t at) { known.Add(at / kTimeslots); });
  return known;
}

}  // namespace

void CTDRecordConverter::WriteNeighbours(const CIE_NCell_Meas& block) {
  if (block.count < 0) return;
  writer_.PutIntIfSelected(block.count, block.count, 1108);
  if (block.count > 0) {
    WriteNeighbourList(block);
  } else {
    ResetNeighboursFrom(0);
  }
}

void CTDRecordConverter::WriteNeighbourList(const CIE_NCell_Meas& block) {
  const auto written = static_cast<std::int32_t>(std::min<std::size_t>(block.neighbours.size(), kMaxNeighbours));
  const auto passing = PassingFields<kNeighbourFields>(writer_, 0);
  for (std::int32_t index = 0; index < written; ++index) {
    const TdNeighbour& neighbour = block.neighbours[static_cast<std::size_t>(index)];
    WriteEntry<kNeighbourFields>(writer_, neighbour, index, passing);
    if (settings_empty()) continue;
    WriteTimeslotCount(writer_, neighbour, index);
    WriteTimeslotLevels(writer_, neighbour, index);
  }
  if (block.count >= kMaxNeighbours - 1) return;
  ResetNeighboursFrom(written + 1);
}

void CTDRecordConverter::ResetNeighboursFrom(std::int32_t first) {
  if (first >= kMaxNeighbours) return;
  KnownNeighbours(writer_, first).ForEachFrom(first, [this](std::int32_t index) { ResetNeighbour(index); });
}

void CTDRecordConverter::ResetNeighbour(std::int32_t index) {
  for (const auto& field : kNeighbourFields) {
    if (field.condition.gate == Condition::Gate::kOnlyWithSettings && settings_empty()) continue;
    writer_.Invalidate(field.ie.id + index, field.type);
  }
  if (settings_empty()) return;
  writer_.Invalidate(kTimeslotCount + index, kFieldInt);
  for (std::int32_t timeslot = 0; timeslot < kTimeslots; ++timeslot) {
    writer_.Invalidate(kTimeslotLevels + kTimeslots * index + timeslot, kFieldInt);
  }
}

}  // namespace loom
