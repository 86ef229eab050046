#pragma once

#include <array>
#include <cstdint>
#include <optional>

#include "components/mem_row.h"
#include "components/records/state_record.h"
#include "components/records/testdata.h"
#include "components/stream_info.h"
#include "conversion/row_ie_writer.h"

namespace loom {

// Where a row holds its fields: one pass over the row instead of a search per question. Ids above kMaxId are unknown
// to it.
class RowIndex {
 public:
  static constexpr std::int32_t kMaxId = 5411;

  // Valid until the row is changed by anything but appending; fields appended later are not seen.
  void Build(const CMemDataRow& row);
  // First field with the id, if any.
  std::optional<uniFieldValue> Get(std::int32_t id) const {
    const std::size_t at = positions_[static_cast<std::size_t>(id)];
    return at < size_ && row_->GetParamID()[at] == id ? std::optional(row_->GetParamValue()[at]) : std::nullopt;
  }

 private:
  // A position counts only if the row has the id there, so nothing needs to be cleared between rows.
  std::array<std::uint16_t, kMaxId + 1> positions_{};
  std::size_t size_ = 0;
  const CMemDataRow* row_ = nullptr;
};

// Values derived from a finished TD-SCDMA row: transport-channel totals (3GPP TS 25.331 names the channels), code
// maxima and sums, the best cell. Keeps the stream's set of transport channels with CRC up to date.
class SignallingPass {
 public:
  // Adds the derived values to the row that the writer is directed to.
  void ApplySignalling(const CTestdataBase& record, const StateRecord& state, CRowIEWriter& writer);

 private:
  void WriteFirstTimeslotRscp(CRowIEWriter& writer) const;
  void WriteTransportChannelTotals(CRowIEWriter& writer) const;
  void WriteCodeSummaries(CRowIEWriter& writer) const;
  void WriteBestCell(const CTestdataBase& record, const StateRecord& state, CRowIEWriter& writer) const;

  RowIndex index_;
};

}  // namespace loom
