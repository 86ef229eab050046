#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <optional>

#include "components/id_set.h"
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
    const auto at = static_cast<std::size_t>(id);
    return present_[at / 64] >> (at % 64) & 1 ? std::optional(Value(at)) : std::nullopt;
  }
  // Calls visit(value) for the first field of each id from first to last that the row holds, ascending; at most 64 ids.
  template <class Visit>
  void ForEachIn(std::int32_t first, std::int32_t last, Visit visit) const {
    const std::uint64_t bits = BitsFrom(present_, first) & ~std::uint64_t{0} >> (63 - (last - first));
    ForEachBit(bits, [&](int bit) { visit(Value(static_cast<std::size_t>(first + bit))); });
  }

 private:
  uniFieldValue Value(std::size_t id) const { return row_->GetParamValue()[positions_[id]]; }

  std::array<std::uint64_t, kMaxId / 64 + 1> present_{};  // one bit per id
  std::array<std::uint16_t, kMaxId + 1> positions_{};     // of the ids present
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
