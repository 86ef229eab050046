#pragma once

#include <array>
#include <cstdint>
#include <memory>
#include <span>
#include <string_view>
#include <vector>

#include "components/records/blocks.h"
#include "host/recordings/gsm_messages.h"
#include "host/recordings/gsm_packets.h"
#include "host/recordings/handset_state.h"
#include "host/recordings/recorded_packet.h"
#include "host/recordings/recording_log.h"

namespace loom::recordings {

// Turns packets into records. Keeps what each radio has told: serving cell, network, connection.
class RecordMapper {
 public:
  RecordMapper(RecordingLog& log, Findings& findings);

  void Take(const RecordedPacket& packet, const CString& file);

 private:
  static constexpr std::size_t kRadios = 9;  // by number, from 1

  struct Route {
    std::uint16_t code;
    bool has_version;  // its first byte
    void (RecordMapper::*take)(const RecordedPacket& packet);
  };
  static const Route kRoutes[];

  void TakeDiag(const RecordedPacket& packet);
  void TakeGsmtap(const RecordedPacket& packet);
  void TakeUnknownCode(const RecordedPacket& packet);

  // Log codes.
  void TakeLteRrc(const RecordedPacket& packet);
  void TakeLteMib(const RecordedPacket& packet);
  void TakeLteServingCell(const RecordedPacket& packet);
  void TakeLteCellInfo(const RecordedPacket& packet);
  void TakeLteNas(const RecordedPacket& packet);
  void TakeLteServingMeasurement(const RecordedPacket& packet);
  void TakeLteIntraFrequency(const RecordedPacket& packet);
  void TakeLteInterFrequency(const RecordedPacket& packet);
  void TakeLteNeighbours(const RecordedPacket& packet);
  void TakeLteIdleCell(const RecordedPacket& packet);
  void TakeGsmRr(const RecordedPacket& packet);
  void TakeGsmNas(const RecordedPacket& packet);
  void TakeWcdma(const RecordedPacket& packet);
  void TakeWcdmaRrc(const RecordedPacket& packet);
  void TakeNewRadio(const RecordedPacket& packet);
  void TakeTwin(const RecordedPacket& packet);

  // GSMTAP types.
  void TakeGsmtapLteRrc(const RecordedPacket& packet);
  void TakeGsmtapGsm(const RecordedPacket& packet);

  // Messages.
  void PutLteRrc(LteRrcChannel channel, const LteCell& cell, std::span<const std::byte> message);
  void FollowLteRrc(const RrcMessage& kind, LteRrcChannel channel, const LteCell& cell,
                    std::span<const std::byte> message);
  void LearnSystemInformation1(const LteCell& cell, std::span<const std::byte> message);
  void FillReport(std::span<const std::byte> message);
  void PutLteNas(std::span<const std::byte> message, std::int8_t direction);
  void PutGsm(const GsmPacket& packet);
  void FollowGsm(const GsmMessage& kind, std::span<const std::byte> message);
  void LearnNeighbourList(const GsmMessage& kind, std::span<const std::byte> message);
  void FillGsmReport(CTestdataBase& record, std::span<const std::byte> message);
  void FillMessage(CTestdataBase& record, std::string_view name, std::span<const std::byte> message);

  // Measurements.
  void PutNeighbourMeasurement();
  void FillServing(const LteCell& cell);
  void FillIdentity(const CellIdentity& identity);
  void FillLevels(const LteCellLevels& levels);
  void AddNeighbour(const LteCellLevels& levels);
  std::uint16_t Level(std::int32_t value, std::int32_t unit);
  std::uint16_t Earfcn(std::int32_t earfcn);

  CTestdataBase Start(std::int32_t kind) const;
  CTestdataBase StartLte(bool has_block);
  void Put(CTestdataBase& record);  // and the events that wait
  void PutLteRecord(CTestdataBase& record);
  void PutEvent(std::int32_t event_id, std::int32_t model_code, std::int32_t network_mode);
  void Reach(Network network);  // a change of network becomes an event
  bool IsRead(PacketResult result, const RecordedPacket& packet, std::uint8_t version);
  void Tell(Finding finding, std::string_view what);

  RecordingLog& log_;
  Findings& findings_;
  std::unique_ptr<std::array<std::uint8_t, 65'536>> route_of_code_;  // index in kRoutes + 1; 0: none
  std::array<HandsetState, kRadios> states_;

  // Of the packet at hand.
  HandsetState* state_ = nullptr;
  std::int8_t device_ = 1;
  std::int64_t time_ns_ = 0;
  PacketPlace place_;
  std::vector<std::int32_t> events_;  // to follow the next record

  // Of the cell at hand, which changes seldom.
  CellIdentity coded_identity_;
  std::array<std::uint8_t, 9> identity_bytes_{};

  // Blocks that records borrow.
  LteMeasBlock lte_;
  std::array<LteNeighbour, 64> neighbours_;
  std::size_t neighbour_count_ = 0;
  LteMeasurements measurements_;
  CIE_SCell_Para gsm_cell_;
  CIE_GSM_SCell_Sys_Info gsm_serving_;
  CIE_GSM_Ded_Meas_Info gsm_measured_;
  CIE_GSM_NCell_Info gsm_neighbour_list_;
  std::array<GsmNeighbour, 6> gsm_neighbours_;
};

}  // namespace loom::recordings
