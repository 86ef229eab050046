#pragma once

#include <cstdint>
#include <memory>

#include "components/mem_row.h"
#include "components/records/testdata.h"
#include "components/stream_info.h"
#include "conversion/record_converter.h"

namespace loom {

// Converts handset records taken in GSM mode. Optional information elements are left out while no selection is in
// force.
class CGSMRecordConverter : public CRecordConverter {
 public:
  std::unique_ptr<CMemDataRow> Convert(const CTestdataBase& record, struct_STREAMINFO& stream,
                                       std::int32_t selection_switch);

 private:
  void WriteGsmBlocks(const CTestdataBase& record);
  void WriteRadio(const CIE_GSM_SCell_Radio_Info& info);
  void WriteNeighbours(const CIE_GSM_NCell_Info& info);
  void WriteDedicatedChannel(const CIE_GSM_Ded_CH_Info& info);
  void WriteEvent(const CTestdataBase& record);
  void WriteLayer3Header(const CTestdataBase& record);
  void WriteTdServingCell(const CTestdataBase& record);
  void WriteTdNeighbours(const CIE_NCell_Meas& info);
  void WriteSimpleInfo(const CIE_GSM_2230E_Simple_Info& info);
};

}  // namespace loom
