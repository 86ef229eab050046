#pragma once

#include <array>
#include <cstddef>
#include <cstdint>

#include "components/records/blocks_scan.h"
#include "conversion/field_table.h"

// Tables of the scanner blocks: entry i of a list becomes IE id + i, selected by the name of its array.
namespace loom {

// UARFCNs count in steps of 200 kHz (3GPP TS 25.102, 5.4.3).
inline constexpr std::uint32_t kUarfcnStepHz = 200000;
constexpr std::int32_t UarfcnOf(std::uint32_t carrier_hz) {
  return static_cast<std::int32_t>(carrier_hz / kUarfcnStepHz);
}
constexpr std::int32_t UarfcnOfWord(std::int32_t word) { return UarfcnOf(static_cast<std::uint32_t>(word)); }

inline constexpr Rule kUarfcn = By(UarfcnOfWord).Marked(OnlyAbsent(0));
inline constexpr Rule kWord = kAsIs.Marked(OnlyAbsent(0xFFFFFFFF));

// clang-format off
inline constexpr auto kPccpchFields = FieldTable<ScanPccpch>({
    {&ScanPccpch::rscp,              IE{2710}, kTruncated, SelectedBy(SelectionName::kPccpchRscpScan)},
    {&ScanPccpch::cir,               IE{2748}, kTruncated, SelectedBy(SelectionName::kPccpchCirScan)},
    {&ScanPccpch::cell_parameter_id, IE{2500}, kAsIs,      SelectedBy(SelectionName::kCellParameterIdScan)},
    {&ScanPccpch::iscp,              IE{2786}, kTruncated, SelectedBy(SelectionName::kPccpchIscpScan)},
    {&ScanPccpch::ec_io,             IE{2824}, kTruncated, SelectedBy(SelectionName::kPccpchEcIoScan)},
    {&ScanPccpch::sir,               IE{2862}, kWord,      SelectedBy(SelectionName::kPccpchSirScan)},
    {&ScanPccpch::timing,            IE{2894}, kAsIs,      SelectedBy(SelectionName::kPccpchTimingScan)},
});

inline constexpr auto kDwPchFields = FieldTable<ScanDwPch>({
    {&ScanDwPch::carrier_hz, IE{2436}, kUarfcn,    SelectedBy(SelectionName::kUarfcnScan)},
    {&ScanDwPch::sync_dl,    IE{2468}, kAsIs,      SelectedBy(SelectionName::kSyncDlScan)},
    {&ScanDwPch::rscp,       IE{2532}, kTruncated, SelectedBy(SelectionName::kDwPchRscpScan)},
    {&ScanDwPch::cir,        IE{2570}, kTruncated, SelectedBy(SelectionName::kDwPchCirScan)},
    {&ScanDwPch::iscp,       IE{2608}, kTruncated, SelectedBy(SelectionName::kDwPchIscpScan)},
    {&ScanDwPch::ec_io,      IE{2646}, kTruncated, SelectedBy(SelectionName::kDwPchEcIoScan)},
    {&ScanDwPch::timing,     IE{2678}, kAsIs,      SelectedBy(SelectionName::kDwPchTimingScan)},
});

inline constexpr auto kRssiFields = FieldTable<ScanRssi>({
    {&ScanRssi::carrier_hz, IE{3610}, kUarfcn, SelectedBy(SelectionName::kUarfcnRssiScan)},
    {&ScanRssi::ts0,        IE{2926}, kAsIs,   SelectedBy(SelectionName::kRssiTs0Scan)},
    {&ScanRssi::ts1,        IE{3078}, kAsIs,   SelectedBy(SelectionName::kRssiTs1Scan)},
    {&ScanRssi::ts2,        IE{3154}, kAsIs,   SelectedBy(SelectionName::kRssiTs2Scan)},
    {&ScanRssi::ts3,        IE{3230}, kAsIs,   SelectedBy(SelectionName::kRssiTs3Scan)},
    {&ScanRssi::ts4,        IE{3306}, kAsIs,   SelectedBy(SelectionName::kRssiTs4Scan)},
    {&ScanRssi::ts5,        IE{3382}, kAsIs,   SelectedBy(SelectionName::kRssiTs5Scan)},
    {&ScanRssi::ts6,        IE{3458}, kAsIs,   SelectedBy(SelectionName::kRssiTs6Scan)},
    {&ScanRssi::dwpts,      IE{3002}, kAsIs,   SelectedBy(SelectionName::kRssiDwPtsScan)},
    {&ScanRssi::frame,      IE{3534}, kAsIs,   SelectedBy(SelectionName::kRssiFrameScan)},
});

// Records of kind 9
inline constexpr auto kScanCellFields = FieldTable<ScanCell>({
    {&ScanCell::uarfcn,            IE{2436}, SelectedBy(SelectionName::kUarfcnScan)},
    {&ScanCell::cell_parameter_id, IE{2500}, SelectedBy(SelectionName::kCellParameterIdScan)},
    {&ScanCell::pccpch_rscp,       IE{2710}, SelectedBy(SelectionName::kPccpchRscpScan)},
});
inline constexpr auto kScanCellRssiFields = FieldTable<ScanCellRssi>({
    {&ScanCellRssi::uarfcn, IE{3610}, SelectedBy(SelectionName::kUarfcnRssiScan)},
    {&ScanCellRssi::frame,  IE{3534}, SelectedBy(SelectionName::kRssiFrameScan)},
});

// Spectrum; the carrier of IE 3687 is the first of a list
inline constexpr std::int32_t kSpectrumUarfcn = 3687;
inline constexpr auto kSpectrumFields = FieldTable<ScanSpectrumHeader>({
    Own<&ScanSpectrumHeader::ie3686>(kTruncated, kUnselected),
});

// LTE scanner: entry k of the first list becomes IE id + k, of the second list that of the arrays behind; each IE is
// selected by its own id
inline constexpr std::int32_t kSecondLteScanList = 34915 - 34691;
inline constexpr auto kLteScanFields = FieldTable<LteScanEntry>({
    Own<&LteScanEntry::ie34691>(),
    Own<&LteScanEntry::ie34723>(),
    Own<&LteScanEntry::ie34755>(kTruncated),
    Own<&LteScanEntry::ie34787>(kTruncated),
    Own<&LteScanEntry::ie34819>(kTruncated),
    Own<&LteScanEntry::ie34851>(kTruncated),
    Own<&LteScanEntry::ie34883>(kTruncated),
});
// clang-format on

namespace detail {

template <const auto& kTable>
constexpr std::int32_t NextId(std::int32_t id, std::int32_t next) {
  for (const auto& field : kTable) {
    if (field.ie.id > id && field.ie.id < next) next = field.ie.id;
  }
  return next;
}

// Where the array that begins with the id ends: at the next array.
constexpr std::int32_t EndOfScanArray(std::int32_t id) {
  std::int32_t end =
      id < kSpectrumFields[0].ie.id ? kSpectrumFields[0].ie.id : kSecondLteScanList + kLteScanFields[0].ie.id;
  end = NextId<kPccpchFields>(id, end);
  end = NextId<kDwPchFields>(id, end);
  end = NextId<kRssiFields>(id, end);
  return NextId<kLteScanFields>(id, end);
}

}  // namespace detail

// How many entries each array of a table holds: as many as there are ids up to the next array.
template <const auto& kTable>
inline constexpr auto kScanRooms = [] {
  std::array<std::size_t, kTable.size()> rooms{};
  for (std::size_t at = 0; at < rooms.size(); ++at) {
    rooms[at] = static_cast<std::size_t>(detail::EndOfScanArray(kTable[at].ie.id) - kTable[at].ie.id);
  }
  return rooms;
}();

}  // namespace loom
