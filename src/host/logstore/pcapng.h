#pragma once

#include <cstddef>
#include <cstdint>

// The part of the pcapng container (draft-ietf-opsawg-pcapng) that logs use. docs/log-format.md has the grammar.
namespace loom::pcapng {

inline constexpr std::uint32_t kSectionHeader = 0x0A0D0D0A;  // reads the same in either byte order
inline constexpr std::uint32_t kInterfaceDescription = 1;
inline constexpr std::uint32_t kInterfaceStatistics = 5;
inline constexpr std::uint32_t kEnhancedPacket = 6;
inline constexpr std::uint32_t kCustomDropped = 0x40000BAD;  // a custom block that tools drop when they rewrite a file

inline constexpr std::uint32_t kByteOrderMagic = 0x1A2B3C4D;
inline constexpr std::uint32_t kSwappedMagic = 0x4D3C2B1A;

inline constexpr std::uint16_t kOptionEnd = 0;
inline constexpr std::uint16_t kOptionCustomText = 2988;   // a custom string that tools carry along
inline constexpr std::uint16_t kOptionTimeResolution = 9;  // of an interface: 10^-n, or 2^-n with the top bit set
inline constexpr std::uint16_t kOptionStartTime = 2;       // of the statistics
inline constexpr std::uint16_t kOptionEndTime = 3;
inline constexpr std::uint16_t kOptionReceived = 4;

inline constexpr std::uint32_t kEnterpriseNumber = 32473;  // reserved for documentation by RFC 5612
inline constexpr std::uint32_t kTimeIndex = 1;             // what a custom block of that number holds
inline constexpr std::uint16_t kLinkTypeUser0 = 147;
inline constexpr std::uint8_t kNanoseconds = 9;

inline constexpr std::uint32_t kBlockOverhead = 12;         // type, length, length
inline constexpr std::uint32_t kPacketHeader = 20;          // interface, time stamp (2 x 32), captured, original length
inline constexpr std::uint32_t kMaxBlockBytes = 16U << 20;  // what capture tools take for a damaged length
inline constexpr std::uint32_t kMaxRecordBytes = 262'144;   // the longest packet that capture tools read

}  // namespace loom::pcapng
