#pragma once

#include <cstddef>
#include <string_view>
#include <tuple>
#include <type_traits>

namespace loom {

// The name of a member, from a pointer to it: "uarfcn" of &TdNeighbour::uarfcn.
template <auto kMember>
consteval std::string_view MemberName() {
  std::string_view text = __PRETTY_FUNCTION__;
  text = text.substr(0, text.find_first_of(";]", text.find("kMember = ")));
  return text.substr(text.rfind(':') + 1);
}

// One member of a block under the name that it has in files and documents.
template <class Block, class Member>
struct RecordField {
  std::string_view name;
  Member Block::*member;
};
template <class Block, class Member>
RecordField(std::string_view, Member Block::*) -> RecordField<Block, Member>;

template <auto... kMembers>
struct FieldList {
  static constexpr std::tuple kFields{RecordField{MemberName<kMembers>(), kMembers}...};
};

// The description of a block, an entry of a list or the record header: its members in the order in which they are
// written, which is that of their declaration. It stands behind the structure.
//
// A new member goes to the end of its block's list, so that older logs stay readable; the entries of a list and the
// parts of a block never change.
template <class Block>
struct BlockFields;

template <class T>
concept DescribedRecordPart = requires {
  typename BlockFields<T>::List;
};

template <class Block>
inline constexpr const auto& kFieldsOf = BlockFields<Block>::List::kFields;

// Calls the function with every field of a description, in their order.
template <class Block, class Function>
constexpr void ForEachField(Function&& function) {
  std::apply([&](const auto&... field) { (function(field), ...); }, kFieldsOf<Block>);
}

}  // namespace loom
