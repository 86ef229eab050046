#include "conversion/lte_converters.h"

#include <string>

#include "components/factory.h"
#include "components/measures.h"
#include "conversion/ie_ids.h"
#include "conversion/lte_fields.h"
#include "conversion/signalling_header.h"
#include "platform/hexadecimal.h"

namespace loom {
namespace {

constexpr std::int32_t kServingIdentity = 33353;
constexpr std::int32_t kServingCellKey = 33363;
constexpr std::int32_t kLteCellDistance = 2382;

bool IsKnown(std::uint16_t physical_cell_id) { return TdMarkers::Of(physical_cell_id) == Mark::kValue; }

template <const auto& kTable, class Part>
void WritePart(CRowIEWriter& writer, const std::optional<Part>& part) {
  if (part) WriteFields<kTable>(writer, *part);
}

}  // namespace

void CLTEConverter::ResetForLog() {
  last_cell_key_ = -1;
  position_key_ = -1;
}

std::unique_ptr<CMemDataRow> CLTEConverter::StartLteRow(const CTestdataBase& record, struct_STREAMINFO& stream,
                                                        std::int32_t selection_switch) {
  auto row = StartRow(kLteRow, record, stream, selection_switch);
  WriteLTEHeader(record);
  WriteLTESignalling(record);
  return row;
}

void CLTEConverter::WriteLTEHeader(const CTestdataBase& record) {
  WriteRecordNumbersFrom6(record);
  writer_.Put(ie::kNetworkMode, record.network_mode);
}

void CLTEConverter::WriteLTESignalling(const CTestdataBase& record) {
  if (record.event_id != kNoEvent && writer_.IsSelected(ie::kEventId)) PutEvent(writer_, record.event_id);
  if (!writer_.IsSelected(ie::kL3Name)) return;
  if (!record.layer3_name.empty()) {
    writer_.PutText(record.layer3_name, ie::kL3Name);
    writer_.stream().l3_names.insert(CString(record.layer3_name));
  }
  writer_.PutInt(record.raw_length, record.raw_length, ie::kL3Length);
  if (const char* bytes = record.raw_message.GetBuffer(0)) {
    writer_.PutText({bytes, static_cast<std::size_t>(record.raw_message.GetBufferLen())}, ie::kL3Bytes, ie::kL3Name);
  }
  writer_.PutInt(record.channel, record.channel, ie::kL3Channel);
}

void CLTEConverter::WriteLTEServingCell(const std::optional<LteServingCell>& cell, const CTestdataBase& record) {
  if (cell) {
    if (writer_.IsSelected(kServingIdentity))
      writer_.PutText(HexText(std::as_bytes(std::span(cell->identity))), kServingIdentity);
    WriteFields<kLteServingFields>(writer_, *cell);
    if (IsKnown(cell->physical_cell_id)) {
      const std::int32_t key = LteCellKey(cell->physical_cell_id, cell->earfcn);
      writer_.PutInt(key, key, kServingCellKey);
      if (key > 0) {
        last_cell_key_ = key;
        WriteFields<kLteKnownCellFields>(writer_, *cell);
      }
    }
  }
  if (last_cell_key_ > 0) WriteDistance(record);
}

void CLTEConverter::WriteDistance(const CTestdataBase& record) {
  if (position_key_ != last_cell_key_) {
    position_key_ = last_cell_key_;
    position_ = Position();
    CFactory::Instance().CreateDBMapper()->GetCellPosition(last_cell_key_, position_.longitude, position_.latitude);
  }
  if (!IsGeographic(position_.longitude, position_.latitude)) return;
  if (!IsGeographic(record.longitude, record.latitude)) return;
  const auto distance_m =
      static_cast<float>(CalDistance(record.longitude, record.latitude, position_.longitude, position_.latitude));
  writer_.PutFloatIfSelected(distance_m, distance_m, kLteCellDistance);
}

std::unique_ptr<CMemDataRow> CLTEMeasConverter::Convert(const CTestdataBase& record, struct_STREAMINFO& stream,
                                                        std::int32_t selection_switch) {
  auto row = StartLteRow(record, stream, selection_switch);
  const LteMeasBlock* block = record.lte_measurements;
  WriteLTEServingCell(block ? block->serving : std::nullopt, record);
  if (block) WriteBlock(*block);
  return row;
}

void CLTEMeasConverter::WriteBlock(const LteMeasBlock& block) {
  WritePart<kLteMeas24Fields>(writer_, block.meas24);
  WritePart<kLteMeas32Fields>(writer_, block.meas32);
  WritePart<kLteMeas36Fields>(writer_, block.meas36);
  WritePart<kLteCellMeasurementFields>(writer_, block.cells);
  if (block.neighbours) WriteNeighbours(*block.neighbours);
  WritePart<kLtePhysicalFields>(writer_, block.physical);
  WritePart<kLteStatisticsFields>(writer_, block.statistics);
  WritePart<kLteHeaderFirstFields>(writer_, block.header_first);
  WritePart<kLteHeaderSecondFields>(writer_, block.header_second);
  WriteArray<kLteEntryFields>(writer_, block.entries,
                              UsableEntries(block.entry_count, block.entries.size(), kLteEntries));
}

void CLTEMeasConverter::WriteNeighbours(const LteNeighbourList& list) {
  const auto passing = PassingFields<kLteNeighbourFields>(writer_, 0);
  const bool key_passes = writer_.IsSelected(kLteNeighbourKeySelection);
  const std::size_t size = UsableEntries(list.count_plus_one - 1, list.neighbours.size(), kLteNeighbours);
  for (std::size_t at = 0; at < size; ++at) {
    const LteNeighbour& entry = list.neighbours[at];
    const auto number = static_cast<std::int32_t>(at);
    WriteEntry<kLteNeighbourFields>(writer_, entry, number, passing);
    if (key_passes && IsKnown(entry.physical_cell_id)) {
      const std::int32_t key = LteCellKey(entry.physical_cell_id, entry.earfcn);
      writer_.PutInt(key, key, kLteNeighbourKey + number);
    }
  }
}

std::unique_ptr<CMemDataRow> CLTESignalConverter::Convert(const CTestdataBase& record, struct_STREAMINFO& stream,
                                                          std::int32_t selection_switch) {
  auto row = StartLteRow(record, stream, selection_switch);
  const LteSignalBlock* block = record.lte_signalling;
  WriteLTEServingCell(block ? block->serving : std::nullopt, record);
  if (block) WritePart<kLteSignalFields>(writer_, block->fields);
  return row;
}

}  // namespace loom
