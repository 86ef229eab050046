#pragma once

#include "components/records/testdata.h"
#include "host/logstore/record_blocks.h"
#include "host/logstore/record_fields.h"
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
  static void Encode(const CTestdataBase& record, ByteWriter& out) { EncodeFields(out, *BlockOf<Block>(record)); }
  static void FromJson(const Json& value, const JsonPlace& place, CTestdataBase& record,
                       std::pmr::memory_resource& arena) {
    FieldsFromJson(value, place, Make(record, arena), arena);
  }
  static Json ToJson(const CTestdataBase& record) { return ValueToJson(*BlockOf<Block>(record)); }

  static constexpr BlockCodec kCodec{
      BlockFields<Block>::kTag, BlockFields<Block>::kName, Present, Decode, Encode, FromJson, ToJson};
};

template <class... Blocks>
inline constexpr BlockCodec kCodecs[] = {CodecOf<Blocks>::kCodec...};

}  // namespace loom::records
