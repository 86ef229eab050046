#pragma once

#include "components/records/blocks_scan.h"
#include "host/logstore/record_fields.h"

// Scanner blocks.
// clang-format off
namespace loom {

template <>
struct BlockFields<ScanPccpch> {
  using B = ScanPccpch;
  static constexpr std::tuple kFields{
      Field{"carrier_hz", &B::carrier_hz},
      Field{"cell_parameter_id", &B::cell_parameter_id},
      Field{"ec_io", &B::ec_io},
      Field{"sir", &B::sir},
      Field{"cir", &B::cir},
      Field{"iscp", &B::iscp},
      Field{"rscp", &B::rscp},
      Field{"timing", &B::timing},
  };
};

template <>
struct BlockFields<ScanDwPch> {
  using B = ScanDwPch;
  static constexpr std::tuple kFields{
      Field{"carrier_hz", &B::carrier_hz},
      Field{"cell_parameter_id", &B::cell_parameter_id},
      Field{"sync_dl", &B::sync_dl},
      Field{"rscp", &B::rscp},
      Field{"cir", &B::cir},
      Field{"iscp", &B::iscp},
      Field{"ec_io", &B::ec_io},
      Field{"timing", &B::timing},
  };
};

template <>
struct BlockFields<ScanCarriers> {
  using B = ScanCarriers;
  static constexpr std::tuple kFields{
      Field{"pccpch_count", &B::pccpch_count},
      Field{"pccpch", &B::pccpch},
      Field{"dwpch_count", &B::dwpch_count},
      Field{"dwpch", &B::dwpch},
  };
};

template <>
struct BlockFields<ScanSpectrum> {
  using B = ScanSpectrum;
  static constexpr std::tuple kFields{
      Field{"count", &B::count},
      Field{"samples", &B::samples},
  };
};

template <>
struct BlockFields<ScanSpectrumHeader> {
  using B = ScanSpectrumHeader;
  static constexpr std::tuple kFields{
      Field{"ie3686", &B::ie3686},
      Field{"carriers_hz", &B::carriers_hz},
  };
};

template <>
struct BlockFields<ScanRssi> {
  using B = ScanRssi;
  static constexpr std::tuple kFields{
      Field{"carrier_hz", &B::carrier_hz},
      Field{"ts0", &B::ts0},
      Field{"dwpts", &B::dwpts},
      Field{"ts1", &B::ts1},
      Field{"ts2", &B::ts2},
      Field{"ts3", &B::ts3},
      Field{"ts4", &B::ts4},
      Field{"ts5", &B::ts5},
      Field{"ts6", &B::ts6},
      Field{"frame", &B::frame},
  };
};

template <>
struct BlockFields<ScanRssiList> {
  using B = ScanRssiList;
  static constexpr std::tuple kFields{
      Field{"count", &B::count},
      Field{"carriers", &B::carriers},
  };
};

template <>
struct BlockFields<ScanCell> {
  using B = ScanCell;
  static constexpr std::tuple kFields{
      Field{"uarfcn", &B::uarfcn},
      Field{"cell_parameter_id", &B::cell_parameter_id},
      Field{"pccpch_rscp", &B::pccpch_rscp},
  };
};

template <>
struct BlockFields<ScanCellRssi> {
  using B = ScanCellRssi;
  static constexpr std::tuple kFields{
      Field{"uarfcn", &B::uarfcn},
      Field{"frame", &B::frame},
  };
};

template <>
struct BlockFields<ScanBlock> {
  using B = ScanBlock;
  static constexpr std::uint16_t kTag = 424;
  static constexpr std::string_view kName = "scan";
  static constexpr std::tuple kFields{
      Field{"flag", &B::flag},
      Field{"scan_type", &B::scan_type},
      Field{"carriers", &B::carriers},
      Field{"spectrum", &B::spectrum},
      Field{"spectrum_header", &B::spectrum_header},
      Field{"rssi", &B::rssi},
      Field{"cell_rssi_count", &B::cell_rssi_count},
      Field{"cell_rssi", &B::cell_rssi},
      Field{"cell_count", &B::cell_count},
      Field{"cells", &B::cells},
  };
};

template <>
struct BlockFields<LteScanEntry> {
  using B = LteScanEntry;
  static constexpr std::tuple kFields{
      Field{"ie34691", &B::ie34691}, Field{"ie34723", &B::ie34723}, Field{"ie34755", &B::ie34755},
      Field{"ie34787", &B::ie34787}, Field{"ie34819", &B::ie34819}, Field{"ie34851", &B::ie34851},
      Field{"ie34883", &B::ie34883},
  };
};

template <>
struct BlockFields<LteScanList> {
  using B = LteScanList;
  static constexpr std::tuple kFields{
      Field{"count", &B::count},
      Field{"entries", &B::entries},
  };
};

template <>
struct BlockFields<LteScanResult> {
  using B = LteScanResult;
  static constexpr std::uint16_t kTag = 520;
  static constexpr std::string_view kName = "lte_scan";
  static constexpr std::tuple kFields{
      Field{"first", &B::first},
      Field{"second", &B::second},
  };
};

}  // namespace loom
// clang-format on
