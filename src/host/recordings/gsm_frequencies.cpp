#include <algorithm>
#include <array>
#include <bit>

#include "host/recordings/bit_reader.h"
#include "host/recordings/gsm_messages.h"

// Frequency lists of GSM (3GPP TS 44.018, 10.5.2.13 and annex J).
namespace loom::recordings {
namespace {

constexpr std::size_t kAssignmentHeaderBytes = 2;  // discriminator, type
constexpr std::size_t kDescriptionBytes = 16;
constexpr std::uint8_t kSystemInformation5ter = 0x06;
constexpr std::uint32_t kArfcns = 1024;

using Arfcns = std::vector<std::uint16_t>;

// Bits of a map that stand for first + count - 1, first + count - 2 ... first.
Arfcns ReadFallingMap(BitReader& bits, std::uint32_t first, std::uint32_t count) {
  Arfcns arfcns;
  for (std::uint32_t i = count; i > 0; --i)
    if (bits.Bit()) arfcns.push_back(static_cast<std::uint16_t>(first + i - 1));
  return arfcns;
}

Arfcns ReadRisingMap(BitReader& bits, std::uint32_t origin) {
  Arfcns arfcns{static_cast<std::uint16_t>(origin)};
  for (std::uint32_t arfcn = origin + 1; bits.Left() > 0; ++arfcn)
    if (bits.Bit()) arfcns.push_back(static_cast<std::uint16_t>(arfcn % kArfcns));
  return arfcns;
}

// Remainder from 1 to `modulus`.
std::int32_t Smod(std::int32_t value, std::int32_t modulus) {
  const std::int32_t rest = value % modulus;
  return rest <= 0 ? rest + modulus : rest;
}

// Numbers W(1), W(2) ... of a binary tree over a range of ARFCNs: each level has half the range of the one above.
Arfcns ReadRange(BitReader& bits, std::uint32_t origin, bool has_origin, unsigned first_bits) {
  std::vector<std::int32_t> w{0};
  for (;;) {
    const auto level = static_cast<unsigned>(std::bit_width(w.size()) - 1);
    if (level >= first_bits || bits.Left() < first_bits - level) break;
    const auto number = static_cast<std::int32_t>(bits.Bits(first_bits - level));
    if (number == 0) break;
    w.push_back(number);
  }
  Arfcns arfcns;
  if (has_origin) arfcns.push_back(static_cast<std::uint16_t>(origin));
  const auto range = static_cast<std::int32_t>(1U << first_bits);
  for (std::size_t k = 1; k < w.size(); ++k) {
    std::int32_t number = w[k];
    for (std::size_t index = k; index > 1;) {
      const std::size_t power = std::bit_floor(index);
      const auto share = range / static_cast<std::int32_t>(power);
      const bool is_left = 2 * index < 3 * power;
      index -= is_left ? power / 2 : power;
      number = Smod(number + w[index] - (is_left ? share : 0), 2 * share - 1);
    }
    arfcns.push_back(static_cast<std::uint16_t>((origin + static_cast<std::uint32_t>(number)) % kArfcns));
  }
  return arfcns;
}

// The format stands in bits 8, 7, 4, 3 and 2 of the first byte; bits 6 and 5 of it are others' here.
std::optional<Arfcns> ReadFormat(std::span<const std::byte> description) {
  const auto format = static_cast<std::uint8_t>(description[0]);
  BitReader bits(description);
  if ((format & 0xC0) == 0) {
    bits.Skip(4);
    return ReadFallingMap(bits, 1, 124);
  }
  if ((format & 0xC8) == 0x80) {
    bits.Skip(5);
    const bool has_zero = bits.Bit();
    return ReadRange(bits, 0, has_zero, 10);
  }
  if ((format & 0xC8) != 0x88) return std::nullopt;
  bits.Skip(7);
  const std::uint32_t origin = bits.Bits(10);
  switch (format & 0x06) {
    case 0x00:
      return ReadRange(bits, origin, true, 9);
    case 0x02:
      return ReadRange(bits, origin, true, 8);
    case 0x04:
      return ReadRange(bits, origin, true, 7);
    default:
      return ReadRisingMap(bits, origin);
  }
}

}  // namespace

std::optional<Arfcns> ReadNeighbourList(std::span<const std::byte> message) {
  if (message.size() < kAssignmentHeaderBytes + kDescriptionBytes) return std::nullopt;
  std::array<std::byte, kDescriptionBytes> description;
  std::copy_n(message.begin() + kAssignmentHeaderBytes, kDescriptionBytes, description.begin());
  // The second kind of description has something else in the bit beside the format (10.5.2.22a).
  if (message[1] == std::byte{kSystemInformation5ter}) description[0] &= std::byte{0xBF};
  auto arfcns = ReadFormat(description);
  if (!arfcns) return std::nullopt;
  const auto order = [](std::uint16_t arfcn) { return arfcn == 0 ? kArfcns : arfcn; };
  std::sort(arfcns->begin(), arfcns->end(), [&](std::uint16_t a, std::uint16_t b) { return order(a) < order(b); });
  return arfcns;
}

}  // namespace loom::recordings
