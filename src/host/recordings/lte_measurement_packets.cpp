#include <algorithm>
#include <iterator>

#include "host/recordings/bit_reader.h"
#include "host/recordings/lte_packets.h"

// Measurements.
namespace loom::recordings {
namespace {

using Levels = LteCellLevels;
using Field = PacketField<Levels>;

// clang-format off
// word, bytes, first bit, bits, scale, value
// Versions 4 and 7 report serving cells only, and have no mark of it.
constexpr Field kServingHead[] = {
    {0, 2, 0,  9, kPlain, &Levels::physical_cell_id},
    {0, 2, 9,  3, kPlain, &Levels::carrier},
};
constexpr Field kCellHead[] = {
    {0, 2, 0,  9, kPlain, &Levels::physical_cell_id},
    {0, 2, 9,  3, kPlain, &Levels::carrier},
    {0, 2, 12, 1, kPlain, &Levels::is_serving},
};

// Of versions 4, 7, 18 and 19, from the first word of the levels.
constexpr Field kLevels4[] = {
    {0,  4, 10, 12, kRsrp, &Levels::rsrp_0},
    {4,  4, 12, 12, kRsrp, &Levels::rsrp_1},
    {8,  4, 12, 12, kRsrp, &Levels::rsrp},
    {12, 4, 12, 10, kRsrq, &Levels::rsrq_0},
    {16, 4, 0,  10, kRsrq, &Levels::rsrq_1},
    {16, 4, 20, 10, kRsrq, &Levels::rsrq},
    {20, 4, 10, 11, kRssi, &Levels::rssi_0},
    {20, 4, 21, 11, kRssi, &Levels::rssi_1},
    {24, 4, 0,  11, kRssi, &Levels::rssi},
    {48, 4, 0,  9,  kSnr,  &Levels::snr_0},
    {48, 4, 9,  9,  kSnr,  &Levels::snr_1},
};
// Antennas 2 and 3 and the filtered levels have no place.
constexpr Field kLevels36[] = {
    {0,  4, 10, 12, kRsrp,        &Levels::rsrp_0},
    {4,  4, 12, 12, kRsrp,        &Levels::rsrp_1},
    {12, 4, 12, 12, kRsrpFrom640, &Levels::rsrp},
    {20, 4, 0,  10, kRsrq,        &Levels::rsrq_0},
    {20, 4, 20, 10, kRsrq,        &Levels::rsrq_1},
    {28, 4, 0,  10, kRsrq,        &Levels::rsrq},
    {32, 4, 0,  11, kRssi,        &Levels::rssi_0},
    {32, 4, 11, 11, kRssi,        &Levels::rssi_1},
    {40, 4, 0,  11, kRssi,        &Levels::rssi},
    {64, 4, 0,  9,  kSnr,         &Levels::snr_0},
    {64, 4, 9,  9,  kSnr,         &Levels::snr_1},
};

struct ServingLayout {
  std::uint8_t version;
  std::uint8_t earfcn_bytes;
  std::uint8_t count_at;      // 0: one cell
  std::uint16_t cells_at;
  std::uint16_t cell_bytes;
  PacketFields<Levels> head;
  std::uint8_t levels_at;     // in the cell
  PacketFields<Levels> levels;
};
constexpr ServingLayout kServingLayouts[] = {
    {4,  2, 0, 2, 0,   kServingHead, 10, kLevels4},
    {7,  4, 0, 4, 0,   kServingHead, 12, kLevels4},
    {18, 4, 0, 4, 0,   kCellHead, 16, kLevels4},
    {19, 4, 4, 8, 88,  kCellHead, 16, kLevels4},
    {36, 4, 4, 8, 128, kCellHead, 16, kLevels36},
};

// Of B179 and B19E: one entry of the list of neighbours, and the serving cell.
constexpr std::size_t kListEntryBytes = 12;
constexpr Field kListEntry[] = {
    {0, 2, 0, 16, kPlain, &Levels::physical_cell_id},
    {2, 2, 0, 12, kRsrp,  &Levels::rsrp},
    {6, 2, 0, 10, kRsrq,  &Levels::rsrq},
};
constexpr Field kIntra3[] = {
    {4,  1, 0, 3,  kPlain, &Levels::carrier},
    {8,  2, 0, 16, kPlain, &Levels::earfcn},
    {10, 2, 0, 16, kPlain, &Levels::physical_cell_id},
    {14, 2, 0, 12, kRsrp,  &Levels::rsrp},
    {18, 2, 0, 10, kRsrq,  &Levels::rsrq},
};
constexpr Field kIntra4[] = {
    {4,  1, 0, 3,  kPlain, &Levels::carrier},
    {8,  4, 0, 31, kPlain, &Levels::earfcn},
    {12, 2, 0, 16, kPlain, &Levels::physical_cell_id},
    {16, 2, 0, 12, kRsrp,  &Levels::rsrp},
    {20, 2, 0, 10, kRsrq,  &Levels::rsrq},
};
constexpr Field kInter2[] = {
    {4,  4, 0, 31, kPlain, &Levels::earfcn},
    {8,  2, 0, 16, kPlain, &Levels::physical_cell_id},
    {12, 2, 0, 12, kRsrp,  &Levels::rsrp},
    {16, 2, 0, 10, kRsrq,  &Levels::rsrq},
};

struct ListLayout {
  std::uint8_t version;
  PacketFields<Levels> serving;
  std::uint16_t neighbour_earfcn_at;  // 0: that of the serving cell
  std::uint16_t count_at;
  std::uint16_t entries_at;
};
constexpr ListLayout kIntraLayouts[] = {{3, kIntra3, 0, 22, 24}, {4, kIntra4, 0, 24, 28}};
constexpr ListLayout kInterLayouts[] = {{2, kInter2, 20, 24, 28}};

constexpr Field kNeighbour[] = {
    {0,  4, 0,  10, kPlain, &Levels::physical_cell_id},
    {12, 4, 0,  12, kRsrp,  &Levels::rsrp},
    {20, 4, 10, 10, kRsrq,  &Levels::rsrq},
    {28, 4, 11, 11, kRssi,  &Levels::rssi},
};
constexpr std::size_t kNeighbourBytes = 52;

constexpr Field kIdleCell5[] = {
    {4,  4, 0,  31, kPlain, &Levels::earfcn},
    {8,  2, 0,  9,  kPlain, &Levels::physical_cell_id},
    {12, 4, 0,  12, kRsrp,  &Levels::rsrp},
    {20, 4, 0,  10, kRsrq,  &Levels::rsrq},
    {24, 4, 10, 11, kRssi,  &Levels::rssi},
};
// clang-format on

constexpr std::uint8_t kIdleCellVersion = 5;
constexpr std::uint8_t kServingPart = 25;

// Parts of B192, B193 and B195: id, version, size with this header.
struct Part {
  std::uint8_t id;
  std::uint8_t version;
  std::span<const std::byte> body;
};
constexpr std::size_t kPartsAt = 4;
constexpr std::size_t kPartHeaderBytes = 4;

// Calls `read` with every part until one of them cannot be read.
template <class Read>
PacketResult ReadParts(std::span<const std::byte> body, Read read) {
  if (body.size() < kPartsAt) return PacketResult::kTooShort;
  if (ByteAt(body, 0) != 1) return PacketResult::kUnknownVersion;
  std::span<const std::byte> rest = body.subspan(kPartsAt);
  for (std::uint8_t left = ByteAt(body, 1); left > 0; --left) {
    if (rest.size() < kPartHeaderBytes) return PacketResult::kTooShort;
    const std::size_t size = WordAt(rest.data() + 2, 2);
    if (size < kPartHeaderBytes || size > rest.size()) return PacketResult::kTooShort;
    const PacketResult result =
        read(Part{ByteAt(rest, 0), ByteAt(rest, 1), rest.subspan(kPartHeaderBytes, size - kPartHeaderBytes)});
    if (result != PacketResult::kRead) return result;
    rest = rest.subspan(size);
  }
  return PacketResult::kRead;
}

PacketResult ReadServingPart(const Part& part, const ServingLayout& layout, LteMeasurements& measurements) {
  if (part.body.size() < layout.cells_at) return PacketResult::kTooShort;
  const auto earfcn = static_cast<std::int32_t>(WordAt(part.body.data(), layout.earfcn_bytes) & 0x7FFF'FFFF);
  const std::size_t count = layout.count_at == 0 ? 1 : WordAt(part.body.data() + layout.count_at, 2);
  std::span<const std::byte> rest = part.body.subspan(layout.cells_at);
  for (std::size_t i = 0; i < count; ++i) {
    LteCellLevels cell;
    if (rest.size() < layout.levels_at || !ReadFields(rest, layout.head, cell) ||
        !ReadFields(rest.subspan(layout.levels_at), layout.levels, cell))
      return PacketResult::kTooShort;
    cell.earfcn = earfcn;
    measurements.cells.push_back(cell);
    if (i + 1 == count) break;
    if (rest.size() < layout.cell_bytes) return PacketResult::kTooShort;
    rest = rest.subspan(layout.cell_bytes);
  }
  return PacketResult::kRead;
}

// n entries behind each other.
bool ReadEntries(std::span<const std::byte> bytes, const PacketFields<Levels>& fields, std::size_t entry_bytes,
                 std::size_t count, LteMeasurements& measurements) {
  if (bytes.size() / entry_bytes < count) return false;
  for (std::size_t i = 0; i < count; ++i) {
    LteCellLevels cell;
    if (!ReadFields(bytes.subspan(i * entry_bytes, entry_bytes), fields, cell)) return false;
    cell.earfcn = measurements.neighbour_earfcn;
    cell.is_serving = 0;
    measurements.neighbours.push_back(cell);
  }
  return true;
}

PacketResult ReadList(std::span<const std::byte> body, std::span<const ListLayout> layouts,
                      LteMeasurements& measurements) {
  if (body.empty()) return PacketResult::kTooShort;
  for (const ListLayout& layout : layouts) {
    if (layout.version != ByteAt(body, 0)) continue;
    if (body.size() < layout.entries_at || !ReadFields(body, layout.serving, measurements.serving))
      return PacketResult::kTooShort;
    measurements.carrier = measurements.serving.carrier;
    measurements.neighbour_earfcn =
        layout.neighbour_earfcn_at == 0
            ? measurements.serving.earfcn
            : static_cast<std::int32_t>(WordAt(body.data() + layout.neighbour_earfcn_at, 4) & 0x7FFF'FFFF);
    const bool is_whole = ReadEntries(body.subspan(layout.entries_at), kListEntry, kListEntryBytes,
                                      ByteAt(body, layout.count_at), measurements);
    return is_whole ? PacketResult::kRead : PacketResult::kTooShort;
  }
  return PacketResult::kUnknownVersion;
}

struct NeighbourLayout {
  std::uint8_t id;
  std::uint8_t version;
  std::uint8_t earfcn_bytes;
  std::uint8_t entries_at;
};
constexpr NeighbourLayout kNeighbourLayouts[] = {{31, 3, 2, 4}, {31, 4, 4, 8}, {27, 3, 2, 4}, {27, 4, 4, 8}};
constexpr std::uint8_t kRequestParts[] = {30, 26};

PacketResult ReadNeighbourPart(const Part& part, LteMeasurements& measurements) {
  measurements.part_version = part.version;
  for (const NeighbourLayout& layout : kNeighbourLayouts) {
    if (layout.id != part.id || layout.version != part.version) continue;
    if (part.body.size() < layout.entries_at) return PacketResult::kTooShort;
    measurements.neighbour_earfcn =
        static_cast<std::int32_t>(WordAt(part.body.data(), layout.earfcn_bytes) & 0x7FFF'FFFF);
    const std::uint32_t word = WordAt(part.body.data() + layout.earfcn_bytes, 2);
    measurements.carrier = static_cast<std::int32_t>(word >> 9 & 0xF);
    return ReadEntries(part.body.subspan(layout.entries_at), kNeighbour, kNeighbourBytes, word & 0x3F, measurements)
               ? PacketResult::kRead
               : PacketResult::kTooShort;
  }
  return PacketResult::kUnknownVersion;
}

}  // namespace

void LteMeasurements::Clear() {
  cells.clear();
  neighbours.clear();
  serving = {};
  carrier = 0;
  neighbour_earfcn = kNotTold;
  part_version = 0;
}

PacketResult ReadLteServingMeasurement(std::span<const std::byte> body, LteMeasurements& measurements) {
  measurements.Clear();
  return ReadParts(body, [&](const Part& part) {
    measurements.part_version = part.version;
    if (part.id != kServingPart) return PacketResult::kUnknownVersion;
    for (const ServingLayout& layout : kServingLayouts)
      if (layout.version == part.version) return ReadServingPart(part, layout, measurements);
    return PacketResult::kUnknownVersion;
  });
}

PacketResult ReadLteIntraFrequency(std::span<const std::byte> body, LteMeasurements& measurements) {
  measurements.Clear();
  return ReadList(body, kIntraLayouts, measurements);
}

PacketResult ReadLteInterFrequency(std::span<const std::byte> body, LteMeasurements& measurements) {
  measurements.Clear();
  return ReadList(body, kInterLayouts, measurements);
}

PacketResult ReadLteNeighbours(std::span<const std::byte> body, LteMeasurements& measurements) {
  measurements.Clear();
  bool is_request = true;
  const PacketResult result = ReadParts(body, [&](const Part& part) {
    if (std::find(std::begin(kRequestParts), std::end(kRequestParts), part.id) != std::end(kRequestParts))
      return PacketResult::kRead;
    is_request = false;
    return ReadNeighbourPart(part, measurements);
  });
  return result == PacketResult::kRead && is_request ? PacketResult::kRequest : result;
}

PacketResult ReadLteIdleCell(std::span<const std::byte> body, LteMeasurements& measurements) {
  measurements.Clear();
  if (body.empty()) return PacketResult::kTooShort;
  if (ByteAt(body, 0) != kIdleCellVersion) return PacketResult::kUnknownVersion;
  return ReadFields<Levels>(body, kIdleCell5, measurements.serving) ? PacketResult::kRead : PacketResult::kTooShort;
}

}  // namespace loom::recordings
