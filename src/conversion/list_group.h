#pragma once

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdint>
#include <optional>

#include "components/id_set.h"
#include "components/records/lists.h"
#include "conversion/field_table.h"

// Lists whose entries carry numbers: what an entry brings is written under its number, and what the stream has of the
// numbers that no entry carries is made invalid.
namespace loom {

// A set of entry numbers from 0 to kLast.
template <std::int32_t kLast>
class NumberSet {
 public:
  void Add(std::int32_t number) { words_[static_cast<std::size_t>(number) / 64] |= BitOf(number); }
  bool Has(std::int32_t number) const { return (words_[static_cast<std::size_t>(number) / 64] & BitOf(number)) != 0; }
  // Adds the numbers n of which the stream has the IE base + n.
  void AddKnown(const CRowIEWriter& writer, std::int32_t base) {
    for (std::size_t word = 0; word < words_.size(); ++word) {
      words_[word] |= writer.stream().ie_ids.BitsFrom(base + static_cast<std::int32_t>(word * 64));
    }
  }
  void Remove(const NumberSet& others) {
    for (std::size_t word = 0; word < words_.size(); ++word) words_[word] &= ~others.words_[word];
  }
  // Calls visit(number) for the members from `first` on, ascending.
  template <class Visit>
  void ForEachFrom(std::int32_t first, Visit visit) const {
    for (std::size_t word = static_cast<std::size_t>(first) / 64; word < words_.size(); ++word) {
      const auto start = static_cast<std::int32_t>(word * 64);
      std::uint64_t bits = words_[word];
      if (start < first) bits &= ~std::uint64_t{0} << (first - start);
      if (kLast - start < 63) bits &= (std::uint64_t{1} << (kLast - start + 1)) - 1;
      ForEachBit(bits, [&](int bit) { visit(start + bit); });
    }
  }

 private:
  static constexpr std::uint64_t BitOf(std::int32_t number) { return std::uint64_t{1} << (number % 64); }

  std::array<std::uint64_t, kLast / 64 + 1> words_{};
};

// A list group: a list with its count, whose entries carry numbers, or are numbered by their position, from `first` to
// `last`. The entry numbered n becomes the IEs id + n of the entry table.
template <class Block, class Entry, class Count, std::size_t kFields>
struct ListGroup {
  Count Block::*count;
  RecordList<Entry> Block::*list;
  IE count_ie;
  std::int8_t Entry::*number;  // null: numbered by position
  std::int32_t first;
  std::int32_t last;
  std::array<Field<Entry>, kFields> fields;
  Condition count_condition = kAlways;
};

template <const auto& kGroup>
using NumbersOf = NumberSet<kGroup.last>;

// The numbers of which the stream has an IE of the table.
template <const auto& kTable, std::int32_t kLast>
inline NumberSet<kLast> KnownNumbers(const CRowIEWriter& writer) {
  NumberSet<kLast> known;
  for (const auto& field : kTable) known.AddKnown(writer, field.ie.id);
  return known;
}

// The numbers of a group of which the stream has an IE of the group's table.
template <const auto& kGroup>
inline NumbersOf<kGroup> KnownNumbers(const CRowIEWriter& writer) {
  static constexpr auto kFields = kGroup.fields;  // not every compiler takes a part of the group as argument
  return KnownNumbers<kFields, kGroup.last>(writer);
}

namespace detail {

// Number of the entry at a position, none when it is outside the group.
template <const auto& kGroup, class Entry>
inline std::optional<std::int32_t> EntryNumber(const Entry& entry, std::size_t position) {
  std::int32_t number = static_cast<std::int32_t>(std::min<std::size_t>(position, kGroup.last + 1));
  if (kGroup.number != nullptr) number = entry.*kGroup.number;
  return number < kGroup.first || number > kGroup.last ? std::nullopt : std::optional(number);
}

}  // namespace detail

// Writes the entries of a group's list and says which numbers they carried; also(entry, number) writes what an entry
// has beside the fields of the table.
template <const auto& kGroup, class Policy = TdMarkers, class Block, class Also>
inline NumbersOf<kGroup> WriteGroupEntries(CRowIEWriter& writer, const Block& block, Also also) {
  static constexpr auto kFields = kGroup.fields;  // not every compiler takes a part of the group as argument
  NumbersOf<kGroup> carried;
  const auto passing = PassingFields<kFields>(writer, kGroup.first);
  const auto& list = block.*kGroup.list;
  for (std::size_t at = 0; at < list.size(); ++at) {
    const auto number = detail::EntryNumber<kGroup>(list[at], at);
    if (!number) continue;
    carried.Add(*number);
    WriteEntry<kFields, Policy>(writer, list[at], *number, passing);
    also(list[at], *number);
  }
  return carried;
}

// Writes a group: its count and its entries; reset(number) is called for the numbers among known() that no entry
// carried. A negative count means that the list is absent; 0 resets every number.
template <const auto& kGroup, class Policy = TdMarkers, class Block, class Known, class Reset, class Also>
inline void WriteGroup(CRowIEWriter& writer, const Block& block, Known known, Reset reset, Also also) {
  const std::int32_t count = block.*kGroup.count;
  if (count < 0) return;
  if (Passes(writer, kGroup.count_condition, kGroup.count_ie.id)) writer.Put(kGroup.count_ie.id, count);
  NumbersOf<kGroup> stale = known();
  if (count > 0) stale.Remove(WriteGroupEntries<kGroup, Policy>(writer, block, also));
  // Entries numbered by position are current up to the count.
  stale.ForEachFrom(kGroup.number == nullptr ? std::max(count, kGroup.first) : kGroup.first, reset);
}
template <const auto& kGroup, class Policy = TdMarkers, class Block, class Reset>
inline void WriteGroup(CRowIEWriter& writer, const Block& block, Reset reset) {
  WriteGroup<kGroup, Policy>(
      writer, block, [&writer] { return KnownNumbers<kGroup>(writer); }, reset, [](const auto&, std::int32_t) {});
}

// Writes the invalid values of one entry number for the IEs that the stream has.
template <const auto& kGroup>
inline void ResetEntry(CRowIEWriter& writer, std::int32_t number) {
  for (const auto& field : kGroup.fields) writer.Invalidate(field.ie.id + number, field.type);
}

}  // namespace loom
