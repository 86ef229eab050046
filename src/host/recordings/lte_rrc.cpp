#include "host/recordings/lte_rrc.h"

#include <array>

#include "host/recordings/bit_reader.h"
#include "host/recordings/layer3.h"

namespace loom::recordings {
namespace {

// clang-format off
constexpr std::array<LteRrcChannelKind, kLteRrcChannels> kChannels{{
    // GSMTAP, channel, direction, message id
    {4, kChannelBroadcast, kDown, kMessageBroadcast},  // BCCH-BCH
    {5, kChannelBroadcast, kDown, kMessageBroadcast},  // BCCH-DL-SCH
    {7, kChannelOther,     kDown, kMessageRrcDown},    // MCCH
    {6, kChannelPaging,    kDown, kMessageRrcDown},    // PCCH
    {0, kChannelCommon,    kDown, kMessageRrcDown},    // DL-CCCH
    {1, kChannelDedicated, kDown, kMessageRrcDown},    // DL-DCCH
    {2, kChannelCommon,    kUp,   kMessageRrcUp},      // UL-CCCH
    {3, kChannelDedicated, kUp,   kMessageRrcUp},      // UL-DCCH
}};

constexpr RrcMessage kMasterInformationBlock{"MasterInformationBlock"};
constexpr RrcMessage kBroadcast[] = {
    {"SystemInformation"},
    {"SystemInformationBlockType1", kNoEvent, RrcRole::kSystemInformation1},
};
constexpr RrcMessage kMulticast[] = {{"MBSFNAreaConfiguration-r9"}};
constexpr RrcMessage kMulticastLater[] = {{"MBMSCountingRequest-r10"}};
constexpr RrcMessage kPaging[] = {{"Paging"}};
constexpr RrcMessage kDownCommon[] = {
    {"RRCConnectionReestablishment"},
    {"RRCConnectionReestablishmentReject", kNoEvent, RrcRole::kRelease},
    {"RRCConnectionReject", kEventRrcReject, RrcRole::kRelease},
    {"RRCConnectionSetup"},
};
constexpr RrcMessage kDownCommonLater[] = {{"RRCEarlyDataComplete-r15"}};
constexpr RrcMessage kDownDedicated[] = {
    {"CSFBParametersResponseCDMA2000"},
    {"DLInformationTransfer"},
    {"HandoverFromEUTRAPreparationRequest"},
    {"MobilityFromEUTRACommand"},
    {"RRCConnectionReconfiguration", kNoEvent, RrcRole::kReconfigure},
    {"RRCConnectionRelease", kEventRrcRelease, RrcRole::kRelease},
    {"SecurityModeCommand"},
    {"UECapabilityEnquiry"},
    {"CounterCheck"},
    {"UEInformationRequest-r9"},
    {"LoggedMeasurementConfiguration-r10"},
    {"RNReconfiguration-r10"},
    {"RRCConnectionResume-r13"},
    {"DLDedicatedMessageSegment-r16"},
};
constexpr RrcMessage kUpCommon[] = {
    {"RRCConnectionReestablishmentRequest", kEventRrcReestablishment},
    {"RRCConnectionRequest", kEventRrcRequest, RrcRole::kConnect},
};
constexpr RrcMessage kUpCommonLater[] = {{"RRCConnectionResumeRequest-r13", kNoEvent, RrcRole::kConnect}};
constexpr RrcMessage kUpDedicated[] = {
    {"CSFBParametersRequestCDMA2000"},
    {"MeasurementReport", kNoEvent, RrcRole::kMeasurementReport},
    {"RRCConnectionReconfigurationComplete", kNoEvent, RrcRole::kReconfigured},
    {"RRCConnectionReestablishmentComplete", kNoEvent, RrcRole::kConnect},
    {"RRCConnectionSetupComplete", kEventRrcSetupComplete, RrcRole::kConnect},
    {"SecurityModeComplete"},
    {"SecurityModeFailure"},
    {"UECapabilityInformation"},
    {"ULHandoverPreparationTransfer"},
    {"ULInformationTransfer"},
    {"CounterCheckResponse"},
    {"UEInformationResponse-r9"},
    {"ProximityIndication-r9"},
    {"RNReconfigurationComplete-r10"},
    {"MBMSCountingResponse-r10"},
    {"InterFreqRSTDMeasurementIndication-r10"},
};
constexpr RrcMessage kUpDedicatedLater[] = {
    {"UEAssistanceInformation-r11"},
    {"InDeviceCoexIndication-r11"},
    {"MBMSInterestIndication-r11"},
    {"SCGFailureInformation-r12"},
    {"SidelinkUEInformation-r12"},
    {"WLANConnectionStatusReport-r13"},
    {"RRCConnectionResumeComplete-r13", kNoEvent, RrcRole::kConnect},
    {"ULInformationTransferMRDC-r15"},
    {"SCGFailureInformationNR-r15"},
    {"MeasReportAppLayer-r15"},
    {"FailureInformation-r15"},
    {"ULDedicatedMessageSegment-r16"},
    {"PURConfigurationRequest-r16"},
    {"FailureInformation-r16"},
    {"MCGFailureInformation-r16"},
    {"ULInformationTransferIRAT-r16"},
};
// clang-format on

// A message type: one bit, 0 for the first set of messages, then the index in it; 1 for the later set, which has a bit
// of the same kind and an index of its own.
struct MessageSet {
  std::span<const RrcMessage> messages;
  unsigned index_bits = 0;
  std::span<const RrcMessage> later{};
  unsigned later_index_bits = 0;
};
const std::array<MessageSet, kLteRrcChannels> kMessageSets{{
    {},
    {kBroadcast, 1},
    {kMulticast, 0, kMulticastLater, 0},
    {kPaging, 0},
    {kDownCommon, 2, kDownCommonLater, 2},
    {kDownDedicated, 4},
    {kUpCommon, 1, kUpCommonLater, 2},
    {kUpDedicated, 4, kUpDedicatedLater, 4},
}};

RrcMessage At(std::span<const RrcMessage> messages, std::size_t index) {
  return index < messages.size() ? messages[index] : RrcMessage{};
}

// One entry of measResultListEUTRA. False when something in it is not read, so that nothing behind it can be.
bool ReadNeighbour(BitReader& bits, LteReportedCell& cell) {
  const bool has_global_identity = bits.Bit();
  cell.physical_cell_id = static_cast<std::uint16_t>(bits.Bits(9));
  if (has_global_identity) return false;
  const bool is_extended = bits.Bit();
  const bool has_rsrp = bits.Bit();
  const bool has_rsrq = bits.Bit();
  if (has_rsrp) cell.rsrp = static_cast<std::uint8_t>(bits.Bits(7));
  if (has_rsrq) cell.rsrq = static_cast<std::uint8_t>(bits.Bits(6));
  return !is_extended;
}

void ReadNeighbours(BitReader& bits, LteMeasurementReport& report) {
  const bool is_later_list = bits.Bit();
  const std::uint32_t kind = bits.Bits(2);
  constexpr std::uint32_t kEutra = 0;
  if (is_later_list || kind != kEutra) return;
  const std::uint32_t count = bits.Bits(3) + 1;
  for (std::uint32_t i = 0; i < count; ++i) {
    LteReportedCell cell;
    const bool may_go_on = ReadNeighbour(bits, cell);
    if (!bits.IsSound()) return;
    report.neighbours.push_back(cell);
    if (!may_go_on) {
      report.is_read_in_part = i + 1 < count;
      return;
    }
  }
}

}  // namespace

const LteRrcChannelKind& KindOf(LteRrcChannel channel) { return kChannels[static_cast<std::size_t>(channel)]; }

std::optional<LteRrcChannel> LteRrcChannelOfGsmtap(std::uint8_t sub_type) {
  for (std::size_t channel = 0; channel < kChannels.size(); ++channel)
    if (kChannels[channel].gsmtap_sub_type == sub_type) return static_cast<LteRrcChannel>(channel);
  return std::nullopt;
}

RrcMessage IdentifyLteRrc(LteRrcChannel channel, std::span<const std::byte> message) {
  if (message.empty()) return {};
  if (channel == LteRrcChannel::kBcchBch) return kMasterInformationBlock;
  const MessageSet& set = kMessageSets[static_cast<std::size_t>(channel)];
  BitReader bits(message);
  if (!bits.Bit()) return At(set.messages, bits.Bits(set.index_bits));
  if (bits.Bit() || set.later.empty()) return {};
  return At(set.later, bits.Bits(set.later_index_bits));
}

std::optional<LteMeasurementReport> ReadMeasurementReport(std::span<const std::byte> message) {
  BitReader bits(message);
  bits.Skip(5);                                              // message type
  if (bits.Bit() || bits.Bits(3) != 0) return std::nullopt;  // criticalExtensions: c1, r8
  bits.Skip(1);                                              // nonCriticalExtension
  bits.Skip(1);                                              // extension of measResults
  const bool has_neighbours = bits.Bit();
  bits.Skip(5);  // measId
  LteMeasurementReport report;
  report.rsrp = static_cast<std::uint8_t>(bits.Bits(7));
  report.rsrq = static_cast<std::uint8_t>(bits.Bits(6));
  if (!bits.IsSound()) return std::nullopt;
  if (has_neighbours) ReadNeighbours(bits, report);
  return report;
}

std::optional<CellIdentity> ReadSystemInformation1(std::span<const std::byte> message) {
  BitReader bits(message);
  bits.Skip(2);  // message type
  bits.Skip(3);  // p-Max, tdd-Config, nonCriticalExtension
  bits.Skip(1);  // csg-Identity
  const std::uint32_t networks = bits.Bits(3) + 1;
  CellIdentity identity;
  std::int32_t mcc = -1;
  for (std::uint32_t i = 0; i < networks; ++i) {
    if (bits.Bit()) {
      mcc = 0;
      for (int digit = 0; digit < 3; ++digit) mcc = mcc * 10 + static_cast<std::int32_t>(bits.Bits(4));
    }
    const std::int32_t digits = bits.Bit() ? 3 : 2;
    std::int32_t mnc = 0;
    for (std::int32_t digit = 0; digit < digits; ++digit) mnc = mnc * 10 + static_cast<std::int32_t>(bits.Bits(4));
    bits.Skip(1);  // cellReservedForOperatorUse
    if (i > 0) continue;
    identity.mcc = mcc;
    identity.mnc = mnc;
    identity.mnc_digits = digits;
  }
  identity.area = static_cast<std::int32_t>(bits.Bits(16));
  identity.cell = static_cast<std::int32_t>(bits.Bits(28));
  return bits.IsSound() ? std::optional(identity) : std::nullopt;
}

Mobility ReadMobility(std::span<const std::byte> message) {
  BitReader bits(message);
  bits.Skip(5);                                    // message type
  bits.Skip(2);                                    // rrc-TransactionIdentifier
  if (bits.Bit() || bits.Bits(3) != 0) return {};  // criticalExtensions: c1, r8
  const bool has_measurements = bits.Bit();
  Mobility mobility;
  mobility.is_handover = bits.Bit();
  if (!mobility.is_handover || has_measurements) return mobility;
  bits.Skip(4);  // dedicatedInfoNASList, radioResourceConfigDedicated, securityConfigHO, nonCriticalExtension
  bits.Skip(5);  // extension; carrierFreq, carrierBandwidth, additionalSpectrumEmission, rach-ConfigDedicated
  const auto cell = static_cast<std::uint16_t>(bits.Bits(9));
  if (bits.IsSound()) mobility.target_cell_id = cell;
  return mobility;
}

}  // namespace loom::recordings
