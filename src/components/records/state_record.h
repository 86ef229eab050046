#pragma once

#include <cstddef>
#include <cstring>
#include <memory>
#include <span>
#include <string_view>
#include <tuple>
#include <type_traits>
#include <utility>

#include "components/records/basic_info.h"
#include "components/records/block_table.h"
#include "components/records/blocks_gsm.h"
#include "components/records/blocks_td.h"
#include "components/records/setinfo.h"
#include "components/records/testdata.h"

namespace loom {

// One structure that outlives the record it was filled from: its lists and texts are copied into storage of its own,
// which is kept and reused.
template <class Block>
class OwnedStructure {
 public:
  const Block* block() const { return &block_; }

  // False when the record carries none; the last value stays then.
  bool Fill(const CTestdataBase& record) {
    if (!block_.setinfo(record)) return false;
    if constexpr (kHasLists) OwnLists();
    return true;
  }

 private:
  struct NoVisitor {
    template <class List>
    void operator()(List&) {}
  };
  static constexpr bool kHasLists = requires(Block block) { block.VisitLists(NoVisitor{}); };

  template <class List>
  using EntryOf = std::remove_cvref_t<decltype(*std::declval<List>().data())>;

  void OwnLists() {
    std::size_t size = 0;
    block_.VisitLists(
        [&size]<class List>(List& list) { size = Aligned<EntryOf<List>>(size) + list.size() * sizeof(EntryOf<List>); });
    if (size > capacity_) {
      storage_ = std::make_unique_for_overwrite<std::byte[]>(size);
      capacity_ = size;
    }
    std::size_t at = 0;
    block_.VisitLists([this, &at]<class List>(List& list) {
      using Entry = EntryOf<List>;
      static_assert(std::is_trivially_copyable_v<Entry>);
      at = Aligned<Entry>(at);
      std::byte* target = storage_.get() + at;
      if (!list.empty()) std::memcpy(target, list.data(), list.size() * sizeof(Entry));
      at += list.size() * sizeof(Entry);
      list = list.empty() ? List() : List(reinterpret_cast<const Entry*>(target), list.size());
    });
  }

  template <class Entry>
  static std::size_t Aligned(std::size_t offset) {
    return (offset + alignof(Entry) - 1) / alignof(Entry) * alignof(Entry);
  }

  Block block_;
  std::unique_ptr<std::byte[]> storage_;
  std::size_t capacity_ = 0;
};

namespace detail {

template <class Block>
using StateSlot = std::unique_ptr<OwnedStructure<Block>>;

// The slot of a row of the table of blocks, if the block is kept.
template <std::size_t kRow>
auto StateSlotOfRow() {
  if constexpr (std::get<kRow>(kRecordBlocks).kept == Kept::kNot) {
    return std::tuple<>();
  } else {
    return std::tuple<StateSlot<typename std::tuple_element_t<kRow, decltype(kRecordBlocks)>::Block>>();
  }
}
template <std::size_t... kRow>
auto StateSlots(std::index_sequence<kRow...>) {
  return std::tuple_cat(StateSlotOfRow<kRow>()...);
}

}  // namespace detail

// The newest structures of a stream. Starts with the TD-SCDMA structures, every field of them absent; the GSM ones
// appear with the first record that carries them. A structure that a record lacks keeps its last value.
class StateRecord {
 public:
  StateRecord() {
    ForEachKept<Kept::kOfTd>([this]<class Block>(const RecordBlock<Block>&) { Add<Block>(); });
  }
  StateRecord(const StateRecord&) = delete;
  StateRecord& operator=(const StateRecord&) = delete;

  CTestdataBase& record() { return record_; }
  const CTestdataBase& record() const { return record_; }
  const CIE_Basic_Info& basic_info() const { return basic_info_; }

  void SetRecordId(std::int32_t record_id) { record_.record_id = record_id; }
  bool UpdateBasicInfo(const CTestdataBase& record) { return basic_info_.setinfo(record, true); }

  // Fills one structure from a record that carries it; true when it did.
  template <class Block>
  bool Update(const CTestdataBase& record) {
    return BlockOf<Block>(record) && Add<Block>().Fill(record);
  }
  // Fills the structures of a mode, each that the record carries.
  template <Kept kMode>
  void Update(const CTestdataBase& record) {
    ForEachKept<kMode>([&]<class Block>(const RecordBlock<Block>&) { Update<Block>(record); });
  }

 private:
  template <class Block>
  using Slot = detail::StateSlot<Block>;

  template <Kept kMode, class Function>
  static void ForEachKept(Function&& function) {
    [&]<std::size_t... kRow>(std::index_sequence<kRow...>)->void { (CallIfKept<kMode, kRow>(function), ...); }
    (std::make_index_sequence<kRecordBlockCount>());
  }
  template <Kept kMode, std::size_t kRow, class Function>
  static void CallIfKept(Function& function) {
    if constexpr (std::get<kRow>(kRecordBlocks).kept == kMode) function(std::get<kRow>(kRecordBlocks));
  }

  template <class Block>
  OwnedStructure<Block>& Add() {
    Slot<Block>& slot = std::get<Slot<Block>>(slots_);
    if (!slot) {
      slot = std::make_unique<OwnedStructure<Block>>();
      BlockOf<Block>(record_) = slot->block();
    }
    return *slot;
  }

  CTestdataBase record_{false, 0};
  CIE_Basic_Info basic_info_;
  decltype(detail::StateSlots(std::make_index_sequence<kRecordBlockCount>())) slots_;
};

}  // namespace loom
