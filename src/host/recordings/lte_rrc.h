#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <span>
#include <string_view>
#include <vector>

#include "host/recordings/cell_identity.h"

// LTE RRC messages (3GPP TS 36.331), unaligned PER: their names, and the few contents that are read.
namespace loom::recordings {

enum class LteRrcChannel : std::uint8_t { kBcchBch, kBcchDlSch, kMcch, kPcch, kDlCcch, kDlDcch, kUlCcch, kUlDcch };
inline constexpr std::size_t kLteRrcChannels = 8;

// How a logical channel is written into a record.
struct LteRrcChannelKind {
  std::uint8_t gsmtap_sub_type;
  std::int8_t channel;    // kChannel...
  std::int8_t direction;  // 0 up, 1 down
  std::int32_t message_id;
};
const LteRrcChannelKind& KindOf(LteRrcChannel channel);
std::optional<LteRrcChannel> LteRrcChannelOfGsmtap(std::uint8_t sub_type);

// What a message does to the state of a handset.
enum class RrcRole : std::uint8_t {
  kNone,
  kSystemInformation1,
  kMeasurementReport,
  kConnect,      // from here on connected
  kRelease,      // from here on idle
  kReconfigure,  // a handover when it carries mobilityControlInfo
  kReconfigured,
};

struct RrcMessage {
  std::string_view name;       // empty: not known
  std::int32_t event_id = -1;  // that it always stands for
  RrcRole role = RrcRole::kNone;
};
RrcMessage IdentifyLteRrc(LteRrcChannel channel, std::span<const std::byte> message);

// Levels as they are reported: RSRP n is n - 141 dBm and above, RSRQ n is n / 2 - 20 dB and above (TS 36.133, 9.1).
struct LteReportedCell {
  std::uint16_t physical_cell_id = 0;
  std::optional<std::uint8_t> rsrp;
  std::optional<std::uint8_t> rsrq;
};

struct LteMeasurementReport {
  std::uint8_t rsrp = 0;  // of the serving cell
  std::uint8_t rsrq = 0;
  std::vector<LteReportedCell> neighbours;
  bool is_read_in_part = false;  // neighbours with contents that are not read stand behind the last one
};
// Of a message that begins with its message type. Nothing when it ends early.
std::optional<LteMeasurementReport> ReadMeasurementReport(std::span<const std::byte> message);

// Cell, tracking area and first network of a SystemInformationBlockType1.
std::optional<CellIdentity> ReadSystemInformation1(std::span<const std::byte> message);

// Whether an RRCConnectionReconfiguration carries mobilityControlInfo; the cell that it leads to where that can be
// read.
struct Mobility {
  bool is_handover = false;
  std::optional<std::uint16_t> target_cell_id;
};
Mobility ReadMobility(std::span<const std::byte> message);

}  // namespace loom::recordings
