#pragma once

#include <cstddef>
#include <cstdint>
#include <string_view>
#include <tuple>
#include <type_traits>
#include <utility>

namespace loom {

// One member of a block under the name that it has in files and documents.
template <class Block, class Member>
struct Field {
  std::string_view name;
  Member Block::*member;
};
template <class Block, class Member>
Field(std::string_view, Member Block::*) -> Field<Block, Member>;

// The description of a block, an entry of a list or the record header: kFields, its members in the order in which they
// are written. Blocks of a record also have kTag, the tag of their coding, which is their position in the record, and
// kName. Everything that reads, writes or prints records walks these descriptions.
//
// A new member goes to the end of its block's list, so that older logs stay readable; the entries of a list and the
// parts of a block never change.
template <class Block>
struct BlockFields;

template <class T>
concept DescribedRecordPart = requires {
  BlockFields<T>::kFields;
};

// Calls the function with every field of a description, in their order.
template <class Block, class Function>
constexpr void ForEachField(Function&& function) {
  [&]<std::size_t... kField>(std::index_sequence<kField...>)->void {
    (function(std::get<kField>(BlockFields<Block>::kFields)), ...);
  }
  (std::make_index_sequence<std::tuple_size_v<std::remove_cv_t<decltype(BlockFields<Block>::kFields)>>>());
}

}  // namespace loom
