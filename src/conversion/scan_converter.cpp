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

// The entries of a list that its count announces and its arrays have ids for.
template <class Entry>
RecordList<Entry> Usable(RecordList<Entry> list, std::int64_t count, std::size_t capacity) {
  return list.first(UsableEntries(count, list.size(), capacity));
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

void WriteLteScanList(CRowIEWriter& writer, const LteScanList& list, std::int32_t first) {
  const std::size_t size = UsableEntries(list.count, list.entries.size(), kLteScanCells);
  for (std::size_t at = 0; at < size; ++at) {
    const std::int32_t number = first + static_cast<std::int32_t>(at);
    WriteEntry<kLteScanFields>(writer, list.entries[at], number, PassingFields<kLteScanFields>(writer, number));
  }
}

}  // namespace

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

  const auto pccpch_list = block.carriers ? Usable(block.carriers->pccpch, block.carriers->pccpch_count, kScanCells)
                                          : RecordList<ScanPccpch>();
  const auto dwpch_list =
      block.carriers ? Usable(block.carriers->dwpch, block.carriers->dwpch_count, kScanCells) : RecordList<ScanDwPch>();
  const auto rssi_list =
      block.rssi ? Usable(block.rssi->carriers, block.rssi->count, kScanRssiCarriers) : RecordList<ScanRssi>();
  writer_.row().Reserve(writer_.row().GetParamID().size() + pccpch_list.size() * kPccpchFields.size() +
                        dwpch_list.size() * kDwPchFields.size() + rssi_list.size() * kRssiFields.size());
  WriteArray<kPccpchFields>(writer_, pccpch_list, pccpch_list.size());
  WriteArray<kDwPchFields>(writer_, dwpch_list, dwpch_list.size());
  WriteArray<kRssiFields>(writer_, rssi_list, rssi_list.size());

  StrongestCell pccpch;
  StrongestCell dwpch;
  if (writer_.IsSelectedByName(SelectionName::kPccpchRscpScan)) pccpch = StrongestOf(pccpch_list);
  if (writer_.IsSelectedByName(SelectionName::kDwPchRscpScan)) dwpch = StrongestOf(dwpch_list);
  if (!pccpch.IsFound()) return;
  struct_STREAMINFO& stream = writer_.stream();
  ContinueRun(stream.pccpch_run, stream.pccpch_runs, stream.row_number, pccpch.Key());
  ContinueRun(stream.dwpch_run, stream.dwpch_runs, stream.row_number, dwpch.Key());
}

void CTDRecordConverter::ConvertScanCellList(const ScanBlock& block) {
  const auto cells = Usable(block.cells, block.cell_count, kScanCells);
  WriteArray<kScanCellFields>(writer_, cells, cells.size());
  if (writer_.IsSelectedByName(SelectionName::kPccpchRscpScan)) {
    const StrongestCell strongest = StrongestOf(cells);
    struct_STREAMINFO& stream = writer_.stream();
    if (strongest.IsFound()) {
      ContinueRun(stream.pccpch_run, stream.pccpch_runs, stream.row_number, strongest.Key());
    }
  }
  const auto rssi = Usable(block.cell_rssi, block.cell_rssi_count, kScanRssiCarriers);
  WriteArray<kScanCellRssiFields>(writer_, rssi, rssi.size());
}

void CTDRecordConverter::ConvertScanIEList(const LteScanResult* result) {
  if (result == nullptr) return;
  if (result->first) WriteLteScanList(writer_, *result->first, 0);
  if (result->second) WriteLteScanList(writer_, *result->second, kSecondLteScanList);
}

}  // namespace loom
