#pragma once

#include <array>
#include <cstddef>
#include <tuple>
#include <utility>

#include "components/records/block_table.h"
#include "components/records/blocks.h"
#include "host/logstore/record_blocks.h"
#include "host/logstore/record_value_codec.h"
#include "host/logstore/record_value_json.h"

namespace loom::records {

// The codec of one block, made from its description.
template <class Block>
struct CodecOf {
  static Block& Make(CTestdataBase& record, std::pmr::memory_resource& arena) {
    static_assert(std::is_trivially_copyable_v<Block>);
    auto* block = new (arena.allocate(sizeof(Block), alignof(Block))) Block{};
    BlockOf<Block>(record) = block;
    return *block;
  }
  static bool Present(const CTestdataBase& record) { return BlockOf<Block>(record) != nullptr; }
  static void Decode(ByteReader value, CTestdataBase& record, std::pmr::memory_resource& arena) {
    DecodeLeadingFields(value, Make(record, arena), arena);
  }
  static std::size_t Fields(const CTestdataBase& record) { return LeadingFields(*BlockOf<Block>(record)); }
  static std::size_t Bytes(const CTestdataBase& record, std::size_t fields) {
    return LeadingBytes(*BlockOf<Block>(record), fields);
  }
  static std::byte* Store(const CTestdataBase& record, std::size_t fields, std::byte* at) {
    return StoreLeading(at, *BlockOf<Block>(record), fields);
  }
  static void FromJson(const Json& value, const JsonPlace& place, CTestdataBase& record,
                       std::pmr::memory_resource& arena) {
    FieldsFromJson(value, place, Make(record, arena), arena);
  }
  static Json ToJson(const CTestdataBase& record) { return ValueToJson(*BlockOf<Block>(record)); }

  static constexpr BlockCodec kCodec{
      kRowOf<Block>.tag, kRowOf<Block>.name, Present, Decode, Fields, Bytes, Store, FromJson, ToJson};
};

constexpr std::size_t BlocksBelow(std::uint32_t tag) {
  std::size_t count = 0;
  ForEachBlock([&](const auto& row) { count += row.tag < tag; });
  return count;
}

// The codecs of the blocks with tags from kFrom to kTo (excluded).
template <std::uint32_t kFrom, std::uint32_t kTo>
inline constexpr auto kCodecsOfTags = []<std::size_t... kRow>(std::index_sequence<kRow...>) {
  constexpr std::size_t kFirst = BlocksBelow(kFrom);
  return std::array{CodecOf<typename std::tuple_element_t<kFirst + kRow, decltype(kRecordBlocks)>::Block>::kCodec...};
}
(std::make_index_sequence<BlocksBelow(kTo) - BlocksBelow(kFrom)>());

}  // namespace loom::records
