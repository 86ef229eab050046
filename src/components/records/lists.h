#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <span>
#include <string_view>

namespace loom {

// Text in GBK that somebody else keeps: the arena of a record, or the state record. An empty text is a null text.
using RecordText = std::string_view;

// Entries of a list that somebody else keeps. A list's count, where a block has one, is a member of its own beside the
// list: it is what the device reported and may be negative, or larger or smaller than the list.
template <class Entry>
using RecordList = std::span<const Entry>;

// A short list that lives inside its entry or block.
template <class Entry, std::size_t kCapacity>
struct InlineList {
  static constexpr std::size_t kMax = kCapacity;
  std::array<Entry, kCapacity> entries{};
  std::uint8_t size = 0;  // at most kMax

  const Entry* begin() const { return entries.data(); }
  const Entry* end() const { return entries.data() + size; }
};

// Absent values of the raw types.
inline constexpr std::uint8_t kAbsent8 = 0xFF;
inline constexpr std::uint16_t kAbsent16 = 0xFFFF;
inline constexpr std::uint32_t kAbsent32 = 0xFFFFFFFF;
inline constexpr std::int16_t kAbsentGsm16 = 0x7FFF;
inline constexpr float kAbsentFloat = -1.0f;
inline constexpr double kAbsentDouble = -1.0;

}  // namespace loom
