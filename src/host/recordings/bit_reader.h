#pragma once

#include <cstddef>
#include <cstdint>
#include <span>

namespace loom::recordings {

inline std::uint8_t ByteAt(std::span<const std::byte> bytes, std::size_t at) {
  return static_cast<std::uint8_t>(bytes[at]);
}

// Reads bits, most significant first, as unaligned PER packs them. Reading beyond the end gives zeros and is
// remembered.
class BitReader {
 public:
  explicit BitReader(std::span<const std::byte> bytes) : bytes_(bytes), left_(bytes.size() * 8) {}

  // Up to 32 bits.
  std::uint32_t Bits(unsigned count) {
    if (count > left_) {
      left_ = 0;
      is_sound_ = false;
      return 0;
    }
    std::uint32_t value = 0;
    std::size_t at = bytes_.size() * 8 - left_;
    left_ -= count;
    for (unsigned needed = count; needed > 0;) {
      const auto in_byte = static_cast<unsigned>(8 - at % 8);
      const unsigned taken = needed < in_byte ? needed : in_byte;
      const auto byte = static_cast<std::uint32_t>(bytes_[at / 8]);
      value = value << taken | (byte >> (in_byte - taken) & ((1U << taken) - 1));
      needed -= taken;
      at += taken;
    }
    return value;
  }
  bool Bit() { return Bits(1) != 0; }
  void Skip(unsigned count) { Bits(count); }
  std::size_t Left() const { return left_; }
  bool IsSound() const { return is_sound_; }  // nothing was read beyond the end

 private:
  std::span<const std::byte> bytes_;
  std::size_t left_;  // bits
  bool is_sound_ = true;
};

}  // namespace loom::recordings
