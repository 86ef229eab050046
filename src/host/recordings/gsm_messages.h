#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <span>
#include <string_view>
#include <vector>

#include "host/recordings/cell_identity.h"

// GSM layer-3 messages (3GPP TS 44.018, 24.008): their names, and the few contents that are read.
namespace loom::recordings {

enum class GsmRole : std::uint8_t { kNone, kCellIdentity, kAreaIdentity, kNeighbourList, kMeasurementReport };

struct GsmMessage {
  std::string_view name;  // in capitals; empty: not known
  std::int32_t event_id = -1;
  GsmRole role = GsmRole::kNone;
  std::uint8_t type = 0;
  bool is_radio_resources = false;
};

// A message that begins with its protocol discriminator.
GsmMessage IdentifyGsm(std::span<const std::byte> message);

// Cell and area of SYSTEM INFORMATION TYPE 3, 4 (no cell) and 6.
std::optional<CellIdentity> ReadGsmIdentity(const GsmMessage& kind, std::span<const std::byte> message);

// ARFCNs of a Neighbour Cell Description (TS 44.018, 10.5.2.22) of SYSTEM INFORMATION TYPE 2, 2bis, 5, 5bis, 5ter, in
// the order in which reports count them: rising, 0 last. Nothing when its form is not known.
std::optional<std::vector<std::uint16_t>> ReadNeighbourList(std::span<const std::byte> message);

struct GsmReportedCell {
  std::uint8_t rx_lev = 0;  // 0 to 63, -110 dBm
  std::uint8_t list_index = 0;
  std::uint8_t bsic = 0;
};

struct GsmMeasurementReport {
  bool is_valid = false;  // of the serving cell
  std::uint8_t rx_lev = 0;
  std::uint8_t rx_qual_full = 0;
  std::uint8_t rx_qual_sub = 0;
  std::uint8_t neighbour_count = 0;
  std::array<GsmReportedCell, 6> neighbours{};
};
std::optional<GsmMeasurementReport> ReadGsmReport(std::span<const std::byte> message);

}  // namespace loom::recordings
