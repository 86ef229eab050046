#include <cstdint>

#include "components/measures.h"
#include "conversion/data_service_fields.h"
#include "conversion/ie_ids.h"
#include "conversion/td_record_converter.h"

// Data-service results and data test statistics.
namespace loom {
namespace {

constexpr std::int32_t kServiceKind = 2408;
constexpr std::int32_t kServiceState = 2409;  // always invalid

// The low 32 bits of a counter.
std::int32_t LowWord(std::int64_t counter) { return static_cast<std::int32_t>(counter); }

// Markers of data test blocks: computed doubles meet their markers only nearly.
struct DataTestMarkers {
  static Mark Of(std::int32_t raw) { return TdMarkers::Of(raw); }
  static Mark Of(double raw) {
    if (IsEqualDouble(raw, -1.0)) return Mark::kAbsent;
    return IsEqualDouble(raw, -2.0) ? Mark::kInvalid : Mark::kValue;
  }
};

// Ends the values that a service of another kind left in the stream.
template <const auto& kTable>
void ResetFields(CRowIEWriter& writer) {
  for (const auto& field : kTable) writer.Invalidate(field.ie.id, field.type);
}

}  // namespace

CTDRecordConverter::Row CTDRecordConverter::ConvertDataService(const CTestdataBase& record, struct_STREAMINFO& stream,
                                                               std::int32_t selection_switch) {
  Row row = StartRow(kDataServiceRow, record, stream, selection_switch);
  writer_.Put(ie::kRecordKind, record.kind);
  writer_.Put(ie::kNetworkMode, record.network_mode);
  if (!record.service) return row;
  const ServiceBlock& block = *record.service;
  writer_.PutIntIfSelected(block.service_kind, block.service_kind, kServiceKind);
  if (writer_.IsSelected(kServiceState)) writer_.Put(kServiceState, kInvalidInt);
  WriteFields<kServiceFields>(writer_, block);
  switch (block.service_kind) {
    case 0:
    case 1:
      ConvertServiceKind01(block);
      break;
    case 2:
      ConvertServiceKind2(block);
      break;
    case 3:
      ConvertServiceKind3(block);
      break;
    default:
      break;
  }
  return row;
}

void CTDRecordConverter::ConvertServiceKind01(const ServiceBlock& block) {
  if (block.kind01) {
    const std::int64_t counter = block.kind01->ie2411;
    if (counter > 0) writer_.PutIntIfSelected(LowWord(counter), LowWord(counter), kServiceKind01Counter);
    WriteFields<kServiceKind01Fields>(writer_, *block.kind01);
  }
  ResetServiceKind2();
}

void CTDRecordConverter::ConvertServiceKind2(const ServiceBlock& block) {
  if (block.kind2) {
    const std::int64_t counter = block.kind2->ie2419;
    if (counter != 0) writer_.PutIntIfSelected(LowWord(counter), LowWord(counter), kServiceKind2Counter);
    WriteFields<kServiceKind2Fields>(writer_, *block.kind2);
  }
  ResetServiceKind01();
}

void CTDRecordConverter::ConvertServiceKind3(const ServiceBlock& block) {
  if (block.kind3) WriteFields<kServiceKind3Fields>(writer_, *block.kind3);
  ResetServiceKind01();
  ResetServiceKind2();
}

void CTDRecordConverter::ResetServiceKind01() {
  writer_.Invalidate(kServiceKind01Counter, kFieldInt);
  ResetFields<kServiceKind01Fields>(writer_);
}

void CTDRecordConverter::ResetServiceKind2() {
  writer_.Invalidate(kServiceKind2Counter, kFieldInt);
  ResetFields<kServiceKind2Fields>(writer_);
}

void CTDRecordConverter::ResetServiceKind3() { ResetFields<kServiceKind3Fields>(writer_); }

CTDRecordConverter::Row CTDRecordConverter::ConvertDataTest(const CTestdataBase& record, struct_STREAMINFO& stream,
                                                            std::int32_t selection_switch) {
  Row row = StartRow(kDataServiceRow, record, stream, selection_switch);
  writer_.Put(ie::kRecordKind, record.kind);
  writer_.Put(ie::kNetworkMode, record.network_mode);
  WriteFields<kDataTestFirstFields, DataTestMarkers>(writer_, record.data_test_first);
  WriteFields<kDataTestSecondFields, DataTestMarkers>(writer_, record.data_test_second);
  return row;
}

}  // namespace loom
