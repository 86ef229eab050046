#pragma once

#include <array>
#include <cstddef>
#include <cstdint>

#include "components/records/blocks_td_more.h"
#include "conversion/record_converter.h"

namespace loom {

// The smaller blocks of a TD-SCDMA handset record (positions 288 to 332, 344 and 348).
class CTDBlockConverter final : public CRecordConverter {
 public:
  static constexpr std::int32_t kMaxSamples = 32;

  // Adds the record's blocks to the row of a stream, and keeps the record's samples.
  void Convert(const CTestdataBase& record, struct_STREAMINFO& stream, std::int32_t selection_switch, CMemDataRow& row);

  // How many samples the record converted last announces, at most kMaxSamples; 0 or less when it has none.
  std::int32_t announced_samples() const { return announced_samples_; }
  // A sample of the record converted last; null when it is missing.
  const TdSample* Sample(std::int32_t at) const {
    return at >= 0 && at < sample_count_ ? &samples_[static_cast<std::size_t>(at)] : nullptr;
  }
  // IEs of one sample.
  static void WriteSample(CRowIEWriter& writer, const TdSample& sample);

 private:
  void WriteSamples(const TdSamples* block);

  std::array<TdSample, kMaxSamples> samples_;
  std::int32_t announced_samples_ = 0;
  std::int32_t sample_count_ = 0;  // of samples_
};

// The block table of a TD-SCDMA handset record (position 352).
class CTDBlockTableConverter final : public CRecordConverter {
 public:
  void Convert(const CTestdataBase& record, struct_STREAMINFO& stream, std::int32_t selection_switch, CMemDataRow& row);
};

}  // namespace loom
