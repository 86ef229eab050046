#pragma once

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <string_view>
#include <utility>
#include <variant>

#include "components/records/fields.h"
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

// The IE after which a member is named: 2410 of &ServiceBlock::ie2410. Another name does not compile.
template <auto kMember>
consteval IE OwnIE() {
  const std::string_view name = MemberName<kMember>();
  if (!name.starts_with("ie") || name.size() == 2) throw "the member is not named after an IE";
  IE ie;
  for (const char digit : name.substr(2)) {
    if (digit < '0' || digit > '9') throw "the member is not named after an IE";
    ie.id = ie.id * 10 + (digit - '0');
  }
  return ie;
}

// The row of a member that is named after its IE: Own<&ServiceBlock::ie2410>(k128th).
template <auto kMember, class... Rest>
consteval auto Own(Rest... rest) {
  return [&]<class Raw, class Block>(Raw Block::*member) {
    return Field<Block>(member, OwnIE<kMember>(), rest...);
  }(kMember);
}

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

// Which fields of a table pass, by the ids that they have in the entry numbered `number`.
template <const auto& kTable>
inline std::array<bool, kTable.size()> PassingFields(const CRowIEWriter& writer, std::int32_t number) {
  return [&]<std::size_t... kAt>(std::index_sequence<kAt...>) {
    return std::array<bool, kTable.size()>{Passes(writer, kTable[kAt].condition, kTable[kAt].ie.id + number)...};
  }
  (std::make_index_sequence<kTable.size()>());
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

// Whether a table has fields that are selected by their own IE: each entry of a list then asks for itself.
template <const auto& kTable>
inline constexpr bool kSelectsEachEntry = std::ranges::any_of(kTable, [](const auto& field) {
  const Condition& condition = field.condition;
  return condition.selected && condition.name == SelectionName::kNone && condition.selection_id < 0;
});

// Writes the first `size` entries of a list, entry k as IE id + k.
template <const auto& kTable, class Policy = TdMarkers, class Entry>
inline void WriteArray(CRowIEWriter& writer, RecordList<Entry> entries, std::size_t size) {
  auto passing = PassingFields<kTable>(writer, 0);
  for (std::size_t at = 0; at < std::min(size, entries.size()); ++at) {
    const auto number = static_cast<std::int32_t>(at);
    if constexpr (kSelectsEachEntry<kTable>) passing = PassingFields<kTable>(writer, number);
    WriteEntry<kTable, Policy>(writer, entries[at], number, passing);
  }
}

// A list of plain numbers and its count: entry k becomes IE id + k, each selected by its own id. An array that the
// selection shows as one leaf is selected as a whole by its first IE as well.
template <class Block, class Raw = std::int32_t>
struct NumberArray {
  std::int32_t Block::*count;
  RecordList<Raw> Block::*list;
  IE ie;
  std::size_t capacity;
  bool is_one_leaf = false;
  Rule rule = kAsIs;
};

template <const auto& kArrays, class Policy = TdMarkers, class Block>
inline void WriteNumberArrays(CRowIEWriter& writer, const Block& block) {
  for (const auto& array : kArrays) {
    const auto& list = block.*array.list;
    const std::size_t size = UsableEntries(block.*array.count, list.size(), array.capacity);
    const bool is_all_selected = array.is_one_leaf && writer.IsSelected(array.ie.id);
    for (std::size_t at = 0; at < size; ++at) {
      const std::int32_t id = array.ie.id + static_cast<std::int32_t>(at);
      if (!is_all_selected && !writer.IsSelected(id)) continue;
      if (const auto value = ConvertValue<Policy>(array.rule, list[at])) writer.Put(id, *value);
    }
  }
}

}  // namespace loom
