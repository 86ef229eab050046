#include <algorithm>
#include <array>
#include <cstdint>

#include "conversion/ie_ids.h"
#include "conversion/td_record_converter.h"

// Further rows of records that hold several samples.
namespace loom {
namespace {

constexpr std::int32_t kSampleCountIe = 5065;

// Sample i of a group lies at the IE base + 1 + i of the first row and becomes the IE base of its own row.
constexpr std::array kSampleGroups{5066, 5099, 5132, 5165, 5633, 5666, 5699, 5732, 5765, 5798, 5831, 5864, 5897};
constexpr std::array kCopiedIes{ie::kRecordId, ie::kLongitude, ie::kLatitude, ie::kNetworkMode};

}  // namespace

std::int32_t CTDRecordConverter::SampleCount(const CMemDataRow& first_row) const {
  if (blocks_.announced_samples() < 2) return 0;
  const auto count = first_row.GetIEValueByID(kSampleCountIe);
  return count && count->int_value >= 2 ? std::min(count->int_value, CTDBlockConverter::kMaxSamples) : 0;
}

CTDRecordConverter::Row CTDRecordConverter::ConvertSample(const CTestdataBase& record, const CMemDataRow& first_row,
                                                          std::int32_t sample, struct_STREAMINFO& stream,
                                                          std::int32_t selection_switch) {
  const bool from_row = record.model_code == kModel5 || record.model_code == kModelMarlo77;
  if (!from_row && blocks_.Sample(sample) == nullptr) return nullptr;

  Row row = MakeRow(kCopiedIes.size() + 1 + kSampleGroups.size());
  writer_.Begin(stream, selection_switch, *row);
  row->QuickAddIE(ie::kMessageId, uniFieldValue(stream.row_number));
  row->SetRecordTime(first_row.GetRecordTime());
  for (const std::int32_t id : kCopiedIes) {
    if (const auto value = first_row.GetIEValueByID(id)) row->QuickAddIE(id, *value);
  }
  if (!from_row) {
    CTDBlockConverter::WriteSample(writer_, *blocks_.Sample(sample));
    return row;
  }
  for (const std::int32_t base : kSampleGroups) {
    if (!writer_.IsSelected(base)) continue;
    if (const auto value = first_row.GetIEValueByID(base + 1 + sample)) writer_.Put(base, *value);
  }
  return row;
}

}  // namespace loom
