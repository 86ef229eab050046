#include "conversion/td_signalling.h"

#include <algorithm>
#include <cstddef>
#include <deque>
#include <limits>
#include <string_view>

#include "components/decoder.h"
#include "components/records/blocks_td.h"
#include "conversion/ie_ids.h"
#include "conversion/td_sizes.h"
#include "conversion/transport_channel_reader.h"

namespace loom {
namespace {

constexpr std::string_view kConnectionSetup = "RRC Connection Setup";
constexpr std::string_view kBearerSetup = "Radio Bearer Setup (DL-DCCH)";
constexpr std::string_view kBearerReconfiguration = "Radio Bearer Reconfiguration (DL-DCCH)";

constexpr std::int32_t kServingUarfcn = 147;
constexpr std::int32_t kServingCellParameterId = 140;
constexpr std::int32_t kNeighbourUarfcn = 1173;
constexpr std::int32_t kNeighbourCellParameterId = 1141;
constexpr std::int32_t kBestLevel = 500;
constexpr std::int32_t kBestUarfcn = 148;
constexpr std::int32_t kBestCellParameterId = 141;
constexpr std::int32_t kDpchRscp = 5406;

// Of transport channel 1; the sums of the 32 channels follow their last one, for error rates total and greatest.
constexpr std::int32_t kFaultyBlocks = 936;
constexpr std::int32_t kReceivedBlocks = 1001;
constexpr std::int32_t kChannels = 32;
constexpr std::int32_t kBlerTotal = ie::kTransportChannelBler + kChannels;
constexpr std::int32_t kGreatestBler = kBlerTotal + 1;

// Throughputs and ratios per code: written when the row's count is above 0.
struct CodeSeries {
  std::int32_t count;
  std::int32_t first;
  std::int32_t last;
  std::int32_t greatest;
  std::int32_t sum;  // kNoSum: only with import settings, and the greatest of all values, invalid ones included
};
constexpr std::int32_t kNoSum = -1;

// clang-format off
constexpr CodeSeries kCodeSeries[] = {
    {ie::kRlcCount,  1589, 1620, 1621, 1622},    // uplink throughput
    {ie::kRlcCount,  1657, 1688, 1690, kNoSum},  // uplink retransmissions
    {ie::kRlcCount,  1623, 1654, 1655, 1656},    // downlink throughput
    {ie::kPdcpCount, 1958, 1968, 1969, 1970},
    {ie::kPdcpCount, 1971, 1981, 1982, 1983},
};
// clang-format on

void PutIfSelected(CRowIEWriter& writer, std::int32_t id, uniFieldValue value) {
  if (writer.IsSelected(id)) writer.Put(id, value);
}
void PutIfSelected(CRowIEWriter& writer, std::int32_t id, std::optional<float> value) {
  if (value) PutIfSelected(writer, id, uniFieldValue(*value));
}

bool IsAbove0(const RowIndex& index, std::int32_t id) {
  const auto value = index.Get(id);
  return value && value->int_value > 0;
}

// Greatest value and sum of a series; -255 once an invalid value was seen and as long as no valid one was.
struct Summary {
  std::optional<float> maximum;
  std::optional<float> sum;
};

Summary Summarise(const RowIndex& index, std::int32_t first, std::int32_t last) {
  Summary summary;
  bool has_valid = false;
  index.ForEachIn(first, last, [&](uniFieldValue value) {
    if (value.float_value == kInvalidFloat) {
      if (!has_valid) summary.maximum = summary.sum = kInvalidFloat;
      return;
    }
    if (!has_valid) summary.maximum = summary.sum = 0.0f;
    has_valid = true;
    summary.maximum = std::max(*summary.maximum, value.float_value);
    *summary.sum += value.float_value;
  });
  return summary;
}

// Greatest of the values from id first to last that the row holds, whatever they are.
std::optional<float> Greatest(const RowIndex& index, std::int32_t first, std::int32_t last) {
  std::optional<float> greatest;
  index.ForEachIn(first, last, [&](uniFieldValue value) {
    greatest = greatest ? std::max(*greatest, value.float_value) : value.float_value;
  });
  return greatest;
}

std::int32_t Saturated(std::int64_t value) {
  return static_cast<std::int32_t>(std::clamp<std::int64_t>(value, std::numeric_limits<std::int32_t>::min(),
                                                            std::numeric_limits<std::int32_t>::max()));
}

// Block error totals of the transport channels with CRC: faulty and received blocks, -255 when only invalid pairs
// exist.
struct BlockTotals {
  std::optional<std::int64_t> faulty;
  std::optional<std::int64_t> received;
  bool has_valid = false;

  void Add(std::int32_t faulty_blocks, std::int32_t received_blocks) {
    if (faulty_blocks == kInvalidInt || received_blocks == kInvalidInt) {
      if (!has_valid) faulty = received = kInvalidInt;
      return;
    }
    if (!has_valid) faulty = received = 0;
    has_valid = true;
    *faulty += faulty_blocks;
    *received += received_blocks;
  }
  float Percent() const {
    if (has_valid && *faulty == 0 && *received == 0) return 0.0f;
    if (!has_valid || *received == 0) return kInvalidFloat;
    return static_cast<float>(static_cast<double>(*faulty) / static_cast<double>(*received) * 100.0);
  }
};

// Brings the stream's transport channels up to date with the record's message, when it is one that configures them.
void FollowTransportChannels(const CTestdataBase& record, struct_STREAMINFO& stream) {
  const std::string_view name = record.layer3_name;
  if (name != kConnectionSetup && name != kBearerSetup && name != kBearerReconfiguration) return;
  if (name == kConnectionSetup) stream.crc_channels.clear();
  static CDecoder decoder;
  std::deque<CString> lines;
  if (decoder.DTDetailDecode(&stream, record, lines)) TransportChannelReader::Read(lines, stream.crc_channels);
}

std::optional<std::int32_t> Unmarked(std::int32_t raw) {
  if (raw == -1) return std::nullopt;
  return raw == -2 ? kInvalidInt : raw;
}

std::optional<std::int32_t> Int(std::optional<uniFieldValue> value) {
  return value ? std::optional(value->int_value) : std::nullopt;
}

void PutShortIfSelected(CRowIEWriter& writer, std::int32_t id, std::optional<std::int32_t> value) {
  if (value) PutIfSelected(writer, id, uniFieldValue::Short(static_cast<std::uint16_t>(*value)));
}

}  // namespace

void RowIndex::Build(const CMemDataRow& row) {
  row_ = &row;
  present_.fill(0);
  const std::int32_t* ids = row.GetParamID().data();
  const std::size_t size = std::min<std::size_t>(row.GetParamID().size(), std::numeric_limits<std::uint16_t>::max());
  for (std::size_t at = size; at-- > 0;) {  // the first field of an id is entered last
    if (ids[at] < 0 || ids[at] > kMaxId) continue;
    const auto id = static_cast<std::size_t>(ids[at]);
    present_[id / 64] |= std::uint64_t{1} << (id % 64);
    positions_[id] = static_cast<std::uint16_t>(at);
  }
}

void SignallingPass::ApplySignalling(const CTestdataBase& record, const StateRecord& state, CRowIEWriter& writer) {
  index_.Build(writer.row());
  WriteFirstTimeslotRscp(writer);
  FollowTransportChannels(record, writer.stream());
  WriteTransportChannelTotals(writer);
  WriteCodeSummaries(writer);
  WriteBestCell(record, state, writer);
}

void SignallingPass::WriteFirstTimeslotRscp(CRowIEWriter& writer) const {
  if (!IsAbove0(index_, ie::kDpchRscpCount) || !writer.IsSelected(kDpchRscp)) return;
  std::optional<std::int32_t> first;
  for (std::int32_t at = 0; at < kDpchTimeslots && (!first || *first == kInvalidInt); ++at) {
    if (const auto value = index_.Get(ie::kTimeslotDpchRscp + at)) first = value->int_value;
  }
  if (first) writer.Put(kDpchRscp, *first);
}

void SignallingPass::WriteTransportChannelTotals(CRowIEWriter& writer) const {
  if (!IsAbove0(index_, ie::kTransportChannelCount) || !writer.IsSelected(ie::kTransportChannelBler)) return;
  BlockTotals totals;
  std::optional<float> greatest;
  for (const std::int32_t channel : writer.stream().crc_channels) {
    const auto faulty = index_.Get(kFaultyBlocks + channel - 1);
    const auto received = index_.Get(kReceivedBlocks + channel - 1);
    if (faulty && received) totals.Add(faulty->int_value, received->int_value);
    if (const auto value = index_.Get(ie::kTransportChannelBler + channel - 1))
      greatest = greatest ? std::max(*greatest, value->float_value) : value->float_value;
  }
  if (totals.faulty) {
    PutIfSelected(writer, kFaultyBlocks + kChannels, uniFieldValue(Saturated(*totals.faulty)));
    PutIfSelected(writer, kReceivedBlocks + kChannels, uniFieldValue(Saturated(*totals.received)));
    PutIfSelected(writer, kBlerTotal, uniFieldValue(totals.Percent()));
  }
  PutIfSelected(writer, kGreatestBler, greatest);
}

void SignallingPass::WriteCodeSummaries(CRowIEWriter& writer) const {
  for (const CodeSeries& series : kCodeSeries) {
    if (!IsAbove0(index_, series.count)) continue;
    if (series.sum != kNoSum) {
      const Summary summary = Summarise(index_, series.first, series.last);
      PutIfSelected(writer, series.greatest, summary.maximum);
      PutIfSelected(writer, series.sum, summary.sum);
    } else if (!writer.settings_empty()) {
      PutIfSelected(writer, series.greatest, Greatest(index_, series.first, series.last));
    }
  }
}

void SignallingPass::WriteBestCell(const CTestdataBase& record, const StateRecord& state, CRowIEWriter& writer) const {
  std::optional<std::int32_t> level;
  std::optional<std::int32_t> uarfcn;
  std::optional<std::int32_t> cell_parameter_id;
  const CIE_SCell_Meas* serving = record.timeslot_measurements;
  if (serving != nullptr && serving->pccpch_rscp != -1) {
    level = serving->pccpch_rscp == -2 ? kInvalidInt : serving->pccpch_rscp + kLevelOffset;
    const CIE_SCell_Para* kept = state.record().serving_cell;
    uarfcn = Int(index_.Get(kServingUarfcn));
    if (!uarfcn && kept != nullptr) uarfcn = Unmarked(kept->uarfcn);
    cell_parameter_id = Int(index_.Get(kServingCellParameterId));
    if (!cell_parameter_id && kept != nullptr) cell_parameter_id = Unmarked(kept->cell_parameter_id);
  }
  if (const CIE_NCell_Meas* block = record.neighbours; block != nullptr && block->count >= 0) {
    for (std::size_t at = 0; at < std::min<std::size_t>(block->neighbours.size(), kMaxNeighbours); ++at) {
      const std::int32_t raw = block->neighbours[at].pccpch_rscp;
      if (raw == -1 || (level && raw + kLevelOffset <= *level)) continue;
      level = raw + kLevelOffset;
      const auto offset = static_cast<std::int32_t>(at);
      if (const auto value = index_.Get(kNeighbourUarfcn + offset)) uarfcn = value->int_value;
      if (const auto value = index_.Get(kNeighbourCellParameterId + offset)) cell_parameter_id = value->int_value;
    }
  }
  PutShortIfSelected(writer, kBestLevel, level);
  PutShortIfSelected(writer, kBestUarfcn, uarfcn);
  PutShortIfSelected(writer, kBestCellParameterId, cell_parameter_id);
}

}  // namespace loom
