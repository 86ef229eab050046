#include "host/recordings/gsm_messages.h"

#include <algorithm>
#include <array>

#include "host/recordings/bit_reader.h"
#include "host/recordings/layer3.h"

namespace loom::recordings {
namespace {

struct GsmType {
  std::uint8_t type;
  std::string_view name;
  std::int32_t event_id = kNoEvent;
  GsmRole role = GsmRole::kNone;
};

// clang-format off
constexpr GsmType kRadioResources[] = {
    {0x00, "SYSTEM INFORMATION TYPE 13"},
    {0x02, "SYSTEM INFORMATION TYPE 2BIS", kNoEvent, GsmRole::kNeighbourList},
    {0x03, "SYSTEM INFORMATION TYPE 2TER"},
    {0x04, "SYSTEM INFORMATION TYPE 9"},
    {0x05, "SYSTEM INFORMATION TYPE 5BIS", kNoEvent, GsmRole::kNeighbourList},
    {0x06, "SYSTEM INFORMATION TYPE 5TER", kNoEvent, GsmRole::kNeighbourList},
    {0x07, "SYSTEM INFORMATION TYPE 2QUATER"},
    {0x08, "RR-CELL CHANGE ORDER"},
    {0x09, "VGCS UPLINK GRANT"},
    {0x0A, "PARTIAL RELEASE"},
    {0x0D, "CHANNEL RELEASE"},
    {0x0E, "UPLINK RELEASE"},
    {0x0F, "PARTIAL RELEASE COMPLETE"},
    {0x10, "CHANNEL MODE MODIFY"},
    {0x11, "TALKER INDICATION"},
    {0x12, "RR STATUS"},
    {0x13, "CLASSMARK ENQUIRY"},
    {0x14, "FREQUENCY REDEFINITION"},
    {0x15, "MEASUREMENT REPORT", kNoEvent, GsmRole::kMeasurementReport},
    {0x16, "CLASSMARK CHANGE"},
    {0x17, "CHANNEL MODE MODIFY ACKNOWLEDGE"},
    {0x18, "SYSTEM INFORMATION TYPE 8"},
    {0x19, "SYSTEM INFORMATION TYPE 1"},
    {0x1A, "SYSTEM INFORMATION TYPE 2", kNoEvent, GsmRole::kNeighbourList},
    {0x1B, "SYSTEM INFORMATION TYPE 3", kNoEvent, GsmRole::kCellIdentity},
    {0x1C, "SYSTEM INFORMATION TYPE 4", kNoEvent, GsmRole::kAreaIdentity},
    {0x1D, "SYSTEM INFORMATION TYPE 5", kNoEvent, GsmRole::kNeighbourList},
    {0x1E, "SYSTEM INFORMATION TYPE 6", kNoEvent, GsmRole::kCellIdentity},
    {0x1F, "SYSTEM INFORMATION TYPE 7"},
    {0x20, "NOTIFICATION/NCH"},
    {0x21, "PAGING REQUEST TYPE 1"},
    {0x22, "PAGING REQUEST TYPE 2"},
    {0x23, "PDCH ASSIGNMENT COMMAND"},
    {0x24, "PAGING REQUEST TYPE 3"},
    {0x26, "NOTIFICATION/RESPONSE"},
    {0x27, "PAGING RESPONSE"},
    {0x28, "HANDOVER FAILURE"},
    {0x29, "ASSIGNMENT COMPLETE"},
    {0x2A, "UPLINK BUSY"},
    {0x2B, "HANDOVER COMMAND"},
    {0x2C, "HANDOVER COMPLETE"},
    {0x2D, "PHYSICAL INFORMATION"},
    {0x2E, "ASSIGNMENT COMMAND"},
    {0x2F, "ASSIGNMENT FAILURE"},
    {0x30, "CONFIGURATION CHANGE COMMAND"},
    {0x31, "CONFIGURATION CHANGE ACK."},
    {0x32, "CIPHERING MODE COMPLETE"},
    {0x33, "CONFIGURATION CHANGE REJECT"},
    {0x34, "GPRS SUSPENSION REQUEST"},
    {0x35, "CIPHERING MODE COMMAND"},
    {0x36, "EXTENDED MEASUREMENT REPORT"},
    {0x37, "EXTENDED MEASUREMENT ORDER"},
    {0x38, "APPLICATION INFORMATION"},
    {0x39, "IMMEDIATE ASSIGNMENT EXTENDED"},
    {0x3A, "IMMEDIATE ASSIGNMENT REJECT"},
    {0x3B, "ADDITIONAL ASSIGNMENT"},
    {0x3D, "SYSTEM INFORMATION TYPE 16"},
    {0x3E, "SYSTEM INFORMATION TYPE 17"},
    {0x3F, "IMMEDIATE ASSIGNMENT"},
    {0x40, "SYSTEM INFORMATION TYPE 18"},
    {0x41, "SYSTEM INFORMATION TYPE 19"},
    {0x42, "SYSTEM INFORMATION TYPE 20"},
    {0x46, "SYSTEM INFORMATION TYPE 21"},
    {0x48, "DTM ASSIGNMENT FAILURE"},
    {0x49, "DTM REJECT"},
    {0x4A, "DTM REQUEST"},
    {0x4B, "PACKET ASSIGNMENT"},
    {0x4C, "DTM ASSIGNMENT COMMAND"},
    {0x4D, "DTM INFORMATION"},
    {0x4E, "PACKET NOTIFICATION"},
    {0x60, "UTRAN CLASSMARK CHANGE"},
    {0x62, "CDMA2000 CLASSMARK CHANGE"},
    {0x63, "INTER SYSTEM TO UTRAN HANDOVER COMMAND"},
    {0x64, "INTER SYSTEM TO CDMA2000 HANDOVER COMMAND"},
    {0x6A, "EC-IMMEDIATE ASSIGNMENT TYPE 1"},
    {0xC0, "UTRAN CLASSMARK CHANGE/HANDOVER TO UTRAN COMMAND"},
};
constexpr GsmType kMobility[] = {
    {0x01, "IMSI DETACH INDICATION"},
    {0x02, "LOCATION UPDATING ACCEPT", kEventLocationUpdated},
    {0x04, "LOCATION UPDATING REJECT", kEventLocationRefused},
    {0x08, "LOCATION UPDATING REQUEST", kEventLocationUpdate},
    {0x11, "AUTHENTICATION REJECT"},
    {0x12, "AUTHENTICATION REQUEST"},
    {0x14, "AUTHENTICATION RESPONSE"},
    {0x18, "IDENTITY REQUEST"},
    {0x19, "IDENTITY RESPONSE"},
    {0x1A, "TMSI REALLOCATION COMMAND"},
    {0x1B, "TMSI REALLOCATION COMPLETE"},
    {0x1C, "AUTHENTICATION FAILURE"},
    {0x21, "CM SERVICE ACCEPT"},
    {0x22, "CM SERVICE REJECT"},
    {0x23, "CM SERVICE ABORT"},
    {0x24, "CM SERVICE REQUEST"},
    {0x25, "CM SERVICE PROMPT"},
    {0x28, "CM RE-ESTABLISHMENT REQUEST"},
    {0x29, "ABORT"},
    {0x30, "MM NULL"},
    {0x31, "MM STATUS"},
    {0x32, "MM INFORMATION"},
};
constexpr GsmType kPacketMobility[] = {
    {0x01, "ATTACH REQUEST", kEventAttach},
    {0x02, "ATTACH ACCEPT", kEventAttached},
    {0x03, "ATTACH COMPLETE"},
    {0x04, "ATTACH REJECT", kEventAttachRefused},
    {0x05, "DETACH REQUEST", kEventDetach},
    {0x06, "DETACH ACCEPT"},
    {0x08, "ROUTING AREA UPDATE REQUEST", kEventRoutingUpdate},
    {0x09, "ROUTING AREA UPDATE ACCEPT", kEventRoutingUpdated},
    {0x0A, "ROUTING AREA UPDATE COMPLETE"},
    {0x0B, "ROUTING AREA UPDATE REJECT", kEventRoutingRefused},
    {0x0C, "SERVICE REQUEST"},
    {0x0D, "SERVICE ACCEPT"},
    {0x0E, "SERVICE REJECT"},
    {0x10, "P-TMSI REALLOCATION COMMAND"},
    {0x11, "P-TMSI REALLOCATION COMPLETE"},
    {0x12, "AUTHENTICATION AND CIPHERING REQ"},
    {0x13, "AUTHENTICATION AND CIPHERING RESP"},
    {0x14, "AUTHENTICATION AND CIPHERING REJ"},
    {0x15, "IDENTITY REQUEST"},
    {0x16, "IDENTITY RESPONSE"},
    {0x1C, "AUTHENTICATION AND CIPHERING FAILURE"},
    {0x20, "GMM STATUS"},
    {0x21, "GMM INFORMATION"},
};
constexpr GsmType kCalls[] = {
    {0x01, "ALERTING"},
    {0x02, "CALL PROCEEDING"},
    {0x03, "PROGRESS"},
    {0x04, "CC-ESTABLISHMENT"},
    {0x05, "SETUP"},
    {0x06, "CC-ESTABLISHMENT CONFIRMED"},
    {0x07, "CONNECT"},
    {0x08, "CALL CONFIRMED"},
    {0x09, "START CC"},
    {0x0B, "RECALL"},
    {0x0E, "EMERGENCY SETUP"},
    {0x0F, "CONNECT ACKNOWLEDGE"},
    {0x10, "USER INFORMATION"},
    {0x13, "MODIFY REJECT"},
    {0x17, "MODIFY"},
    {0x18, "HOLD"},
    {0x19, "HOLD ACKNOWLEDGE"},
    {0x1A, "HOLD REJECT"},
    {0x1C, "RETRIEVE"},
    {0x1D, "RETRIEVE ACKNOWLEDGE"},
    {0x1E, "RETRIEVE REJECT"},
    {0x1F, "MODIFY COMPLETE"},
    {0x25, "DISCONNECT"},
    {0x2A, "RELEASE COMPLETE"},
    {0x2D, "RELEASE"},
    {0x31, "STOP DTMF"},
    {0x32, "STOP DTMF ACKNOWLEDGE"},
    {0x34, "STATUS ENQUIRY"},
    {0x35, "START DTMF"},
    {0x36, "START DTMF ACKNOWLEDGE"},
    {0x37, "START DTMF REJECT"},
    {0x39, "CONGESTION CONTROL"},
    {0x3A, "FACILITY"},
    {0x3D, "STATUS"},
    {0x3E, "NOTIFY"},
};
constexpr GsmType kSessions[] = {
    {0x41, "ACTIVATE PDP CONTEXT REQUEST"},
    {0x42, "ACTIVATE PDP CONTEXT ACCEPT"},
    {0x43, "ACTIVATE PDP CONTEXT REJECT"},
    {0x44, "REQUEST PDP CONTEXT ACTIVATION"},
    {0x45, "REQUEST PDP CONTEXT ACTIVATION REJ."},
    {0x46, "DEACTIVATE PDP CONTEXT REQUEST"},
    {0x47, "DEACTIVATE PDP CONTEXT ACCEPT"},
    {0x48, "MODIFY PDP CONTEXT REQUEST"},
    {0x49, "MODIFY PDP CONTEXT ACCEPT"},
    {0x4A, "MODIFY PDP CONTEXT REQUEST"},
    {0x4B, "MODIFY PDP CONTEXT ACCEPT"},
    {0x4C, "MODIFY PDP CONTEXT REJECT"},
    {0x4D, "ACTIVATE SECONDARY PDP CONTEXT REQUEST"},
    {0x4E, "ACTIVATE SECONDARY PDP CONTEXT ACCEPT"},
    {0x4F, "ACTIVATE SECONDARY PDP CONTEXT REJECT"},
    {0x55, "SM STATUS"},
    {0x56, "ACTIVATE MBMS CONTEXT REQUEST"},
    {0x57, "ACTIVATE MBMS CONTEXT ACCEPT"},
    {0x58, "ACTIVATE MBMS CONTEXT REJECT"},
    {0x59, "REQUEST MBMS CONTEXT ACTIVATION"},
    {0x5A, "REQUEST MBMS CONTEXT ACTIVATION REJECT"},
    {0x5B, "REQUEST SECONDARY PDP CONTEXT ACTIVATION"},
    {0x5C, "REQUEST SECONDARY PDP CONTEXT ACTIVATION REJECT"},
    {0x5D, "NOTIFICATION"},
};
constexpr GsmType kShortMessages[] = {
    {0x01, "CP-DATA"},
    {0x04, "CP-ACK"},
    {0x10, "CP-ERROR"},
};
constexpr GsmType kServices[] = {
    {0x2A, "RELEASE COMPLETE"},
    {0x3A, "FACILITY"},
    {0x3B, "REGISTER"},
};
// clang-format on

struct Protocol {
  std::uint8_t discriminator;
  std::span<const GsmType> types;
  std::uint8_t type_bits;  // of the type byte; the others number the messages
};
constexpr std::uint8_t kRadioResourcesDiscriminator = 6;
const std::array<Protocol, 7> kProtocols{{{3, kCalls, 0x3F},
                                          {5, kMobility, 0x3F},
                                          {kRadioResourcesDiscriminator, kRadioResources, 0xFF},
                                          {8, kPacketMobility, 0xFF},
                                          {9, kShortMessages, 0xFF},
                                          {10, kSessions, 0xFF},
                                          {11, kServices, 0x3F}}};

constexpr std::size_t kMessageHeaderBytes = 2;  // discriminator, type
constexpr std::size_t kAreaBytes = 5;           // MCC and MNC (3), LAC (2)

// Location area identification (TS 24.008, 10.5.1.3).
void ReadArea(std::span<const std::byte> bytes, CellIdentity& identity) {
  const auto low = [&](std::size_t at) { return ByteAt(bytes, at) & 0x0F; };
  const auto high = [&](std::size_t at) { return ByteAt(bytes, at) >> 4; };
  identity.mcc = low(0) * 100 + high(0) * 10 + low(1);
  identity.mnc_digits = high(1) == 0x0F ? 2 : 3;
  identity.mnc = low(2) * 10 + high(2);
  if (identity.mnc_digits == 3) identity.mnc = identity.mnc * 10 + high(1);
  identity.area = ByteAt(bytes, 3) << 8 | ByteAt(bytes, 4);
}

}  // namespace

GsmMessage IdentifyGsm(std::span<const std::byte> message) {
  if (message.size() < kMessageHeaderBytes) return {};
  const std::uint8_t discriminator = ByteAt(message, 0) & 0x0F;
  for (const Protocol& protocol : kProtocols) {
    if (protocol.discriminator != discriminator) continue;
    const auto type = static_cast<std::uint8_t>(ByteAt(message, 1) & protocol.type_bits);
    for (const GsmType& known : protocol.types)
      if (known.type == type)
        return {known.name, known.event_id, known.role, type, discriminator == kRadioResourcesDiscriminator};
  }
  return {};
}

std::optional<CellIdentity> ReadGsmIdentity(const GsmMessage& kind, std::span<const std::byte> message) {
  const std::size_t cell_bytes = kind.role == GsmRole::kCellIdentity ? 2 : 0;
  if (message.size() < kMessageHeaderBytes + cell_bytes + kAreaBytes) return std::nullopt;
  CellIdentity identity;
  if (cell_bytes > 0)
    identity.cell = ByteAt(message, kMessageHeaderBytes) << 8 | ByteAt(message, kMessageHeaderBytes + 1);
  ReadArea(message.subspan(kMessageHeaderBytes + cell_bytes, kAreaBytes), identity);
  return identity;
}

std::optional<GsmMeasurementReport> ReadGsmReport(std::span<const std::byte> message) {
  if (message.size() < kMessageHeaderBytes) return std::nullopt;
  BitReader bits(message.subspan(kMessageHeaderBytes));
  bits.Skip(2);  // BA-USED, DTX-USED
  GsmMeasurementReport report;
  report.rx_lev = static_cast<std::uint8_t>(bits.Bits(6));
  bits.Skip(1);  // 3G-BA-USED
  report.is_valid = !bits.Bit();
  bits.Skip(6);  // RXLEV-SUB
  bits.Skip(1);
  report.rx_qual_full = static_cast<std::uint8_t>(bits.Bits(3));
  report.rx_qual_sub = static_cast<std::uint8_t>(bits.Bits(3));
  const std::uint32_t count = bits.Bits(3);
  constexpr std::uint32_t kNoInformation = 7;
  if (count < kNoInformation) report.neighbour_count = static_cast<std::uint8_t>(count);
  for (std::size_t i = 0; i < report.neighbour_count; ++i) {
    GsmReportedCell& cell = report.neighbours[i];
    cell.rx_lev = static_cast<std::uint8_t>(bits.Bits(6));
    cell.list_index = static_cast<std::uint8_t>(bits.Bits(5));
    cell.bsic = static_cast<std::uint8_t>(bits.Bits(6));
  }
  return bits.IsSound() ? std::optional(report) : std::nullopt;
}

}  // namespace loom::recordings
