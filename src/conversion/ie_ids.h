#pragma once

#include <cstdint>

// Information elements that more than one converter writes or reads.
namespace loom::ie {

inline constexpr std::int32_t kMessageId = 1;
inline constexpr std::int32_t kNetworkModeSelection = 2;  // "RecordTime": selects kNetworkMode
inline constexpr std::int32_t kRecordId = 3;
inline constexpr std::int32_t kRecordText = 4;
inline constexpr std::int32_t kModelCode = 8;
inline constexpr std::int32_t kRecordKind = 9;
inline constexpr std::int32_t kEventId = 10;
inline constexpr std::int32_t kEventName = 20;
inline constexpr std::int32_t kL3MessageId = 33;
inline constexpr std::int32_t kL3Name = 35;
inline constexpr std::int32_t kL3Length = 36;
inline constexpr std::int32_t kL3Bytes = 37;
inline constexpr std::int32_t kL3Text = 38;
inline constexpr std::int32_t kL3Channel = 39;
inline constexpr std::int32_t kTransportChannelCount = 200;
inline constexpr std::int32_t kRlcCount = 491;
inline constexpr std::int32_t kPdcpCount = 492;
inline constexpr std::int32_t kPccpchRscp = 499;
inline constexpr std::int32_t kDpchRscpCount = 519;
inline constexpr std::int32_t kTransportChannelBler = 1034;  // of channel 1
inline constexpr std::int32_t kLongitude = 2379;
inline constexpr std::int32_t kLatitude = 2380;
inline constexpr std::int32_t kTravelStep = 2381;
inline constexpr std::int32_t kTimeStamp = 2386;
inline constexpr std::int32_t kCellDistance = 2387;
inline constexpr std::int32_t kTimeslotDpchRscp = 5407;  // of timeslot 2
inline constexpr std::int32_t kTimeslot0Value = 5412;
inline constexpr std::int32_t kNetworkMode = 26771;
inline constexpr std::int32_t kFileMarkText = 32284;

}  // namespace loom::ie
