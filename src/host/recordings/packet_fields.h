#pragma once

#include <cstddef>
#include <cstdint>
#include <span>

// Values of log packets as tables: one row per value. Numbers of packets are little-endian.
namespace loom::recordings {

inline constexpr std::int32_t kNotTold = INT32_MIN;  // a value that the packet does not have

// How a raw number becomes a value. Levels are kept in 1/16 dB, which is what they are reported in, SNR in 1/10 dB.
struct Scale {
  std::int32_t added = 0;
  std::int64_t invalid = -1;  // the raw number that stands for no value; -1: none
};
inline constexpr Scale kPlain{};
inline constexpr Scale kRsrp{-180 * 16, 0};
inline constexpr Scale kRsrpFrom640{-180 * 16 + 640, 0};
inline constexpr Scale kRsrq{-30 * 16, 0};
inline constexpr Scale kRssi{-110 * 16, 0};
inline constexpr Scale kSnr{-20 * 10, 0};

// `bits` bits of a word, from its bit `first_bit` (0 the least significant), become a member of Target.
template <class Target>
struct PacketField {
  std::uint16_t word;  // byte position of the word in its part of the packet
  std::uint8_t bytes;  // of the word
  std::uint8_t first_bit;
  std::uint8_t bits;
  Scale scale;
  std::int32_t Target::*target;
};

// The values of a part.
template <class Target>
struct PacketFields {
  template <std::size_t kCount>
  constexpr PacketFields(const PacketField<Target> (&table)[kCount]) : fields(table) {
    for (const auto& field : fields)
      if (const std::size_t end = std::size_t{field.word} + field.bytes; end > bytes) bytes = end;
  }

  std::span<const PacketField<Target>> fields;
  std::size_t bytes = 0;  // of the part that they need
};

inline std::uint32_t WordAt(const std::byte* at, std::size_t bytes) {
  const auto byte = [at](std::size_t i) { return static_cast<std::uint32_t>(at[i]) << 8 * i; };
  switch (bytes) {
    case 1:
      return byte(0);
    case 2:
      return byte(0) | byte(1);
    default:
      return byte(0) | byte(1) | byte(2) | byte(3);
  }
}

// Reads the values of a table. False, with nothing read, when the part is shorter than the table.
template <class Target>
bool ReadFields(std::span<const std::byte> part, const PacketFields<Target>& table, Target& target) {
  if (part.size() < table.bytes) return false;
  for (const auto& field : table.fields) {
    const std::uint32_t word = WordAt(part.data() + field.word, field.bytes) >> field.first_bit;
    const std::uint32_t raw = field.bits == 32 ? word : word & ((1U << field.bits) - 1);
    target.*field.target = raw == field.scale.invalid ? kNotTold : static_cast<std::int32_t>(raw) + field.scale.added;
  }
  return true;
}

}  // namespace loom::recordings
