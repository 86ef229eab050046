#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <span>
#include <vector>

#include "host/recordings/lte_rrc.h"
#include "host/recordings/packet_fields.h"

// Log packets of LTE.
namespace loom::recordings {

inline constexpr std::uint16_t kCodeLteRrc = 0xB0C0;
inline constexpr std::uint16_t kCodeLteMib = 0xB0C1;
inline constexpr std::uint16_t kCodeLteServingCell = 0xB0C2;
inline constexpr std::uint16_t kCodeLteSessionIn = 0xB0E2;
inline constexpr std::uint16_t kCodeLteSessionOut = 0xB0E3;
inline constexpr std::uint16_t kCodeLteMobilityIn = 0xB0EC;
inline constexpr std::uint16_t kCodeLteMobilityOut = 0xB0ED;
inline constexpr std::uint16_t kCodeLteIntraFrequency = 0xB179;
inline constexpr std::uint16_t kCodeLteIdleCell = 0xB17F;
inline constexpr std::uint16_t kCodeLteIdleNeighbours = 0xB192;
inline constexpr std::uint16_t kCodeLteServingMeasurement = 0xB193;
inline constexpr std::uint16_t kCodeLteNeighbours = 0xB195;
inline constexpr std::uint16_t kCodeLteCellInfo = 0xB197;
inline constexpr std::uint16_t kCodeLteInterFrequency = 0xB19E;

// What reading a packet came to.
enum class PacketResult : std::uint8_t { kRead, kUnknownVersion, kTooShort, kRequest };

struct LteRrcPacket {
  std::int32_t physical_cell_id = kNotTold;
  std::int32_t earfcn = kNotTold;
  std::int32_t channel_code = kNotTold;
  std::int32_t length = kNotTold;
  std::optional<LteRrcChannel> channel;  // nothing: the version has no such code
  std::span<const std::byte> message;
};
PacketResult ReadLteRrc(std::span<const std::byte> body, LteRrcPacket& packet);

// What the network tells of a cell.
struct LteCellInfo {
  std::int32_t physical_cell_id = kNotTold;
  std::int32_t earfcn = kNotTold;
  std::int32_t antenna_ports = kNotTold;
  std::int32_t bandwidth_prb = kNotTold;
  std::int32_t cell_identity = kNotTold;
  std::int32_t tac = kNotTold;
  std::int32_t mcc = kNotTold;
  std::int32_t mnc_digits = kNotTold;
  std::int32_t mnc = kNotTold;
};
PacketResult ReadLteMib(std::span<const std::byte> body, LteCellInfo& info);
PacketResult ReadLteServingCell(std::span<const std::byte> body, LteCellInfo& info);
PacketResult ReadLteCellInfo(std::span<const std::byte> body, LteCellInfo& info);

// Levels of one cell, in 1/16 dB and SNR in 1/10 dB.
struct LteCellLevels {
  std::int32_t physical_cell_id = kNotTold;
  std::int32_t carrier = 0;  // 0: the primary one
  std::int32_t is_serving = 1;
  std::int32_t earfcn = kNotTold;
  std::int32_t rsrp = kNotTold;
  std::int32_t rsrp_0 = kNotTold;  // by antenna
  std::int32_t rsrp_1 = kNotTold;
  std::int32_t rsrq = kNotTold;
  std::int32_t rsrq_0 = kNotTold;
  std::int32_t rsrq_1 = kNotTold;
  std::int32_t rssi = kNotTold;
  std::int32_t rssi_0 = kNotTold;
  std::int32_t rssi_1 = kNotTold;
  std::int32_t snr_0 = kNotTold;
  std::int32_t snr_1 = kNotTold;
};

// Cells of a measurement packet.
struct LteMeasurements {
  std::vector<LteCellLevels> cells;  // of a serving measurement, in the order of the packet
  LteCellLevels serving;             // of the other packets
  std::int32_t carrier = 0;          // of the other packets
  std::int32_t neighbour_earfcn = kNotTold;
  std::vector<LteCellLevels> neighbours;  // of the other packets
  std::uint8_t part_version = 0;          // of the first part that is not known

  void Clear();
};
PacketResult ReadLteServingMeasurement(std::span<const std::byte> body, LteMeasurements& measurements);
PacketResult ReadLteIntraFrequency(std::span<const std::byte> body, LteMeasurements& measurements);
PacketResult ReadLteInterFrequency(std::span<const std::byte> body, LteMeasurements& measurements);
PacketResult ReadLteNeighbours(std::span<const std::byte> body, LteMeasurements& measurements);  // B195 and B192
PacketResult ReadLteIdleCell(std::span<const std::byte> body, LteMeasurements& measurements);

// The message of a plain NAS packet.
PacketResult ReadLteNas(std::span<const std::byte> body, std::span<const std::byte>& message);

}  // namespace loom::recordings
