#pragma once

#include <cstdint>
#include <memory>
#include <optional>

#include "components/mem_row.h"
#include "components/records/blocks_lte.h"
#include "components/records/testdata.h"
#include "components/stream_info.h"
#include "conversion/record_converter.h"

namespace loom {

// What the rows of all LTE handsets have: header, layer-3 message and event, serving cell with the distance to it. The
// distance is to the last serving cell whose key was known, also in rows without a serving cell of their own.
class CLTEConverter : public CRecordConverter {
 public:
  // Forgets the last serving cell; before each log.
  void ResetForLog();

 protected:
  std::unique_ptr<CMemDataRow> StartLteRow(const CTestdataBase& record, struct_STREAMINFO& stream,
                                           std::int32_t selection_switch);
  void WriteLTEServingCell(const std::optional<LteServingCell>& cell, const CTestdataBase& record);

 private:
  void WriteLTEHeader(const CTestdataBase& record);
  void WriteLTESignalling(const CTestdataBase& record);
  void WriteDistance(const CTestdataBase& record);

  std::int32_t last_cell_key_ = -1;
  std::int32_t position_key_ = -1;  // cell that position_ belongs to
  Position position_;
};

// Records of model code 14: LTE measurements.
class CLTEMeasConverter : public CLTEConverter {
 public:
  std::unique_ptr<CMemDataRow> Convert(const CTestdataBase& record, struct_STREAMINFO& stream,
                                       std::int32_t selection_switch);

 private:
  void WriteBlock(const LteMeasBlock& block);
  void WriteNeighbours(const LteNeighbourList& list);
};

// Records of model code 15: LTE signalling.
class CLTESignalConverter : public CLTEConverter {
 public:
  std::unique_ptr<CMemDataRow> Convert(const CTestdataBase& record, struct_STREAMINFO& stream,
                                       std::int32_t selection_switch);
};

}  // namespace loom
