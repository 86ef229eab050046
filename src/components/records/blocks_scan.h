#pragma once

#include <cstdint>
#include <limits>
#include <optional>

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

// Position 20 of the scan block.
struct ScanCarriers {
  std::uint8_t pccpch_count = 0;  // 8
  RecordList<ScanPccpch> pccpch{};
  std::uint8_t dwpch_count = 0;
  RecordList<ScanDwPch> dwpch{};
};

// Position 24 of the scan block.
struct ScanSpectrum {
  std::int32_t count = -1;
  RecordList<float> samples{};
};

// Position 28 of the scan block.
struct ScanSpectrumHeader {
  float ie3686 = kNotMeasured;
  RecordList<std::uint32_t> carriers_hz{};  // the first becomes IE 3687, / 200 kHz
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

struct ScanRssiList {
  std::int32_t count = -1;
  RecordList<ScanRssi> carriers{};
};

struct ScanCell {                             // entry i becomes IE id + i
  std::uint16_t uarfcn = kAbsent16;           // 4: IE 2436
  std::uint8_t cell_parameter_id = kAbsent8;  // 8: IE 2500
  std::int8_t pccpch_rscp = -1;               // 9: IE 2710
};

struct ScanCellRssi {                // entry i becomes IE id + i
  std::uint16_t uarfcn = kAbsent16;  // 0: IE 3610
  std::int16_t frame = -1;           // 2: IE 3534
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

struct LteScanEntry {  // entry k becomes IE id + k, in the second list 224 more
  std::int32_t ie34691 = -1;
  std::uint16_t ie34723 = kAbsent16;
  float ie34755 = kNotMeasured;
  float ie34787 = kNotMeasured;
  float ie34819 = kNotMeasured;
  float ie34851 = kNotMeasured;
  float ie34883 = kNotMeasured;
};

struct LteScanList {
  std::int32_t count = -1;
  RecordList<LteScanEntry> entries{};
};

// Record position 520: results of an LTE scanner (model code 16).
struct LteScanResult {
  std::optional<LteScanList> first{};
  std::optional<LteScanList> second{};
};

}  // namespace loom
