#include <array>
#include <cstddef>
#include <cstdint>

#include "conversion/field_table.h"
#include "conversion/ie_ids.h"
#include "conversion/td_record_converter.h"
#include "conversion/td_sizes.h"

// Measurements per timeslot of the serving cell.
namespace loom {
namespace {

constexpr std::int32_t kPccpchCir = 507;
constexpr std::int32_t kTimeslotIscp = 511;  // of timeslot 0
constexpr std::int32_t kIscpCount = 518;
constexpr std::int32_t kTimeslotCir = 5428;       // of timeslot 2
constexpr std::int32_t kOwnTimeslotSir = 5421;    // of timeslot 2: the block's ie503
constexpr std::int32_t kOwnTimeslotPower = 5433;  // of timeslot 0: the block's ie502

// clang-format off

constexpr auto kTimeslotFields = FieldTable<CIE_SCell_Meas>({
    {&CIE_SCell_Meas::pccpch_rscp, IE{ie::kPccpchRscp}, Shifted(kLevelOffset)},
    Own<&CIE_SCell_Meas::ie498>(),
    Own<&CIE_SCell_Meas::ie508>(kAsIs.Marked({.absent = 255, .invalid = 254})),
    Own<&CIE_SCell_Meas::ie509>(Shifted(-256), kOnlyWithSettings),
    Own<&CIE_SCell_Meas::ie510>(kOnlyWithSettings),
    Own<&CIE_SCell_Meas::ie501>(Scaled(0.125, -1, -16)),
    Own<&CIE_SCell_Meas::ie502>(Shifted(-71)),
    Own<&CIE_SCell_Meas::ie503>(Scaled(0.5, -23)),
    Own<&CIE_SCell_Meas::ie506>(Shifted(-101)),
    Own<&CIE_SCell_Meas::ie504>(Scaled(0.5, 0, -11), kOnlyWithSettings),
    Own<&CIE_SCell_Meas::ie505>(Shifted(-120), kOnlyWithSettings),
    Own<&CIE_SCell_Meas::ie175>(kOnlyWithSettings),
});

// clang-format on

// Reported values by timeslot, -1 where there is none.
using TimeslotTable = std::array<std::int32_t, kTimeslots>;

TimeslotTable ReadTimeslots(RecordList<TimeslotValue> list, std::int32_t first) {
  TimeslotTable table;
  table.fill(-1);
  for (const TimeslotValue& entry : list) {
    if (entry.timeslot >= first && entry.timeslot < kTimeslots) {
      table[static_cast<std::size_t>(entry.timeslot)] = entry.value;
    }
  }
  return table;
}

// The memories of a stream keep the last value from record to record.
void Remember(std::uint16_t& memory, std::int32_t raw) {
  if (raw == -1) return;
  memory = raw == -2 ? kInvalidShort : static_cast<std::uint16_t>(raw);
}

// Difference of the remembered P-CCPCH RSCP and timeslot 0 value.
void WritePccpchDifference(CRowIEWriter& writer, std::int32_t pccpch_rscp, std::int32_t timeslot0) {
  struct_STREAMINFO& stream = writer.stream();
  Remember(stream.primary_rscp, pccpch_rscp);
  Remember(stream.timeslot0_iscp, timeslot0);
  if ((pccpch_rscp == -1 && timeslot0 == -1) || !writer.IsSelected(kPccpchCir)) return;
  const bool valid = stream.primary_rscp != kInvalidShort && stream.timeslot0_iscp != kInvalidShort;
  const std::int32_t difference =
      static_cast<std::int16_t>(stream.primary_rscp) - static_cast<std::int16_t>(stream.timeslot0_iscp);
  writer.Put(kPccpchCir, valid ? difference : kInvalidInt);
}

// IEs base + timeslot - first: levels in dBm.
void WriteLevels(CRowIEWriter& writer, const TimeslotTable& table, std::int32_t first, std::int32_t base) {
  for (std::int32_t timeslot = first; timeslot < kTimeslots; ++timeslot) {
    const std::int32_t raw = table[static_cast<std::size_t>(timeslot)];
    const std::int32_t id = base + timeslot - first;
    if (raw == -1) {
      writer.Invalidate(id, kFieldInt);
    } else {
      writer.PutInt(raw, raw + kLevelOffset, id);
    }
  }
}

bool IsKnown(std::int32_t raw) { return raw != -1 && raw != -2; }

// Carrier to interference ratio of timeslots 2 to 6.
void WriteCir(CRowIEWriter& writer, const TimeslotTable& iscp, const TimeslotTable& rscp) {
  for (std::size_t timeslot = kFirstDpchTimeslot; timeslot < kTimeslots; ++timeslot) {
    const bool valid = IsKnown(iscp[timeslot]) && IsKnown(rscp[timeslot]);
    const std::int32_t id = kTimeslotCir + static_cast<std::int32_t>(timeslot) - kFirstDpchTimeslot;
    writer.Put(id, valid ? rscp[timeslot] - iscp[timeslot] : kInvalidInt);
  }
}

// IEs of the timeslot that a value belongs to: ie503 to the first DPCH timeslot, ie502 to the block's own.
void WriteOwnTimeslot(CRowIEWriter& writer, const CIE_SCell_Meas& block, const TimeslotTable& rscp) {
  for (std::int32_t timeslot = kFirstDpchTimeslot; timeslot < kTimeslots; ++timeslot) {
    if (rscp[static_cast<std::size_t>(timeslot)] == -1) continue;
    const std::int32_t id = kOwnTimeslotSir + timeslot - kFirstDpchTimeslot;
    if (writer.IsSelected(id)) writer.PutDouble(block.ie503, (block.ie503 - 23) * 0.5, id);
    break;
  }
  if (block.timeslot >= 0 && block.timeslot < kTimeslots) {
    writer.PutIntIfSelected(block.ie502, block.ie502 - 71, kOwnTimeslotPower + block.timeslot);
  }
}

}  // namespace

void CTDRecordConverter::WriteTimeslotMeasurements(const CIE_SCell_Meas& block) {
  const TimeslotTable iscp = ReadTimeslots(block.timeslot_iscp, 0);
  const TimeslotTable rscp = ReadTimeslots(block.timeslot_rscp, kFirstDpchTimeslot);
  WriteOwnTimeslot(writer_, block, rscp);
  WritePccpchDifference(writer_, block.pccpch_rscp, iscp[0]);
  WriteFields<kTimeslotFields>(writer_, block);
  if (block.timeslot_iscp_count >= 0 && writer_.IsSelectedByName(SelectionName::kTimeslotIscp)) {
    writer_.Put(kIscpCount, std::int32_t{block.timeslot_iscp_count});
    WriteLevels(writer_, iscp, 0, kTimeslotIscp);
  }
  if (block.timeslot_rscp_count >= 0 && writer_.IsSelectedByName(SelectionName::kTimeslotDpchRscp)) {
    writer_.Put(ie::kDpchRscpCount, std::int32_t{block.timeslot_rscp_count});
    WriteLevels(writer_, rscp, kFirstDpchTimeslot, ie::kTimeslotDpchRscp);
  }
  if (writer_.IsSelectedByName(SelectionName::kTimeslotCir)) WriteCir(writer_, iscp, rscp);
}

}  // namespace loom
