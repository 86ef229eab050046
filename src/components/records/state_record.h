#pragma once

#include <cstddef>
#include <cstring>
#include <memory>
#include <span>
#include <string_view>
#include <tuple>
#include <type_traits>
#include <vector>

#include "components/records/basic_info.h"
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

// The newest structures of a stream. Starts with the six TD-SCDMA structures, every field of them absent; the GSM ones
// appear with the first record that carries them. A structure that a record lacks keeps its last value.
class StateRecord {
 public:
  StateRecord() {
    Add<CIE_SCell_Para>();
    Add<CIE_SCell_Meas>();
    Add<CIE_NCell_Meas>();
    Add<CIE_Channel_Para>();
    Add<CIE_Meas_Res>();
    Add<CIE_Layer12_Config_Para>();
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

 private:
  template <class Block>
  using Slot = std::unique_ptr<OwnedStructure<Block>>;

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
  std::tuple<Slot<CIE_SCell_Para>, Slot<CIE_SCell_Meas>, Slot<CIE_NCell_Meas>, Slot<CIE_Channel_Para>,
             Slot<CIE_Meas_Res>, Slot<CIE_Layer12_Config_Para>, Slot<CIE_GSM_SCell_Sys_Info>,
             Slot<CIE_GSM_SCell_Resel_Sys_Info>, Slot<CIE_GSM_SCell_Radio_Info>, Slot<CIE_GSM_SCell_DSC>,
             Slot<CIE_GSM_NCell_Info>, Slot<CIE_GSM_MS_Muti_Slot_Class>, Slot<CIE_GSM_Ded_CH_Info>,
             Slot<CIE_GSM_Ded_Meas_Info>, Slot<CIE_GSM_SCell_Ch_Radio_Link_Counter>, Slot<CIE_GSM_MS_Class>,
             Slot<CIE_GSM_RAT_Indicate>, Slot<CIE_GSM_LLC_GPRS_Qos_Info>, Slot<CIE_GSM_HO_Num>,
             Slot<CIE_GSM_RLC_GPRS_Qos_Info>>
      slots_;
};

}  // namespace loom
