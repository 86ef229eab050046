#pragma once

#include <algorithm>
#include <array>
#include <bitset>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <string_view>
#include <utility>
#include <variant>

#include "components/records/lists.h"
#include "conversion/field_rule.h"
#include "conversion/row_ie_writer.h"

// Tables that say which member of a block becomes which IE, and the one engine that walks them. The walk is unrolled
// at compile time: a table costs what hand-written calls would.
namespace loom {

// One row of a table.
template <class Block>
struct Field {
  template <class Raw>
  using Of = Raw Block::*;
  using Member = std::variant<Of<std::int8_t>, Of<std::uint8_t>, Of<std::int16_t>, Of<std::uint16_t>, Of<std::int32_t>,
                              Of<std::uint32_t>, Of<float>, Of<double>, Of<RecordText>>;

  template <class Raw>
  constexpr Field(Raw Block::*from, IE to, Rule by = kAsIs, Condition when = kAlways)
      : member(from), ie(to), rule(by), condition(when), type(TypeOf<Raw>(by)) {}
  template <class Raw>
  constexpr Field(Raw Block::*from, IE to, Condition when) : Field(from, to, kAsIs, when) {}

  Member member;
  IE ie;
  Rule rule;
  Condition condition;
  MemTableFieldTypeEnum type;  // of the values that it writes
};

namespace detail {

template <class Fields>
consteval void RefuseDoubleIEs(const Fields& fields) {
  for (std::size_t i = 0; i < fields.size(); ++i) {
    for (std::size_t j = i + 1; j < fields.size(); ++j) {
      if (fields[i].ie == fields[j].ie) throw "an IE is listed twice";
    }
  }
}

template <class Block, std::size_t kSize, std::size_t... kAt>
consteval std::array<Field<Block>, kSize> ToArray(const Field<Block> (&fields)[kSize], std::index_sequence<kAt...>) {
  return {fields[kAt]...};
}

}  // namespace detail

// A table of a block's fields; an IE listed twice does not compile.
template <class Block, std::size_t kSize>
consteval std::array<Field<Block>, kSize> FieldTable(const Field<Block> (&fields)[kSize]) {
  const auto table = detail::ToArray(fields, std::make_index_sequence<kSize>());
  detail::RefuseDoubleIEs(table);
  return table;
}

// Whether the condition lets an IE pass; `id` is what selects it unless the condition names something else.
inline bool Passes(const CRowIEWriter& writer, const Condition& condition, std::int32_t id) {
  if (condition.gate == Condition::Gate::kOnlyWithSettings && writer.settings_empty()) return false;
  if (condition.gate == Condition::Gate::kOnlyWithSelection && writer.selection_switch() == 0) return false;
  if (!condition.selected) return true;
  if (condition.name != SelectionName::kNone) return writer.IsSelectedByName(condition.name);
  return writer.IsSelected(condition.selection_id >= 0 ? condition.selection_id : id);
}

// Walks a table: calls sink(field, value) for each field that the block holds, selected or not, with a uniFieldValue
// or, for texts that are not null, a std::string_view.
template <const auto& kTable, class Policy, class Block, class Sink>
inline void VisitFields(const Block& block, Sink&& sink) {
  [&]<std::size_t... kAt>(std::index_sequence<kAt...>) {
    [[maybe_unused]] const auto visit = [&]<std::size_t kRow>(std::integral_constant<std::size_t, kRow>) {
      constexpr const auto& field = kTable[kRow];
      const auto& raw = block.*std::get<field.member.index()>(field.member);
      if constexpr (std::is_same_v<decltype(raw), const RecordText&>) {
        if (raw.data() != nullptr) sink(field, raw);
      } else {
        if (const auto value = ConvertValue<Policy>(field.rule, raw)) sink(field, *value);
      }
    };
    (visit(std::integral_constant<std::size_t, kAt>()), ...);
  }
  (std::make_index_sequence<kTable.size()>());
}

// Writes a converted value, or a text, as an IE.
inline void PutValue(CRowIEWriter& writer, std::int32_t id, uniFieldValue value) { writer.Put(id, value); }
inline void PutValue(CRowIEWriter& writer, std::int32_t id, std::string_view text) {
  writer.Put(id, uniFieldValue::Text(writer.row().AddText(text)));
}

// Writes the fields of a block.
template <const auto& kTable, class Policy = TdMarkers, class Block>
inline void WriteFields(CRowIEWriter& writer, const Block& block) {
  VisitFields<kTable, Policy>(block, [&writer](const auto& field, auto value) {
    if (Passes(writer, field.condition, field.ie.id)) PutValue(writer, field.ie.id, value);
  });
}
template <const auto& kTable, class Policy = TdMarkers, class Block>
inline void WriteFields(CRowIEWriter& writer, const Block* block) {
  if (block != nullptr) WriteFields<kTable, Policy>(writer, *block);
}

// Which fields of a table pass for the entries of a list: asked once for a list, by the ids of its first entry.
template <const auto& kTable>
inline std::array<bool, kTable.size()> PassingFields(const CRowIEWriter& writer, std::int32_t first) {
  std::array<bool, kTable.size()> passing;
  for (std::size_t at = 0; at < kTable.size(); ++at) {
    passing[at] = Passes(writer, kTable[at].condition, kTable[at].ie.id + first);
  }
  return passing;
}

// Writes the fields of one list entry: field k as IE id + number * stride.
template <const auto& kTable, class Policy = TdMarkers, class Entry>
inline void WriteEntry(CRowIEWriter& writer, const Entry& entry, std::int32_t number,
                       const std::array<bool, kTable.size()>& passing, std::int32_t stride = 1) {
  VisitFields<kTable, Policy>(entry, [&](const auto& field, auto value) {
    const auto at = static_cast<std::size_t>(&field - kTable.data());
    if (passing[at]) PutValue(writer, field.ie.id + number * stride, value);
  });
}

// Entries that a list really has of those that its count announces, at most `capacity`.
inline std::size_t UsableEntries(std::int64_t count, std::size_t size, std::size_t capacity) {
  return count < 0 ? 0 : std::min({static_cast<std::size_t>(count), size, capacity});
}

// Writes the first `size` entries of a list, entry k as IE id + k.
template <const auto& kTable, class Policy = TdMarkers, class Entry>
inline void WriteArray(CRowIEWriter& writer, RecordList<Entry> entries, std::size_t size) {
  const auto passing = PassingFields<kTable>(writer, 0);
  for (std::size_t at = 0; at < std::min(size, entries.size()); ++at) {
    WriteEntry<kTable, Policy>(writer, entries[at], static_cast<std::int32_t>(at), passing);
  }
}

// A list of plain numbers and its count: entry k becomes IE id + k.
template <class Block, class Raw = std::int32_t>
struct NumberArray {
  std::int32_t Block::*count;
  RecordList<Raw> Block::*list;
  IE ie;
  std::size_t capacity;
  Rule rule = kAsIs;
};

template <const auto& kArrays, class Policy = TdMarkers, class Block>
inline void WriteNumberArrays(CRowIEWriter& writer, const Block& block) {
  for (const auto& array : kArrays) {
    if (!writer.IsSelected(array.ie.id)) continue;
    const auto& list = block.*array.list;
    const std::size_t size = UsableEntries(block.*array.count, list.size(), array.capacity);
    for (std::size_t at = 0; at < size; ++at) {
      const auto value = ConvertValue<Policy>(array.rule, list[at]);
      if (value) writer.Put(array.ie.id + static_cast<std::int32_t>(at), *value);
    }
  }
}

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
inline constexpr std::int32_t kMaxEntryNumber = 255;

namespace detail {

// Number of the entry at a position, none when it is outside the group.
template <const auto& kGroup, class Entry>
inline std::optional<std::int32_t> EntryNumber(const Entry& entry, std::size_t position) {
  static_assert(kGroup.first >= 0 && kGroup.last <= kMaxEntryNumber);
  std::int32_t number = static_cast<std::int32_t>(std::min<std::size_t>(position, kMaxEntryNumber + 1));
  if (kGroup.number != nullptr) number = entry.*kGroup.number;
  return number < kGroup.first || number > kGroup.last ? std::nullopt : std::optional(number);
}

}  // namespace detail

// A set of entry numbers.
using EntryNumbers = std::bitset<kMaxEntryNumber + 1>;

// The numbers from first to last of which the stream has an IE of the table.
template <const auto& kTable>
inline EntryNumbers KnownNumbers(CRowIEWriter& writer, std::int32_t first, std::int32_t last) {
  EntryNumbers known;
  for (const auto& field : kTable) {
    writer.ForEachKnown(field.ie.id + first, field.ie.id + last,
                        [&](std::int32_t id) { known.set(static_cast<std::size_t>(id - field.ie.id)); });
  }
  return known;
}

// Calls reset(number) for the numbers of a group from `from` on that the stream has and that no entry carried; for each
// of them when the group writes without a table.
template <const auto& kGroup, class Reset>
inline void ResetOthers(CRowIEWriter& writer, const EntryNumbers& carried, std::int32_t from, Reset&& reset) {
  static constexpr const auto& kFields = kGroup.fields;
  EntryNumbers stale = ~carried;
  if constexpr (!kFields.empty()) stale &= KnownNumbers<kFields>(writer, kGroup.first, kGroup.last);
  if (stale.none()) return;
  for (std::int32_t number = from; number <= kGroup.last; ++number) {
    if (stale.test(static_cast<std::size_t>(number))) reset(number);
  }
}

// Writes the entries of a group's list and says which numbers they carried; also(entry, number) writes what an entry
// has beside the fields of the table.
template <const auto& kGroup, class Policy = TdMarkers, class Block, class Also>
inline EntryNumbers WriteGroupEntries(CRowIEWriter& writer, const Block& block, Also&& also) {
  static constexpr const auto& kFields = kGroup.fields;
  EntryNumbers carried;
  const auto passing = PassingFields<kFields>(writer, kGroup.first);
  const auto& list = block.*kGroup.list;
  for (std::size_t at = 0; at < list.size(); ++at) {
    const auto number = detail::EntryNumber<kGroup>(list[at], at);
    if (!number) continue;
    carried.set(static_cast<std::size_t>(*number));
    WriteEntry<kFields, Policy>(writer, list[at], *number, passing);
    also(list[at], *number);
  }
  return carried;
}

// Writes a group: its count and its entries; reset(number) is called for the numbers that no entry carried. A negative
// count means that the list is absent; 0 resets every number.
template <const auto& kGroup, class Policy = TdMarkers, class Block, class Reset, class Also>
inline void WriteGroup(CRowIEWriter& writer, const Block& block, Reset&& reset, Also&& also) {
  const std::int32_t count = block.*kGroup.count;
  if (count < 0) return;
  if (Passes(writer, kGroup.count_condition, kGroup.count_ie.id)) writer.Put(kGroup.count_ie.id, count);
  EntryNumbers carried;
  if (count > 0) carried = WriteGroupEntries<kGroup, Policy>(writer, block, also);
  // Entries numbered by position are current up to the count.
  const std::int32_t reset_from = kGroup.number == nullptr ? std::max(count, kGroup.first) : kGroup.first;
  ResetOthers<kGroup>(writer, carried, reset_from, reset);
}
template <const auto& kGroup, class Policy = TdMarkers, class Block, class Reset>
inline void WriteGroup(CRowIEWriter& writer, const Block& block, Reset&& reset) {
  WriteGroup<kGroup, Policy>(writer, block, reset, [](const auto&, std::int32_t) {});
}

// Writes the invalid values of one entry number for the IEs that the stream has.
template <const auto& kGroup>
inline void ResetEntry(CRowIEWriter& writer, std::int32_t number) {
  for (const auto& field : kGroup.fields) writer.Invalidate(field.ie.id + number, field.type);
}

}  // namespace loom
