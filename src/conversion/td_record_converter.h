#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <memory>
#include <utility>
#include <vector>

#include "components/records/blocks.h"
#include "components/records/state_record.h"
#include "conversion/carry_row.h"
#include "conversion/gsm_record_converter.h"
#include "conversion/lte_converters.h"
#include "conversion/record_converter.h"
#include "conversion/td_block_converter.h"
#include "conversion/td_signalling.h"

namespace loom {

// Values of a scanner record's list that became nothing: its arrays have no information elements for so many entries.
struct LeftOutValues {
  const char* list;  // "PCCPCH"
  std::size_t entries;
  std::size_t values;
};

// The converter that an importer holds: one operation per route of a record. A Convert... operation gives a new row, or
// null when the record has nothing for one; the caller stores it under the stream's current row number. Selection
// applies while selection_switch is 1.
class CTDRecordConverter final : public CRecordConverter {
 public:
  using Row = std::unique_ptr<CMemDataRow>;

  CTDRecordConverter() = default;

  void SetImportSettings(const ImpIESettings& settings) override;

  // Record kinds 1, 7 and 16. Kind 7 of one device is an event row; of device 0 it gives no row.
  virtual Row ConvertUE(const CTestdataBase& record, const StateRecord& state, struct_STREAMINFO& stream,
                        std::int32_t selection_switch);
  // Record kind 2.
  virtual Row ConvertDataService(const CTestdataBase& record, struct_STREAMINFO& stream, std::int32_t selection_switch);
  // Record kinds 8 and 9, and kind 1 with model code 16.
  virtual Row ConvertScanner(const CTestdataBase& record, struct_STREAMINFO& stream, std::int32_t selection_switch);
  // Record kind 10.
  virtual Row ConvertHeaderOnly(const CTestdataBase& record, const StateRecord& state, struct_STREAMINFO& stream,
                                std::int32_t selection_switch);
  // Record kinds 14 and 15.
  virtual Row ConvertDataTest(const CTestdataBase& record, struct_STREAMINFO& stream, std::int32_t selection_switch);

  // The operations from here to ResetGroupJ write into the current row. Reset... gives the IEs of one entry number
  // their invalid values as far as the stream has them.
  virtual void WriteNeighbourList(const CIE_NCell_Meas& block);
  virtual void ResetNeighbour(std::int32_t index);
  virtual void WriteTimeslotConfig(const CIE_Channel_Para& block);
  virtual void ResetTimeslotConfig();
  virtual void ResetGroupC(std::int32_t number);
  virtual void ResetGroupB(std::int32_t number);
  virtual void ResetGroupD(std::int32_t number);
  virtual void ResetGroupE(std::int32_t number);
  virtual void ResetGroupF(std::int32_t number);
  virtual void ResetGroupG(std::int32_t number);
  virtual void ResetGroupH(std::int32_t number);
  virtual void ResetGroupJ(std::int32_t number);

  virtual void ConvertServiceKind01(const ServiceBlock& block);
  virtual void ConvertServiceKind2(const ServiceBlock& block);
  virtual void ConvertServiceKind3(const ServiceBlock& block);
  virtual void ResetServiceKind01();
  virtual void ResetServiceKind2();
  virtual void ResetServiceKind3();
  virtual void ConvertScanCarriers(const ScanBlock& block);
  virtual void ConvertScanIEList(const LteScanResult* result);
  virtual void ConvertScanCellList(const ScanBlock& block);
  virtual void ConvertAutoTestBlock(const CTestdataBase&) {}  // writes nothing

  // Record kind 1 with model codes 14 and 15.
  Row ConvertLTE(const CTestdataBase& record, const StateRecord& state, struct_STREAMINFO& stream,
                 std::int32_t selection_switch);
  // Handset records of model code 5, and of model code 10, of which only events give rows.
  Row ConvertModel5(const CTestdataBase& record, const StateRecord& state, struct_STREAMINFO& stream,
                    std::int32_t selection_switch);
  Row ConvertModel10(const CTestdataBase& record, const StateRecord& state, struct_STREAMINFO& stream,
                     std::int32_t selection_switch);
  // An event of the whole log, or a file mark: a row without number, to be copied into every stream. day_offset_s is
  // the log's midnight in seconds since 1970.
  Row ConvertEvent(const CTestdataBase& record, double day_offset_s, std::int32_t selection_switch);
  Row ConvertFileMark(const CTestdataBase& record, double day_offset_s, std::int32_t selection_switch);

  // A record may hold further samples than its row. After the row was stored: how many samples it announces, and the
  // rows of the samples from 1 to that number (excluded), in order; null for a sample that is missing. The stream's row
  // number is that of the further row.
  std::int32_t SampleCount(const CMemDataRow& first_row) const;
  Row ConvertSample(const CTestdataBase& record, const CMemDataRow& first_row, std::int32_t sample,
                    struct_STREAMINFO& stream, std::int32_t selection_switch);

  // What the scanner record converted last had to leave out; told once.
  std::vector<LeftOutValues> TakeLeftOutValues() { return std::exchange(left_out_, {}); }

  // Before a log: TD-SCDMA is the mode in force. After a log: forgets the devices' last serving cells.
  void ResetForLog();
  void ClearCarryRows();
  // Follows the record's mode for the importer's naming of streams, which is apart from the mode of conversion.
  bool NetworkModeIsGSM(const CTestdataBase& record) { return FollowNetworkMode(record); }

 private:
  static constexpr std::int32_t kCarryRows = 5;  // devices 1 to 5

  void WriteHandsetHeader(const CTestdataBase& record);
  CarryRow* CarryRowOf(const CTestdataBase& record);
  void WriteServingCell(const CIE_SCell_Para& block, CarryRow* carry);
  void WriteUraIdentities(const CIE_SCell_Para& block, CarryRow* carry);
  void WriteTimeslotMeasurements(const CIE_SCell_Meas& block);
  void WriteNeighbours(const CIE_NCell_Meas& block);
  void ResetNeighboursFrom(std::int32_t first);
  void WriteEvent(const CTestdataBase& record);
  void WriteLayer3Header(const CTestdataBase& record);
  void WriteChannels(const CIE_Channel_Para& block);
  void WriteCodes(const CIE_Meas_Res& block);
  void WritePhysicalChannels(const CIE_Layer12_Config_Para& block);
  void ConvertSystemInfo(const TdSystemInfo& block);
  void ConvertCellList(const TdCellList& block);
  template <const auto& kTable, class Entry>
  RecordList<Entry> WriteScanArrays(const char* list, RecordList<Entry> entries, std::int64_t count,
                                    std::int32_t first = 0);
  Row ConvertDeviceEvent(const CTestdataBase& record, struct_STREAMINFO& stream, std::int32_t selection_switch);

  CGSMRecordConverter gsm_;
  CTDBlockConverter blocks_;
  CTDBlockTableConverter block_table_;
  CLTEMeasConverter lte_measurements_;
  CLTESignalConverter lte_signalling_;
  SignallingPass signalling_;
  std::array<CarryRow, kCarryRows> carry_rows_;
  std::vector<LeftOutValues> left_out_;
};

}  // namespace loom
