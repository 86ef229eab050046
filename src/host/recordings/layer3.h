#pragma once

#include <cstdint>

// How layer-3 messages of recordings are marked in records.
namespace loom::recordings {

inline constexpr std::int8_t kUp = 0;
inline constexpr std::int8_t kDown = 1;

inline constexpr std::int8_t kChannelBroadcast = 0;
inline constexpr std::int8_t kChannelCommon = 1;
inline constexpr std::int8_t kChannelDedicated = 2;
inline constexpr std::int8_t kChannelPaging = 3;
inline constexpr std::int8_t kChannelOther = 4;

inline constexpr std::int32_t kMessageBroadcast = 1010;
inline constexpr std::int32_t kMessageRrcDown = 2020;
inline constexpr std::int32_t kMessageRrcUp = 2021;
inline constexpr std::int32_t kMessageNasUp = 3005;
inline constexpr std::int32_t kMessageNasDown = 3006;
inline constexpr std::int32_t kMessageGsm = 12155;

// Events of config/events.tsv.
inline constexpr std::int32_t kNoEvent = -1;
inline constexpr std::int32_t kEventRrcRequest = 1201;
inline constexpr std::int32_t kEventRrcSetupComplete = 1202;
inline constexpr std::int32_t kEventRrcReject = 1203;
inline constexpr std::int32_t kEventRrcRelease = 1204;
inline constexpr std::int32_t kEventRrcReestablishment = 1205;
inline constexpr std::int32_t kEventHandover = 1301;
inline constexpr std::int32_t kEventHandoverDone = 1302;
inline constexpr std::int32_t kEventCellChange = 1401;
inline constexpr std::int32_t kEventToGsm = 1402;
inline constexpr std::int32_t kEventToLte = 1404;
inline constexpr std::int32_t kEventLocationUpdate = 1411;
inline constexpr std::int32_t kEventLocationUpdated = 1412;
inline constexpr std::int32_t kEventLocationRefused = 1413;
inline constexpr std::int32_t kEventRoutingUpdate = 1414;
inline constexpr std::int32_t kEventRoutingUpdated = 1415;
inline constexpr std::int32_t kEventRoutingRefused = 1416;
inline constexpr std::int32_t kEventTrackingUpdate = 1417;
inline constexpr std::int32_t kEventTrackingUpdated = 1418;
inline constexpr std::int32_t kEventTrackingRefused = 1419;
inline constexpr std::int32_t kEventAttach = 1501;
inline constexpr std::int32_t kEventAttached = 1502;
inline constexpr std::int32_t kEventAttachRefused = 1503;
inline constexpr std::int32_t kEventDetach = 1504;
inline constexpr std::int32_t kEventBearer = 1521;
inline constexpr std::int32_t kEventBearerActive = 1522;
inline constexpr std::int32_t kEventBearerRefused = 1523;
inline constexpr std::int32_t kEventBearerEnd = 1524;

}  // namespace loom::recordings
