#pragma once

#include <cstdint>
#include <memory_resource>
#include <nlohmann/json_fwd.hpp>
#include <span>
#include <string_view>

#include "components/records/testdata.h"
#include "platform/byte_reader.h"

namespace loom::records {

class JsonPlace;

// What can be done with one kind of block, whatever its structure. Made from the descriptions behind the
// structures, and the table of blocks.
struct BlockCodec {
  std::uint16_t tag;
  std::string_view name;
  bool (*present)(const CTestdataBase& record);
  // Makes the block from its coded value and hangs it into the record. Throws FormatError.
  void (*decode)(ByteReader value, CTestdataBase& record, std::pmr::memory_resource& arena);
  // Of a block that is present: the number of its fields that are written, their bytes, and their writing, which
  // returns where they end.
  std::size_t (*leading_fields)(const CTestdataBase& record);
  std::size_t (*leading_bytes)(const CTestdataBase& record, std::size_t fields);
  std::byte* (*store)(const CTestdataBase& record, std::size_t fields, std::byte* at);
  // The same for JSON objects; from_json throws RecordJsonError.
  void (*from_json)(const nlohmann::ordered_json& value, const JsonPlace& place, CTestdataBase& record,
                    std::pmr::memory_resource& arena);
  nlohmann::ordered_json (*to_json)(const CTestdataBase& record);
};

// Four shares of the blocks, cut by their tags, since their codecs take long to compile.
inline constexpr std::uint32_t kSecondShareTag = 252;
inline constexpr std::uint32_t kThirdShareTag = 356;
inline constexpr std::uint32_t kFourthShareTag = 416;
inline constexpr std::uint32_t kEndOfTags = 0x10000;
std::span<const BlockCodec> FirstBlocks();
std::span<const BlockCodec> SecondBlocks();
std::span<const BlockCodec> ThirdBlocks();
std::span<const BlockCodec> FourthBlocks();

// All of them, in the order of their tags.
std::span<const BlockCodec> AllBlocks();
// Null for an unknown tag.
const BlockCodec* FindBlock(std::uint16_t tag);
// Blocks that are made together with the header, because their records are never decoded.
constexpr bool NeedsNoDecoding(std::uint16_t tag) {
  return tag == 272 || tag == 276 || tag == 420 || tag == 424 || tag == 520;
}

}  // namespace loom::records
