#include "host/simulation/signalling.h"

#include <array>

#include "host/simulation/random.h"

namespace loom::simulation {
namespace {

constexpr std::int32_t kMsgBroadcast = 1010;
constexpr std::int32_t kMsgDown = 2020;
constexpr std::int32_t kMsgUp = 2021;
constexpr std::int32_t kMsgNasUp = 3005;
constexpr std::int32_t kMsgNasDown = 3006;
constexpr std::int32_t kMsgGsm = 12155;

constexpr std::string_view kConnectionSetupLines =
    R"({
message rrcConnectionSetup : r4 :
{
rrc-TransactionIdentifier 1,
ul-AddReconfTransChInfoList
{
{
ul-TransportChannelType dch,
transportChannelIdentity 24,
crc-Size crc16
}
},
dl-AddReconfTransChInfoList
{
{
dl-TransportChannelType dch,
dl-transportChannelIdentity 24,
tfs-SignallingMode sameAsULTrCH
}
}
}
}
)";

constexpr std::string_view kBearerSetupLines =
    R"({
message radioBearerSetup : r4 :
{
rrc-TransactionIdentifier 2,
ul-AddReconfTransChInfoList
{
{
ul-TransportChannelType dch,
transportChannelIdentity 1,
crc-Size crc12
},
{
ul-TransportChannelType dch,
transportChannelIdentity 2,
crc-Size crc0
}
},
dl-AddReconfTransChInfoList
{
{
dl-TransportChannelType dch,
dl-transportChannelIdentity 1,
tfs-SignallingMode sameAsULTrCH
},
{
dl-TransportChannelType dch,
dl-transportChannelIdentity 2,
tfs-SignallingMode sameAsULTrCH
},
{
dl-TransportChannelType dch,
dl-transportChannelIdentity 5,
crc-Size crc8
}
}
}
}
)";

// clang-format off
constexpr Signal kTdCallSetup[] = {
    {"RRC Connection Request",          kMsgUp,      0, 1, 1201},
    {"RRC Connection Setup",            kMsgDown,    1, 1, -1, kConnectionSetupLines},
    {"RRC Connection Setup Complete",   kMsgUp,      0, 2, 1202},
    {"CM Service Request",              kMsgNasUp,   0, 2, 1101},
    {"Setup",                           kMsgNasUp,   0, 2, 1102},
    {"Radio Bearer Setup (DL-DCCH)",    kMsgDown,    1, 2, 1211, kBearerSetupLines},
    {"Radio Bearer Setup Complete",     kMsgUp,      0, 2, -1},
    {"Alerting",                        kMsgNasDown, 1, 2, 1103},
    {"Connect",                         kMsgNasDown, 1, 2, 1104},
};
constexpr Signal kTdCallEnd[] = {
    {"Disconnect",                      kMsgNasUp,   0, 2, 1105},
    {"Release",                         kMsgNasDown, 1, 2, -1},
    {"RRC Connection Release",          kMsgDown,    1, 2, 1204},
};
constexpr Signal kTdCellChange[] = {
    {"",                                -1,          0, 0, 1401},
};
constexpr Signal kTdHandover[] = {
    {"Measurement Report",              kMsgUp,      0, 2, -1},
    {"Physical Channel Reconfiguration", kMsgDown,   1, 2, 1311},
    {"Physical Channel Reconfiguration Complete", kMsgUp, 0, 2, 1312},
};
constexpr Signal kTdSystemChange[] = {
    {"Location Updating Request",       kMsgNasUp,   0, 2, 1403},
    {"Location Updating Accept",        kMsgNasDown, 1, 2, 1412},
};
constexpr Signal kTdBroadcast[] = {
    {"System Information Block Type 3", kMsgBroadcast, 1, 0, -1},
};

constexpr Signal kGsmCallSetup[] = {
    {"CHANNEL REQUEST",                 kMsgGsm,     0, 1, 1101},
    {"IMMEDIATE ASSIGNMENT",            kMsgGsm,     1, 1, -1},
    {"SETUP",                           kMsgNasUp,   0, 2, 1102},
    {"ASSIGNMENT COMMAND",              kMsgGsm,     1, 2, -1},
    {"ALERTING",                        kMsgNasDown, 1, 2, 1103},
    {"CONNECT",                         kMsgNasDown, 1, 2, 1104},
};
constexpr Signal kGsmCallEnd[] = {
    {"DISCONNECT",                      kMsgNasUp,   0, 2, 1105},
    {"CHANNEL RELEASE",                 kMsgGsm,     1, 2, -1},
};
constexpr Signal kGsmCellChange[] = {
    {"",                                -1,          0, 0, 1401},
};
constexpr Signal kGsmHandover[] = {
    {"HANDOVER COMMAND",                kMsgGsm,     1, 2, 1301},
    {"HANDOVER COMPLETE",               kMsgGsm,     0, 2, 1302},
};
constexpr Signal kGsmSystemChange[] = {
    {"HANDOVER TO GSM COMMAND",         kMsgDown,    1, 2, 1321},
    {"LOCATION UPDATING REQUEST",       kMsgNasUp,   0, 2, 1402},
};
constexpr Signal kGsmBroadcast[] = {
    {"SYSTEM INFORMATION TYPE 3",       kMsgGsm,     1, 0, -1},
    {"SYSTEM INFORMATION TYPE 4",       kMsgGsm,     1, 0, -1},
};

constexpr Signal kLteCallSetup[] = {
    {"RRCConnectionRequest",            kMsgUp,      0, 1, 1201},
    {"RRCConnectionSetup",              kMsgDown,    1, 1, -1},
    {"RRCConnectionSetupComplete",      kMsgUp,      0, 2, 1202},
    {"Attach request",                  kMsgNasUp,   0, 2, 1501},
    {"RRCConnectionReconfiguration",    kMsgDown,    1, 2, -1},
    {"Attach accept",                   kMsgNasDown, 1, 2, 1502},
    {"Activate default EPS bearer context accept", kMsgNasUp, 0, 2, 1522},
};
constexpr Signal kLteCallEnd[] = {
    {"Deactivate EPS bearer context request", kMsgNasDown, 1, 2, 1524},
    {"RRCConnectionRelease",            kMsgDown,    1, 2, 1204},
};
constexpr Signal kLteCellChange[] = {
    {"Tracking area update request",    kMsgNasUp,   0, 2, 1417},
    {"Tracking area update accept",     kMsgNasDown, 1, 2, 1418},
};
constexpr Signal kLteHandover[] = {
    {"MeasurementReport",               kMsgUp,      0, 2, 1301},
    {"RRCConnectionReconfiguration",    kMsgDown,    1, 2, -1},
    {"RRCConnectionReconfigurationComplete", kMsgUp, 0, 2, 1302},
};
constexpr Signal kLteBroadcast[] = {
    {"SystemInformationBlockType1",     kMsgBroadcast, 1, 0, -1},
};
// clang-format on

constexpr std::size_t kLongestMessage = 64;

}  // namespace

const Procedures kTdProcedures{kTdCallSetup, kTdCallEnd, kTdCellChange, kTdHandover, kTdSystemChange, kTdBroadcast};
const Procedures kGsmProcedures{kGsmCallSetup, kGsmCallEnd,      kGsmCellChange,
                                kGsmHandover,  kGsmSystemChange, kGsmBroadcast};
const Procedures kLteProcedures{kLteCallSetup, kLteCallEnd, kLteCellChange, kLteHandover, {}, kLteBroadcast};

std::span<const std::byte> MessageBytes(const Signal& signal) {
  static const auto table = [] {
    Random random(7);
    std::array<std::byte, 4 * kLongestMessage> bytes{};
    for (std::byte& byte : bytes) byte = static_cast<std::byte>(random.Next());
    return bytes;
  }();
  std::size_t hash = 0;
  for (const char c : signal.message) hash = hash * 31 + static_cast<unsigned char>(c);
  return std::span(table).subspan(hash % (3 * kLongestMessage), 12 + hash % (kLongestMessage - 12));
}

}  // namespace loom::simulation
