#include "host/recordings/network_headers.h"

#include "platform/byte_reader.h"

namespace loom::recordings {
namespace {

constexpr std::uint16_t kEtherIpv4 = 0x0800;
constexpr std::uint16_t kEtherIpv6 = 0x86DD;
constexpr std::uint16_t kEtherVlan = 0x8100;
constexpr std::uint16_t kEtherServiceVlan = 0x88A8;
constexpr std::uint8_t kUdp = 17;
constexpr std::size_t kIpv4Bytes = 20;
constexpr std::size_t kIpv6Bytes = 40;
constexpr std::size_t kUdpBytes = 8;

// What an IP packet carries; `protocol` 0 for a piece of a packet that does not begin it.
struct Carried {
  std::uint8_t protocol = 0;
  std::span<const std::byte> bytes;
};

// Trailing padding of the link goes with the packet's own length; a shorter packet throws.
Carried ReadIpv4(ByteReader in) {
  const std::uint8_t first = in.U8();
  in.Skip(1);
  const std::size_t length = in.U16();
  in.Skip(2);
  const std::uint16_t fragment = in.U16();
  in.Skip(1);
  const std::uint8_t protocol = in.U8();
  in.Skip(10);
  const std::size_t header_bytes = std::size_t{first & 0x0FU} * 4;
  if (header_bytes < kIpv4Bytes || length < header_bytes) return {};
  in.Skip(header_bytes - kIpv4Bytes);
  const bool is_fragment = (fragment & 0x3FFF) != 0;  // more to come, or an offset
  return {is_fragment ? std::uint8_t{0} : protocol, in.Bytes(length - header_bytes)};
}

bool IsExtension(std::uint8_t protocol) { return protocol == 0 || protocol == 43 || protocol == 60; }

Carried ReadIpv6(ByteReader in) {
  in.Skip(4);
  const std::size_t length = in.U16();
  std::uint8_t protocol = in.U8();
  in.Skip(kIpv6Bytes - 7);
  ByteReader rest = in.Part(length);
  while (IsExtension(protocol)) {
    protocol = rest.U8();
    rest.Skip(std::size_t{rest.U8()} * 8 + 6);
  }
  return {protocol, rest.Bytes(rest.Remaining())};
}

Carried ReadIp(ByteReader in) {
  ByteReader peek = in;
  switch (peek.U8() >> 4) {
    case 4:
      return ReadIpv4(in);
    case 6:
      return ReadIpv6(in);
    default:
      return {};
  }
}

Carried ReadEther(ByteReader in, std::uint16_t type) {
  while (type == kEtherVlan || type == kEtherServiceVlan) {
    in.Skip(2);
    type = in.U16();
  }
  return type == kEtherIpv4 || type == kEtherIpv6 ? ReadIp(in) : Carried{};
}

Carried ReadLink(LinkType link, ByteReader in) {
  switch (link) {
    case LinkType::kEthernet: {
      in.Skip(12);
      const std::uint16_t type = in.U16();
      return ReadEther(in, type);
    }
    case LinkType::kLinuxCooked: {
      in.Skip(14);
      const std::uint16_t type = in.U16();
      return ReadEther(in, type);
    }
    case LinkType::kLinuxCooked2: {
      const std::uint16_t type = in.U16();
      in.Skip(18);
      return ReadEther(in, type);
    }
    case LinkType::kRawIp:
      return ReadIp(in);
    case LinkType::kOther:
      break;
  }
  return {};
}

}  // namespace

DatagramResult FindDatagram(LinkType link, std::span<const std::byte> packet, std::uint16_t port,
                            std::span<const std::byte>& payload) {
  try {
    const Carried carried = ReadLink(link, ByteReader(packet, 0, ByteOrder::kBig));
    if (carried.protocol != kUdp) return DatagramResult::kOther;
    ByteReader udp(carried.bytes, 0, ByteOrder::kBig);
    const std::uint16_t from = udp.U16();
    const std::uint16_t to = udp.U16();
    const std::size_t length = udp.U16();
    udp.Skip(2);
    if (from != port && to != port) return DatagramResult::kOther;
    if (length < kUdpBytes) return DatagramResult::kCut;
    payload = udp.Bytes(length - kUdpBytes);
    return DatagramResult::kFound;
  } catch (const FormatError&) {
    return DatagramResult::kCut;
  }
}

}  // namespace loom::recordings
