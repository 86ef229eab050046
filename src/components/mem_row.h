#pragma once

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <limits>
#include <map>
#include <memory_resource>
#include <new>
#include <optional>
#include <span>
#include <string_view>
#include <utility>
#include <vector>

#include "components/field_value.h"

namespace loom {

// What every row has: its time, its sequence number in its stream, one filter mark per information element.
class CMemDataRowBase {
 public:
  virtual ~CMemDataRowBase() = default;

  void SetRecordTime(double seconds_since_1970) { record_time_s_ = seconds_since_1970; }
  double GetRecordTime() const { return record_time_s_; }
  void SetSynFieldValue(std::int32_t number) { sync_ = number; }
  std::int32_t GetSynFieldValue() const { return sync_; }

  // Makes room for one filter mark per information element, all clear.
  void InitFilterByIENumber(std::size_t count) {
    DropFilters(Memory());
    MakeFilters(static_cast<std::uint32_t>(count), Memory());
  }

 protected:
  CMemDataRowBase() = default;
  CMemDataRowBase(const CMemDataRowBase&) = delete;
  CMemDataRowBase& operator=(const CMemDataRowBase&) = delete;

  virtual std::pmr::memory_resource* Memory() const = 0;  // where all of the row's memory comes from
  void CopyBase(const CMemDataRowBase& other, std::pmr::memory_resource* memory) {
    record_time_s_ = other.record_time_s_;
    sync_ = other.sync_;
    DropFilters(memory);
    has_filter_ = other.has_filter_;
    MakeFilters(other.filter_count_, memory);
    std::ranges::copy(other.FilterWords(), FilterWords().begin());
  }
  void DropFilters(std::pmr::memory_resource* memory) {
    if (filter_count_ > kWordBits) memory->deallocate(filters_.words, WordCount() * sizeof(FilterWord));
    filter_count_ = 0;
  }
  bool FilterMark(std::size_t index) const {
    return index < filter_count_ && (FilterWords()[index / kWordBits] >> index % kWordBits & 1) != 0;
  }
  void SetFilterMark(std::size_t index, bool mark) {
    if (index >= filter_count_) return;
    FilterWord& word = FilterWords()[index / kWordBits];
    const FilterWord bit = FilterWord{1} << index % kWordBits;
    word = mark ? word | bit : word & ~bit;
  }
  void ClearFilters() {
    std::ranges::fill(FilterWords(), FilterWord{0});
    has_filter_ = 0;
  }

  using FilterWord = std::uint64_t;
  static constexpr std::uint32_t kWordBits = 64;

  double record_time_s_ = kInvalidDouble;
  std::int32_t sync_ = 0;
  std::uint32_t has_filter_ : 1 = 0;
  std::uint32_t filter_count_ : 31 = 0;

 private:
  static std::size_t WordCount(std::uint32_t marks) { return (std::size_t{marks} + kWordBits - 1) / kWordBits; }
  std::size_t WordCount() const { return WordCount(filter_count_); }
  std::span<FilterWord> FilterWords() {
    return {filter_count_ > kWordBits ? filters_.words : &filters_.word, WordCount()};
  }
  std::span<const FilterWord> FilterWords() const {
    return {filter_count_ > kWordBits ? filters_.words : &filters_.word, WordCount()};
  }
  void MakeFilters(std::uint32_t count, std::pmr::memory_resource* memory) {
    if (count > kWordBits)
      filters_.words = static_cast<FilterWord*>(memory->allocate(WordCount(count) * sizeof(FilterWord)));
    filter_count_ = count;
    std::ranges::fill(FilterWords(), FilterWord{0});
  }

  // Up to 64 marks stand in the row itself.
  union {
    FilterWord word;
    FilterWord* words;
  } filters_ = {};
};

// One row of a stream: parallel lists of IE ids and values in the order of writing, the texts they refer to, and
// for scanners the spectrum. All memory comes from one memory resource.
class CMemDataRow final : public CMemDataRowBase {
 public:
  explicit CMemDataRow(std::pmr::memory_resource* memory = std::pmr::get_default_resource()) : memory_(memory) {}
  // Copies own their texts and take exactly the room they need.
  CMemDataRow(const CMemDataRow& other) : CMemDataRow(other, std::pmr::get_default_resource()) {}
  CMemDataRow(const CMemDataRow& other, std::pmr::memory_resource* memory) : CMemDataRow(memory) { CopyFrom(other); }
  CMemDataRow& operator=(const CMemDataRow& other) {
    Copy(other);
    return *this;
  }
  ~CMemDataRow() override {
    DropFilters(memory_);
    DropFields();
    DropTexts();
    DropSpectrum();
  }

  bool GetFilter(std::size_t index) const { return FilterMark(index); }
  void SetFilter(std::size_t index, bool filtered) { SetFilterMark(index, filtered); }
  void ResetAllFilter() { ClearFilters(); }
  void SetHasFilterFlag(bool has_filter) { has_filter_ = has_filter ? 1 : 0; }

  // First field with the id, if any.
  std::optional<uniFieldValue> GetIEValueByID(std::int32_t id) const {
    const uniFieldValue* const value = FindIE(id);
    return value != nullptr ? std::optional(*value) : std::nullopt;
  }
  // The same in place, null without one; valid until fields are added.
  const uniFieldValue* FindIE(std::int32_t id) const {
    const std::size_t at = Find(id);
    return at < std::min(id_count_, value_count_) ? Values() + at : nullptr;
  }
  bool Holds(std::int32_t id) const { return Find(id) < id_count_; }

  // Replaces the first field with the id, or appends it.
  void AddIE(std::int32_t id, uniFieldValue value) {
    const std::size_t at = Find(id);
    if (at < std::min(id_count_, value_count_)) {
      Values()[at] = value;
    } else {
      QuickAddIE(id, value);
    }
  }
  // Appends without looking for an earlier field of the id.
  void QuickAddIE(std::int32_t id, uniFieldValue value) {
    if (std::max(id_count_, value_count_) == field_room_) MakeRoom(std::size_t{field_room_} + 1);
    ids_[id_count_++] = id;
    Values()[value_count_++] = value;
  }
  // Appends fields; as many ids as values.
  void QuickAddIEs(std::span<const std::int32_t> ids, std::span<const uniFieldValue> values) {
    MakeRoom(std::max(id_count_, value_count_) + ids.size());
    std::ranges::copy(ids, ids_ + id_count_);
    std::ranges::copy(values, Values() + value_count_);
    id_count_ += static_cast<std::uint32_t>(ids.size());
    value_count_ += static_cast<std::uint32_t>(values.size());
  }
  void RemoveIE(std::int32_t id) {
    const std::size_t at = Find(id);
    if (at == id_count_) return;
    std::copy(ids_ + at + 1, ids_ + id_count_--, ids_ + at);
    if (at < value_count_) std::copy(Values() + at + 1, Values() + value_count_--, Values() + at);
  }

  // Valid until fields are added.
  std::span<std::int32_t> GetParamID() { return {ids_, id_count_}; }
  std::span<const std::int32_t> GetParamID() const { return {ids_, id_count_}; }
  std::span<uniFieldValue> GetParamValue() { return {Values(), value_count_}; }
  std::span<const uniFieldValue> GetParamValue() const { return {Values(), value_count_}; }

  // As many ids and values as that; what is new has no value yet.
  void ResizeFields(std::size_t count) {
    MakeRoom(count);
    id_count_ = value_count_ = static_cast<std::uint32_t>(count);
  }
  // Other ids for the values that are there, not necessarily as many.
  void SetParamID(std::span<const std::int32_t> ids) {
    MakeRoom(ids.size());
    std::ranges::copy(ids, ids_);
    id_count_ = static_cast<std::uint32_t>(ids.size());
  }

  // Keeps a copy of the bytes, zero-terminated, and gives its handle (never 0) for uniFieldValue::Text.
  std::uint32_t AddText(std::string_view bytes) {
    const std::uint32_t handle = text_bytes_ + 1;
    const std::size_t needed = text_bytes_ + bytes.size() + 1;
    if (needed > text_room_) ReserveTexts(std::max(needed, 2 * std::size_t{text_room_}));
    *std::ranges::copy(bytes, texts_ + text_bytes_).out = '\0';
    text_bytes_ = static_cast<std::uint32_t>(needed);
    return handle;
  }
  // The text of a handle up to its terminator; empty for 0 and for a handle that is not of this row.
  std::string_view GetText(std::uint32_t handle) const {
    if (handle == 0 || handle > text_bytes_) return {};
    return std::string_view(texts_ + handle - 1);
  }

  // Spectrum samples of a scanner row; empty when there are none.
  std::span<const float> GetFFTReport() const {
    return spectrum_ != nullptr ? std::span<const float>(*spectrum_) : std::span<const float>();
  }
  std::size_t GetFFTReportPoints() const { return GetFFTReport().size(); }
  void SetFFTReport(std::span<const float> samples) {
    DropSpectrum();
    spectrum_ =
        std::pmr::polymorphic_allocator<>(memory_).new_object<std::pmr::vector<float>>(samples.begin(), samples.end());
  }

  void Reserve(std::size_t fields) { MakeRoom(fields); }
  void ReserveTexts(std::size_t bytes) {  // of all texts, each with its terminator
    if (bytes <= text_room_) return;
    auto* const texts = static_cast<char*>(memory_->allocate(Count(bytes), 1));
    std::copy_n(texts_, text_bytes_, texts);
    const std::uint32_t used = text_bytes_;
    DropTexts();
    texts_ = texts;
    text_bytes_ = used;
    text_room_ = static_cast<std::uint32_t>(bytes);
  }
  // Empties the row; its room stays.
  void Release() {
    id_count_ = value_count_ = 0;
    text_bytes_ = 0;
    DropSpectrum();
  }
  void Copy(const CMemDataRow& other) {
    if (this != &other) CopyFrom(other);
  }
  bool LivesIn(const std::pmr::memory_resource* memory) const { return memory_ == memory; }

 private:
  std::pmr::memory_resource* Memory() const override { return memory_; }
  std::size_t Find(std::int32_t id) const {
    std::size_t at = 0;
    while (at < id_count_ && ids_[at] != id) ++at;
    return at;
  }
  // Behind the room for ids.
  uniFieldValue* Values() const { return reinterpret_cast<uniFieldValue*>(ids_ + field_room_); }

  // Counts of fields and bytes have 32 bits.
  static std::size_t Count(std::size_t count) {
    if (count > std::numeric_limits<std::uint32_t>::max()) throw std::bad_alloc();
    return count;
  }
  static constexpr std::size_t kFieldBytes = sizeof(std::int32_t) + sizeof(uniFieldValue);

  void MakeRoom(std::size_t fields) {
    if (fields > field_room_) Grow(fields);
  }
  [[gnu::noinline]] void Grow(std::size_t fields) {
    const std::size_t room = Count(field_room_ == 0 ? fields : std::max(fields, 2 * std::size_t{field_room_}));
    auto* const ids = static_cast<std::int32_t*>(memory_->allocate(room * kFieldBytes, alignof(std::int32_t)));
    std::copy_n(ids_, id_count_, ids);
    std::copy_n(Values(), value_count_, reinterpret_cast<uniFieldValue*>(ids + room));
    const std::uint32_t id_count = id_count_;
    const std::uint32_t value_count = value_count_;
    DropFields();
    ids_ = ids;
    field_room_ = static_cast<std::uint32_t>(room);
    id_count_ = id_count;
    value_count_ = value_count;
  }
  void DropFields() {
    if (field_room_ > 0) memory_->deallocate(ids_, field_room_ * kFieldBytes, alignof(std::int32_t));
    id_count_ = value_count_ = field_room_ = 0;
  }
  void DropTexts() {
    if (text_room_ > 0) memory_->deallocate(texts_, text_room_, 1);
    text_bytes_ = text_room_ = 0;
  }
  void DropSpectrum() {
    if (spectrum_ != nullptr) std::pmr::polymorphic_allocator<>(memory_).delete_object(spectrum_);
    spectrum_ = nullptr;
  }
  void CopyFrom(const CMemDataRow& other) {
    CopyBase(other, memory_);
    Release();
    MakeRoom(std::max(other.id_count_, other.value_count_));
    std::copy_n(other.ids_, other.id_count_, ids_);
    std::copy_n(other.Values(), other.value_count_, Values());
    id_count_ = other.id_count_;
    value_count_ = other.value_count_;
    ReserveTexts(other.text_bytes_);
    std::copy_n(other.texts_, other.text_bytes_, texts_);
    text_bytes_ = other.text_bytes_;
    if (other.spectrum_ != nullptr) SetFFTReport(*other.spectrum_);
  }

  std::pmr::memory_resource* memory_;
  std::int32_t* ids_ = nullptr;  // one piece of memory with room for the ids and, behind it, for the values
  char* texts_ = nullptr;
  std::pmr::vector<float>* spectrum_ = nullptr;
  std::uint32_t field_room_ = 0;
  std::uint32_t id_count_ = 0;
  std::uint32_t value_count_ = 0;
  std::uint32_t text_room_ = 0;
  std::uint32_t text_bytes_ = 0;
};

// Rows of a stream by row number, from 1. Rows live in the map's own memory resource, which the stream owns and
// releases as a whole: nobody deletes a stored row.
using RowMap = std::pmr::map<std::int32_t, CMemDataRow*>;

// Stores a copy of the row, exactly sized, under a number that is usually the next one.
inline CMemDataRow* StoreRow(RowMap& rows, std::int32_t number, const CMemDataRow& row) {
  std::pmr::memory_resource* memory = rows.get_allocator().resource();
  void* place = memory->allocate(sizeof(CMemDataRow), alignof(CMemDataRow));
  auto* stored = new (place) CMemDataRow(row, memory);
  rows.insert_or_assign(rows.end(), number, stored);
  return stored;
}

// A row of a merged dual-protocol stream: the source row and its numbers in the two source streams (0 = not from it).
struct CMergeDataRow_2M {
  CMemDataRow* row = nullptr;
  std::uint32_t td_row_number = 0;
  std::uint32_t gsm_row_number = 0;
};
using MergedRowMap = std::pmr::map<std::int32_t, CMergeDataRow_2M>;

}  // namespace loom
