#pragma once

#include <cstddef>
#include <cstdint>
#include <span>

namespace loom::recordings {

// How the packets of a capture begin.
enum class LinkType : std::uint8_t { kEthernet, kRawIp, kLinuxCooked, kLinuxCooked2, kOther };

enum class DatagramResult : std::uint8_t {
  kFound,
  kOther,  // no UDP datagram of the port, or a piece of one
  kCut,    // shorter than its headers say
};

// The payload of the UDP datagram to or from `port` that a captured packet holds. IPv4 and IPv6, VLAN tags passed over.
DatagramResult FindDatagram(LinkType link, std::span<const std::byte> packet, std::uint16_t port,
                            std::span<const std::byte>& payload);

}  // namespace loom::recordings
