#include <algorithm>
#include <cstdint>
#include <limits>
#include <vector>

#include "components/measures.h"
#include "conversion/scan_fields.h"
#include "conversion/td_record_converter.h"

// Scanner records.
namespace loom {
namespace {

constexpr std::int32_t kPccpchRscpIe = 2710;
constexpr std::int32_t kDwPchRscpIe = 2532;

// Scan types that deliver carriers.
bool HasCarriers(std::int8_t scan_type) {
  switch (scan_type) {
    case 0:
    case 2:
    case 3:
    case 5:
    case 6:
      return true;
    default:
      return false;
  }
}

// The entries of a list that its count announces.
template <class Entry>
RecordList<Entry> Announced(RecordList<Entry> list, std::int64_t count) {
  return list.first(UsableEntries(count, list.size(), list.size()));
}

// The strongest cell of a record; of equal ones the first.
struct StrongestCell {
  std::int32_t rscp_dbm = kInvalidInt;
  std::int32_t uarfcn = kInvalidInt;
  std::int32_t cell_parameter_id = kInvalidInt;

  bool IsFound() const { return rscp_dbm != kInvalidInt; }
  void Offer(std::int32_t with_rscp_dbm, std::int32_t with_uarfcn, std::int32_t with_cell_parameter_id) {
    if (with_rscp_dbm > rscp_dbm) *this = {with_rscp_dbm, with_uarfcn, with_cell_parameter_id};
  }
  CString Key() const { return ComposeFreqCPI(uarfcn, cell_parameter_id); }
};

// Goes on with the run of a cell, or ends the run and begins that of another cell.
void ContinueRun(STRUCT_SCANNERSCELLSTAT& run, std::vector<STRUCT_SCANNERSCELLSTAT>& finished, std::int32_t row_number,
                 CString key) {
  if (run.cell_key == key) {
    ++run.row_count;
    run.last_row = row_number;
    return;
  }
  if (!run.cell_key.IsEmpty()) finished.push_back(std::move(run));
  run = {row_number, row_number, std::move(key), 1};
}

template <class Entry>
StrongestCell StrongestOf(RecordList<Entry> entries) {
  StrongestCell strongest;
  for (const Entry& entry : entries) {
    if (!HasIntegerPart(entry.rscp)) continue;
    strongest.Offer(static_cast<std::int32_t>(entry.rscp), UarfcnOf(entry.carrier_hz), entry.cell_parameter_id);
  }
  return strongest;
}

StrongestCell StrongestOf(RecordList<ScanCell> cells) {
  StrongestCell strongest;
  for (const ScanCell& cell : cells) {
    if (TdMarkers::Of(cell.pccpch_rscp) != Mark::kValue) continue;
    strongest.Offer(cell.pccpch_rscp, cell.uarfcn, cell.cell_parameter_id);
  }
  return strongest;
}

void WriteSpectrum(CMemDataRow& row, const ScanSpectrum& spectrum) {
  const std::size_t size = UsableEntries(spectrum.count, spectrum.samples.size(), spectrum.samples.size());
  if (size == 0) return;
  std::vector<float> samples(size);
  std::ranges::transform(spectrum.samples.first(size), samples.begin(), [](float sample) {
    const std::int64_t whole = HasIntegerPart(sample) ? Truncated(sample) : kInvalidInt;
    return std::in_range<std::int16_t>(whole) ? static_cast<float>(whole) : kInvalidFloat;
  });
  row.SetFFTReport(samples);
}

// Most values that the arrays of a list take from so many entries.
template <const auto& kTable>
std::size_t MostValues(std::size_t entries) {
  return std::min(entries, std::ranges::max(kScanRooms<kTable>)) * kTable.size();
}

// The entries that an array of a list has ids for, by the array's first one.
template <const auto& kTable, class Entry>
RecordList<Entry> HeldBy(std::int32_t id, RecordList<Entry> entries) {
  for (std::size_t field = 0; field < kTable.size(); ++field) {
    if (kTable[field].ie.id == id) return entries.first(std::min(entries.size(), kScanRooms<kTable>[field]));
  }
  return entries;
}

}  // namespace

// Writes the entries of a list that its count announces, entry k as IE id + first + k, and gives them. What an array
// has no ids for is counted as left out.
template <const auto& kTable, class Entry>
RecordList<Entry> CTDRecordConverter::WriteScanArrays(const char* list, RecordList<Entry> announced, std::int64_t count,
                                                      std::int32_t first) {
  const RecordList<Entry> entries = Announced(announced, count);
  constexpr const auto& kRooms = kScanRooms<kTable>;
  constexpr std::size_t kSmallestRoom = std::ranges::min(kRooms);
  auto passing = PassingFields<kTable>(writer_, first);
  std::size_t left_out = 0;
  for (std::size_t at = 0; at < entries.size(); ++at) {
    const auto number = first + static_cast<std::int32_t>(at);
    if (at < kSmallestRoom) {
      if constexpr (kSelectsEachEntry<kTable>) passing = PassingFields<kTable>(writer_, number);
      WriteEntry<kTable>(writer_, entries[at], number, passing);
      continue;
    }
    VisitFields<kTable, TdMarkers>(entries[at], [&](const auto& field, auto value) {
      const auto array = static_cast<std::size_t>(&field - kTable.data());
      if (!passing[array]) return;
      if (at < kRooms[array]) {
        PutValue(writer_, field.ie.id + number, value);
      } else {
        ++left_out;
      }
    });
  }
  if (left_out > 0) left_out_.push_back({list, entries.size(), left_out});
  return entries;
}

CTDRecordConverter::Row CTDRecordConverter::ConvertScanner(const CTestdataBase& record, struct_STREAMINFO& stream,
                                                           std::int32_t selection_switch) {
  Row row = StartRow(kScannerRow, record, stream, selection_switch);
  if (record.kind == kRecordScannerCells) {
    if (record.scan) ConvertScanCellList(*record.scan);
  } else if (record.kind == kRecordScanner) {
    if (record.scan && HasCarriers(record.scan->scan_type)) ConvertScanCarriers(*record.scan);
  } else if (record.kind == kRecordHandset && record.model_code == kModelOstrelLteScanner) {
    ConvertScanIEList(record.lte_scan);
  }
  return row;
}

void CTDRecordConverter::ConvertScanCarriers(const ScanBlock& block) {
  if (block.spectrum) WriteSpectrum(writer_.row(), *block.spectrum);
  if (block.spectrum_header) {
    WriteFields<kSpectrumFields>(writer_, *block.spectrum_header);
    const auto& carriers_hz = block.spectrum_header->carriers_hz;
    if (!carriers_hz.empty()) writer_.Put(kSpectrumUarfcn, UarfcnOf(carriers_hz.front()));
  }

  const ScanCarriers carriers = block.carriers.value_or(ScanCarriers());
  const ScanRssiList rssi = block.rssi.value_or(ScanRssiList());
  writer_.row().Reserve(writer_.row().GetParamID().size() + MostValues<kPccpchFields>(carriers.pccpch.size()) +
                        MostValues<kDwPchFields>(carriers.dwpch.size()) +
                        MostValues<kRssiFields>(rssi.carriers.size()));
  const auto pccpch_list = WriteScanArrays<kPccpchFields>("PCCPCH", carriers.pccpch, carriers.pccpch_count);
  const auto dwpch_list = WriteScanArrays<kDwPchFields>("DwPCH", carriers.dwpch, carriers.dwpch_count);
  WriteScanArrays<kRssiFields>("RSSI", rssi.carriers, rssi.count);

  StrongestCell pccpch;
  StrongestCell dwpch;
  if (writer_.IsSelectedByName(SelectionName::kPccpchRscpScan)) {
    pccpch = StrongestOf(HeldBy<kPccpchFields>(kPccpchRscpIe, pccpch_list));
  }
  if (writer_.IsSelectedByName(SelectionName::kDwPchRscpScan)) {
    dwpch = StrongestOf(HeldBy<kDwPchFields>(kDwPchRscpIe, dwpch_list));
  }
  if (!pccpch.IsFound()) return;
  struct_STREAMINFO& stream = writer_.stream();
  ContinueRun(stream.pccpch_run, stream.pccpch_runs, stream.row_number, pccpch.Key());
  ContinueRun(stream.dwpch_run, stream.dwpch_runs, stream.row_number, dwpch.Key());
}

void CTDRecordConverter::ConvertScanCellList(const ScanBlock& block) {
  const auto cells = WriteScanArrays<kScanCellFields>("cell", block.cells, block.cell_count);
  if (writer_.IsSelectedByName(SelectionName::kPccpchRscpScan)) {
    const StrongestCell strongest = StrongestOf(HeldBy<kScanCellFields>(kPccpchRscpIe, cells));
    struct_STREAMINFO& stream = writer_.stream();
    if (strongest.IsFound()) {
      ContinueRun(stream.pccpch_run, stream.pccpch_runs, stream.row_number, strongest.Key());
    }
  }
  WriteScanArrays<kScanCellRssiFields>("RSSI", block.cell_rssi, block.cell_rssi_count);
}

void CTDRecordConverter::ConvertScanIEList(const LteScanResult* result) {
  if (result == nullptr) return;
  if (const auto& list = result->first) WriteScanArrays<kLteScanFields>("LTE", list->entries, list->count);
  if (const auto& list = result->second) {
    WriteScanArrays<kLteScanFields>("second LTE", list->entries, list->count, kSecondLteScanList);
  }
}

}  // namespace loom
