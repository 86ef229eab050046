#pragma once

#include <array>
#include <cstdint>
#include <vector>

#include "host/recordings/cell_identity.h"
#include "host/recordings/lte_packets.h"

namespace loom::recordings {

enum class Network : std::uint8_t { kNone, kLte, kGsm, kWcdma };

// A cell as far as a packet tells it; kNotTold otherwise.
struct LteCell {
  std::int32_t physical_cell_id = kNotTold;
  std::int32_t earfcn = kNotTold;
  friend bool operator==(const LteCell&, const LteCell&) = default;
};

// What the packets of one radio have told so far.
struct HandsetState {
  static constexpr std::size_t kCarriers = 16;

  Network network = Network::kNone;
  bool has_gsm_cell = false;  // GSM was heard since the last WCDMA message
  bool is_connected = false;
  bool is_handed_over = false;  // an order to another cell is not yet confirmed
  bool has_lte_records = false;

  std::array<LteCell, kCarriers> serving;  // by carrier, as measurements and messages told last
  LteCell camped;                          // of the last serving cell packet
  LteCellInfo info;                        // identity and bandwidth, of the cell that it names
  LteCellInfo mib;                         // antennas and bandwidth, likewise
  // Of a capture, whose packets do not name their cell.
  CellIdentity captured_identity;
  std::int32_t captured_cell_id = kNotTold;
  std::int32_t ordered_cell_id = kNotTold;  // where the order leads to

  CellIdentity gsm;
  std::int32_t gsm_arfcn = kNotTold;
  // Neighbour lists by the message that told them: SYSTEM INFORMATION TYPE 2 and 2bis, 5, 5bis and 5ter.
  std::vector<std::uint16_t> idle_list;
  std::vector<std::uint16_t> idle_list_bis;
  std::vector<std::uint16_t> call_list;
  std::vector<std::uint16_t> call_list_bis;
  std::vector<std::uint16_t> call_list_ter;

  // The frequencies that measurement reports count.
  std::vector<std::uint16_t> NeighbourFrequencies() const;
};

}  // namespace loom::recordings
