#include "conversion/td_signalling.h"

#include <algorithm>
#include <cstddef>
#include <deque>
#include <limits>
#include <string_view>

#include "components/decoder.h"
#include "components/records/blocks_td.h"
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
  if (!IsAbove0(index_, 519) || !writer.IsSelected(5406)) return;
  std::optional<std::int32_t> first;
  for (std::int32_t id = 5407; id <= 5411 && (!first || *first == kInvalidInt); ++id) {
    if (const auto value = index_.Get(id)) first = value->int_value;
  }
  if (first) writer.Put(5406, *first);
}

void SignallingPass::WriteTransportChannelTotals(CRowIEWriter& writer) const {
  if (!IsAbove0(index_, 200) || !writer.IsSelected(1034)) return;
  BlockTotals totals;
  std::optional<float> greatest;
  for (const std::int32_t channel : writer.stream().crc_channels) {
    const auto faulty = index_.Get(935 + channel);
    const auto received = index_.Get(1000 + channel);
    if (faulty && received) totals.Add(faulty->int_value, received->int_value);
    const auto rate = Greatest(index_, 1033 + channel, 1033 + channel);
    if (rate) greatest = greatest ? std::max(*greatest, *rate) : *rate;
  }
  if (totals.faulty) {
    PutIfSelected(writer, 968, uniFieldValue(Saturated(*totals.faulty)));
    PutIfSelected(writer, 1033, uniFieldValue(Saturated(*totals.received)));
    PutIfSelected(writer, 1066, uniFieldValue(totals.Percent()));
  }
  PutIfSelected(writer, 1067, greatest);
}

void SignallingPass::WriteCodeSummaries(CRowIEWriter& writer) const {
  if (IsAbove0(index_, 491)) {
    const Summary first = Summarise(index_, 1589, 1620);
    const Summary second = Summarise(index_, 1623, 1654);
    PutIfSelected(writer, 1621, first.maximum);
    PutIfSelected(writer, 1622, first.sum);
    if (!writer.settings_empty()) PutIfSelected(writer, 1690, Greatest(index_, 1657, 1688));
    PutIfSelected(writer, 1655, second.maximum);
    PutIfSelected(writer, 1656, second.sum);
  }
  if (IsAbove0(index_, 492)) {
    const Summary first = Summarise(index_, 1958, 1968);
    const Summary second = Summarise(index_, 1971, 1981);
    PutIfSelected(writer, 1969, first.maximum);
    PutIfSelected(writer, 1970, first.sum);
    PutIfSelected(writer, 1982, second.maximum);
    PutIfSelected(writer, 1983, second.sum);
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
