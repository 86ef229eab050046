#pragma once

#include <cstddef>
#include <cstdint>
#include <string_view>
#include <tuple>
#include <utility>

#include "components/records/fields.h"
#include "components/records/testdata.h"

// The blocks of a record. Everything that goes through them reads this table.
namespace loom {

// Whether the state record of a stream keeps the newest block of a kind.
enum class Kept { kNot, kOfTd, kOfGsm };

template <class BlockType>
struct RecordBlock {
  using Block = BlockType;
  const Block* CTestdataBase::*member;
  std::string_view name;  // the member's, by which JSON and documents call the block
  std::uint16_t tag;      // of its coding: the block's byte position in the record
  Kept kept;
};

template <auto kMember>
constexpr auto BlockRow(std::uint16_t tag, Kept kept = Kept::kNot) {
  constexpr auto kOf = []<class Block>(const Block* CTestdataBase::*) { return RecordBlock<Block>{}; };
  return decltype(kOf(kMember)){kMember, MemberName<kMember>(), tag, kept};
}

// In the order of their tags. A block is found by its type.
inline constexpr std::tuple kRecordBlocks{
    BlockRow<&CTestdataBase::serving_cell>(220, Kept::kOfTd),
    BlockRow<&CTestdataBase::timeslot_measurements>(224, Kept::kOfTd),
    BlockRow<&CTestdataBase::neighbours>(228, Kept::kOfTd),
    BlockRow<&CTestdataBase::channels>(240, Kept::kOfTd),
    BlockRow<&CTestdataBase::codes>(244, Kept::kOfTd),
    BlockRow<&CTestdataBase::physical_channels>(248, Kept::kOfTd),
    BlockRow<&CTestdataBase::block252>(252),
    BlockRow<&CTestdataBase::data_test_first>(272),
    BlockRow<&CTestdataBase::data_test_second>(276),
    BlockRow<&CTestdataBase::cell_identities>(280),
    BlockRow<&CTestdataBase::block288>(288),
    BlockRow<&CTestdataBase::block292>(292),
    BlockRow<&CTestdataBase::block296>(296),
    BlockRow<&CTestdataBase::samples>(300),
    BlockRow<&CTestdataBase::block304>(304),
    BlockRow<&CTestdataBase::block308>(308),
    BlockRow<&CTestdataBase::block312>(312),
    BlockRow<&CTestdataBase::block316>(316),
    BlockRow<&CTestdataBase::block320>(320),
    BlockRow<&CTestdataBase::block324>(324),
    BlockRow<&CTestdataBase::block328>(328),
    BlockRow<&CTestdataBase::block332>(332),
    BlockRow<&CTestdataBase::system_info>(336),
    BlockRow<&CTestdataBase::block344>(344),
    BlockRow<&CTestdataBase::block348>(348),
    BlockRow<&CTestdataBase::block_table>(352),
    BlockRow<&CTestdataBase::gsm_serving_cell>(356, Kept::kOfGsm),
    BlockRow<&CTestdataBase::gsm_reselection>(360, Kept::kOfGsm),
    BlockRow<&CTestdataBase::gsm_radio>(364, Kept::kOfGsm),
    BlockRow<&CTestdataBase::gsm_dsc>(368, Kept::kOfGsm),
    BlockRow<&CTestdataBase::gsm_neighbours>(372, Kept::kOfGsm),
    BlockRow<&CTestdataBase::gsm_multislot_class>(376, Kept::kOfGsm),
    BlockRow<&CTestdataBase::gsm_dedicated_channel>(380, Kept::kOfGsm),
    BlockRow<&CTestdataBase::gsm_dedicated_measurements>(384, Kept::kOfGsm),
    BlockRow<&CTestdataBase::gsm_radio_link_counter>(388, Kept::kOfGsm),
    BlockRow<&CTestdataBase::gsm_ms_class>(392, Kept::kOfGsm),
    BlockRow<&CTestdataBase::gsm_rat>(396, Kept::kOfGsm),
    BlockRow<&CTestdataBase::gsm_llc_qos>(400, Kept::kOfGsm),
    BlockRow<&CTestdataBase::gsm_handover_number>(404, Kept::kOfGsm),
    BlockRow<&CTestdataBase::gsm_rlc_qos>(408, Kept::kOfGsm),
    BlockRow<&CTestdataBase::gsm_simple_info>(412),
    BlockRow<&CTestdataBase::td_cell_list>(416),
    BlockRow<&CTestdataBase::service>(420),
    BlockRow<&CTestdataBase::scan>(424),
    BlockRow<&CTestdataBase::lte_measurements>(512),
    BlockRow<&CTestdataBase::lte_signalling>(516),
    BlockRow<&CTestdataBase::lte_scan>(520),
};
inline constexpr std::size_t kRecordBlockCount = std::tuple_size_v<decltype(kRecordBlocks)>;

// Calls the function with every row of the table.
template <class Function>
constexpr void ForEachBlock(Function&& function) {
  std::apply([&](const auto&... row) { (function(row), ...); }, kRecordBlocks);
}

// Tags are byte positions of pointers, four bytes apart, behind the header's.
constexpr bool TagsAscendByPointers() {
  bool right = true;
  int last = 216;
  ForEachBlock([&](const auto& row) {
    right = right && row.tag > last && row.tag % 4 == 0;
    last = row.tag;
  });
  return right;
}
static_assert(TagsAscendByPointers());

template <class Block>
inline constexpr const RecordBlock<Block>& kRowOf = std::get<RecordBlock<Block>>(kRecordBlocks);

// The record's block of a type, null when it has none: BlockOf<CIE_SCell_Para>(record).
template <class Block>
const Block*& BlockOf(CTestdataBase& record) {
  return record.*kRowOf<Block>.member;
}
template <class Block>
const Block* BlockOf(const CTestdataBase& record) {
  return record.*kRowOf<Block>.member;
}

}  // namespace loom
