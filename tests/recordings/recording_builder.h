#pragma once

#include <cstddef>
#include <cstdint>
#include <fstream>
#include <span>
#include <string>
#include <vector>

#include "host/recordings/frame_checksum.h"
#include "platform/byte_reader.h"

namespace loom::test {

// 2024-05-17 01:30:00 UTC, seconds since 1970.
inline constexpr double kStart_s = 1'715'909'400.0;

// Builds recordings frame by frame.
class RecordingBuilder {
 public:
  using Bytes = std::vector<std::byte>;

  static std::uint64_t Stamp(double time_s) {
    const double ticks = (time_s - 315'964'800.0) * 800.0;
    const auto whole = static_cast<std::uint64_t>(ticks);
    return whole << 16 | static_cast<std::uint64_t>((ticks - static_cast<double>(whole)) * 49'152.0);
  }
  static Bytes Packet(std::uint16_t code, double time_s, std::span<const std::byte> body) {
    Bytes packet;
    ByteWriter out(packet);
    const auto length = static_cast<std::uint16_t>(12 + body.size());
    out.U16(0x10);
    out.U16(length);
    out.U16(length);
    out.U16(code);
    out.U64(Stamp(time_s));
    out.Bytes(body);
    return packet;
  }

  RecordingBuilder& Frame(Bytes payload) {
    const std::uint16_t checksum = recordings::FrameChecksum(payload);
    ByteWriter(payload).U16(checksum);
    for (const std::byte byte : payload) {
      const bool is_escaped = byte == std::byte{0x7D} || byte == std::byte{0x7E};
      if (is_escaped) bytes_.push_back(std::byte{0x7D});
      bytes_.push_back(is_escaped ? byte ^ std::byte{0x20} : byte);
    }
    return Raw("\x7E");
  }
  RecordingBuilder& Raw(std::string_view bytes) {
    for (const char byte : bytes) bytes_.push_back(static_cast<std::byte>(byte));
    return *this;
  }
  // `time_s` counts from kStart_s.
  RecordingBuilder& Put(std::uint16_t code, double time_s, std::span<const std::byte> body) {
    return Frame(Packet(code, kStart_s + time_s, body));
  }
  // Of one SIM.
  RecordingBuilder& PutOfRadio(std::uint32_t radio, std::uint16_t code, double time_s,
                               std::span<const std::byte> body) {
    Bytes wrapped;
    ByteWriter out(wrapped);
    out.U32(0x0198);
    out.U32(radio);
    out.Bytes(Packet(code, kStart_s + time_s, body));
    return Frame(wrapped);
  }

  // B0C0 version 20 with a message; 6 PCCH, 7 DL-DCCH ... as that version numbers them.
  static Bytes Rrc(std::uint16_t pci, std::uint8_t channel, std::string_view message, std::uint32_t earfcn = 38'400) {
    Bytes body;
    ByteWriter out(body);
    out.U32(20);
    out.U16(pci);
    out.U32(earfcn);
    out.U16(0);
    out.U8(channel);
    out.U32(0);
    out.U16(static_cast<std::uint16_t>(message.size()));
    out.Text(message);
    return body;
  }
  // B0C2 version 3 of the network 001-01.
  static Bytes ServingCell(std::uint16_t pci, std::uint32_t identity) {
    Bytes body;
    ByteWriter out(body);
    out.U8(3);
    out.U16(pci);
    out.U32(38'400);
    out.U32(38'400);
    out.U16(100 << 8 | 100);
    out.U32(identity);
    out.U16(4'660);
    out.U32(40);
    out.U16(1);
    out.U8(2);
    out.U16(1);
    out.U8(0);
    return body;
  }

  const Bytes& bytes() const { return bytes_; }
  void Save(const std::string& path) const {
    std::ofstream(path, std::ios::binary)
        .write(reinterpret_cast<const char*>(bytes_.data()), static_cast<std::streamsize>(bytes_.size()));
  }

 private:
  Bytes bytes_;
};

}  // namespace loom::test
