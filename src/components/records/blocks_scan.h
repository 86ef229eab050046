#pragma once

#include <cstdint>
#include <limits>
#include <optional>

#include "components/records/fields.h"
#include "components/records/lists.h"

// Blocks of scanner records. The number behind a member is its byte position in its block or entry, where it has one of
// its own. Levels are in dBm, ratios in dB; any number may be one, so a float that was not measured is NaN.
namespace loom {

inline constexpr float kNotMeasured = std::numeric_limits<float>::quiet_NaN();

struct ScanPccpch {  // entry i becomes IE id + i
  std::uint32_t carrier_hz = 0;
  std::uint8_t cell_parameter_id = kAbsent8;  // 16: IE 2500
  float ec_io = kNotMeasured;                 // 28: IE 2824
  std::uint32_t sir = kAbsent32;              // 32: IE 2862, 32 bits as they stand
  float cir = kNotMeasured;                   // 36: IE 2748
  float iscp = kNotMeasured;                  // 44: IE 2786
  float rscp = kNotMeasured;                  // 48: IE 2710
  std::int32_t timing = -1;                   // IE 2894
};
template <>
struct BlockFields<ScanPccpch> {
  using B = ScanPccpch;
  using List =
      FieldList<&B::carrier_hz, &B::cell_parameter_id, &B::ec_io, &B::sir, &B::cir, &B::iscp, &B::rscp, &B::timing>;
};

struct ScanDwPch {               // entry i becomes IE id + i
  std::uint32_t carrier_hz = 0;  // IE 2436 is the frequency / 200 kHz
  std::uint8_t cell_parameter_id = kAbsent8;
  std::uint8_t sync_dl = kAbsent8;  // IE 2468
  float rscp = kNotMeasured;        // IE 2532
  float cir = kNotMeasured;         // IE 2570
  float iscp = kNotMeasured;        // IE 2608
  float ec_io = kNotMeasured;       // IE 2646
  std::int32_t timing = -1;         // IE 2678
};
template <>
struct BlockFields<ScanDwPch> {
  using B = ScanDwPch;
  using List =
      FieldList<&B::carrier_hz, &B::cell_parameter_id, &B::sync_dl, &B::rscp, &B::cir, &B::iscp, &B::ec_io, &B::timing>;
};

// Position 20 of the scan block.
struct ScanCarriers {
  std::uint8_t pccpch_count = 0;  // 8
  RecordList<ScanPccpch> pccpch{};
  std::uint8_t dwpch_count = 0;
  RecordList<ScanDwPch> dwpch{};
};
template <>
struct BlockFields<ScanCarriers> {
  using B = ScanCarriers;
  using List = FieldList<&B::pccpch_count, &B::pccpch, &B::dwpch_count, &B::dwpch>;
};

// Position 24 of the scan block.
struct ScanSpectrum {
  std::int32_t count = -1;
  RecordList<float> samples{};
};
template <>
struct BlockFields<ScanSpectrum> {
  using B = ScanSpectrum;
  using List = FieldList<&B::count, &B::samples>;
};

// Position 28 of the scan block.
struct ScanSpectrumHeader {
  float ie3686 = kNotMeasured;
  RecordList<std::uint32_t> carriers_hz{};  // the first becomes IE 3687, / 200 kHz
};
template <>
struct BlockFields<ScanSpectrumHeader> {
  using B = ScanSpectrumHeader;
  using List = FieldList<&B::ie3686, &B::carriers_hz>;
};

struct ScanRssi {                // entry i becomes IE id + i
  std::uint32_t carrier_hz = 0;  // IE 3610 is the frequency / 200 kHz
  std::int32_t ts0 = -1;         // IE 2926
  std::int32_t dwpts = -1;       // IE 3002
  std::int32_t ts1 = -1;         // IE 3078
  std::int32_t ts2 = -1;         // IE 3154
  std::int32_t ts3 = -1;         // IE 3230
  std::int32_t ts4 = -1;         // IE 3306
  std::int32_t ts5 = -1;         // IE 3382
  std::int32_t ts6 = -1;         // IE 3458
  std::int32_t frame = -1;       // IE 3534
};
template <>
struct BlockFields<ScanRssi> {
  using B = ScanRssi;
  using List =
      FieldList<&B::carrier_hz, &B::ts0, &B::dwpts, &B::ts1, &B::ts2, &B::ts3, &B::ts4, &B::ts5, &B::ts6, &B::frame>;
};

struct ScanRssiList {
  std::int32_t count = -1;
  RecordList<ScanRssi> carriers{};
};
template <>
struct BlockFields<ScanRssiList> {
  using B = ScanRssiList;
  using List = FieldList<&B::count, &B::carriers>;
};

struct ScanCell {                             // entry i becomes IE id + i
  std::uint16_t uarfcn = kAbsent16;           // 4: IE 2436
  std::uint8_t cell_parameter_id = kAbsent8;  // 8: IE 2500
  std::int8_t pccpch_rscp = -1;               // 9: IE 2710
};
template <>
struct BlockFields<ScanCell> {
  using B = ScanCell;
  using List = FieldList<&B::uarfcn, &B::cell_parameter_id, &B::pccpch_rscp>;
};

struct ScanCellRssi {                // entry i becomes IE id + i
  std::uint16_t uarfcn = kAbsent16;  // 0: IE 3610
  std::int16_t frame = -1;           // 2: IE 3534
};
template <>
struct BlockFields<ScanCellRssi> {
  using B = ScanCellRssi;
  using List = FieldList<&B::uarfcn, &B::frame>;
};

// Record position 424.
struct ScanBlock {
  std::uint8_t flag = 0;                                // 4: tells two scanners of type 0 apart
  std::int8_t scan_type = -1;                           // 5
  std::optional<ScanCarriers> carriers{};               // 20
  std::optional<ScanSpectrum> spectrum{};               // 24
  std::optional<ScanSpectrumHeader> spectrum_header{};  // 28
  std::optional<ScanRssiList> rssi{};
  std::int32_t cell_rssi_count = -1;  // 12: of records of kind 9, as the cell list
  RecordList<ScanCellRssi> cell_rssi{};
  std::int16_t cell_count = -1;  // 36
  RecordList<ScanCell> cells{};  // 40
};
template <>
struct BlockFields<ScanBlock> {
  using B = ScanBlock;
  using List = FieldList<&B::flag, &B::scan_type, &B::carriers, &B::spectrum, &B::spectrum_header, &B::rssi,
                         &B::cell_rssi_count, &B::cell_rssi, &B::cell_count, &B::cells>;
};

struct LteScanEntry {  // entry k becomes IE id + k, in the second list 224 more
  std::int32_t ie34691 = -1;
  std::uint16_t ie34723 = kAbsent16;
  float ie34755 = kNotMeasured;
  float ie34787 = kNotMeasured;
  float ie34819 = kNotMeasured;
  float ie34851 = kNotMeasured;
  float ie34883 = kNotMeasured;
};
template <>
struct BlockFields<LteScanEntry> {
  using B = LteScanEntry;
  using List = FieldList<&B::ie34691, &B::ie34723, &B::ie34755, &B::ie34787, &B::ie34819, &B::ie34851, &B::ie34883>;
};

struct LteScanList {
  std::int32_t count = -1;
  RecordList<LteScanEntry> entries{};
};
template <>
struct BlockFields<LteScanList> {
  using B = LteScanList;
  using List = FieldList<&B::count, &B::entries>;
};

// Record position 520: results of an LTE scanner (model code 16).
struct LteScanResult {
  std::optional<LteScanList> first{};
  std::optional<LteScanList> second{};
};
template <>
struct BlockFields<LteScanResult> {
  using B = LteScanResult;
  using List = FieldList<&B::first, &B::second>;
};

}  // namespace loom
