#pragma once

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <map>
#include <memory>
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
  std::size_t WordCount() const { return (filter_count_ + kWordBits - 1) / kWordBits; }
  std::span<FilterWord> FilterWords() {
    return {filter_count_ > kWordBits ? filters_.words : &filters_.word, WordCount()};
  }
  std::span<const FilterWord> FilterWords() const {
    return {filter_count_ > kWordBits ? filters_.words : &filters_.word, WordCount()};
  }
  void MakeFilters(std::uint32_t count, std::pmr::memory_resource* memory) {
    filter_count_ = count;
    if (count > kWordBits)
      filters_.words = static_cast<FilterWord*>(memory->allocate(WordCount() * sizeof(FilterWord)));
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
  using IdVector = std::pmr::vector<std::int32_t>;
  using ValueVector = std::pmr::vector<uniFieldValue>;

  explicit CMemDataRow(std::pmr::memory_resource* memory = std::pmr::get_default_resource())
      : ids_(memory), values_(memory), texts_(memory), spectrum_(nullptr) {}
  // Copies own their texts; a copy into a memory resource takes exactly the room it needs.
  CMemDataRow(const CMemDataRow& other) : CMemDataRow(other, std::pmr::get_default_resource()) {}
  CMemDataRow(const CMemDataRow& other, std::pmr::memory_resource* memory)
      : ids_(other.ids_, memory), values_(other.values_, memory), texts_(other.texts_, memory), spectrum_(nullptr) {
    CopyBase(other, memory);
    if (other.spectrum_ != nullptr) SetFFTReport(*other.spectrum_);
  }
  CMemDataRow& operator=(const CMemDataRow& other) {
    Copy(other);
    return *this;
  }
  ~CMemDataRow() override {
    DropFilters(ids_.get_allocator().resource());
    DropSpectrum();
  }

  bool GetFilter(std::size_t index) const { return FilterMark(index); }
  void SetFilter(std::size_t index, bool filtered) { SetFilterMark(index, filtered); }
  void ResetAllFilter() { ClearFilters(); }
  void SetHasFilterFlag(bool has_filter) { has_filter_ = has_filter ? 1 : 0; }

  // First field with the id, if any.
  std::optional<uniFieldValue> GetIEValueByID(std::int32_t id) const {
    const std::size_t at = Find(id);
    return at < ids_.size() ? std::optional(values_[at]) : std::nullopt;
  }
  bool Holds(std::int32_t id) const { return Find(id) < ids_.size(); }

  // Replaces the first field with the id, or appends it.
  void AddIE(std::int32_t id, uniFieldValue value) {
    const std::size_t at = Find(id);
    if (at < ids_.size()) {
      values_[at] = value;
    } else {
      QuickAddIE(id, value);
    }
  }
  // Appends without looking for an earlier field of the id.
  void QuickAddIE(std::int32_t id, uniFieldValue value) {
    ids_.push_back(id);
    values_.push_back(value);
  }
  // Appends fields; as many ids as values.
  void QuickAddIEs(std::span<const std::int32_t> ids, std::span<const uniFieldValue> values) {
    ids_.insert(ids_.end(), ids.begin(), ids.end());
    values_.insert(values_.end(), values.begin(), values.end());
  }
  void RemoveIE(std::int32_t id) {
    const std::size_t at = Find(id);
    if (at == ids_.size()) return;
    ids_.erase(ids_.begin() + static_cast<std::ptrdiff_t>(at));
    values_.erase(values_.begin() + static_cast<std::ptrdiff_t>(at));
  }

  IdVector& GetParamID() { return ids_; }
  const IdVector& GetParamID() const { return ids_; }
  ValueVector& GetParamValue() { return values_; }
  const ValueVector& GetParamValue() const { return values_; }

  // Keeps a copy of the bytes, zero-terminated, and gives its handle (never 0) for uniFieldValue::Text.
  std::uint32_t AddText(std::string_view bytes) {
    const auto handle = static_cast<std::uint32_t>(texts_.size()) + 1;
    texts_.insert(texts_.end(), bytes.begin(), bytes.end());
    texts_.push_back('\0');
    return handle;
  }
  // The text of a handle up to its terminator; empty for 0 and for a handle that is not of this row.
  std::string_view GetText(std::uint32_t handle) const {
    if (handle == 0 || handle > texts_.size()) return {};
    return std::string_view(texts_.data() + handle - 1);
  }

  // Spectrum samples of a scanner row; empty when there are none.
  std::span<const float> GetFFTReport() const {
    return spectrum_ != nullptr ? std::span<const float>(*spectrum_) : std::span<const float>();
  }
  std::size_t GetFFTReportPoints() const { return GetFFTReport().size(); }
  void SetFFTReport(std::span<const float> samples) {
    DropSpectrum();
    spectrum_ =
        std::pmr::polymorphic_allocator<>(Memory()).new_object<std::pmr::vector<float>>(samples.begin(), samples.end());
  }

  void Reserve(std::size_t fields) {
    ids_.reserve(fields);
    values_.reserve(fields);
  }
  void ReserveTexts(std::size_t bytes) { texts_.reserve(bytes); }  // of all texts, each with its terminator
  // Gives unused room back.
  void Shrink() {
    ids_.shrink_to_fit();
    values_.shrink_to_fit();
  }
  // Empties the row.
  void Release() {
    ids_.clear();
    values_.clear();
    texts_.clear();
    DropSpectrum();
  }
  void Copy(const CMemDataRow& other) {
    if (this == &other) return;
    CopyBase(other, Memory());
    ids_ = other.ids_;
    values_ = other.values_;
    texts_ = other.texts_;
    DropSpectrum();
    if (other.spectrum_ != nullptr) SetFFTReport(*other.spectrum_);
  }

 private:
  std::pmr::memory_resource* Memory() const override { return ids_.get_allocator().resource(); }
  std::size_t Find(std::int32_t id) const {
    std::size_t at = 0;
    while (at < ids_.size() && ids_[at] != id) ++at;
    return at;
  }
  void DropSpectrum() {
    if (spectrum_ != nullptr) std::pmr::polymorphic_allocator<>(Memory()).delete_object(spectrum_);
    spectrum_ = nullptr;
  }

  IdVector ids_;
  ValueVector values_;
  std::pmr::vector<char> texts_;
  std::pmr::vector<float>* spectrum_;
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

// An empty row under a number above those that are there, to be filled in place.
inline CMemDataRow* AppendRow(RowMap& rows, std::int32_t number) {
  std::pmr::memory_resource* memory = rows.get_allocator().resource();
  void* place = memory->allocate(sizeof(CMemDataRow), alignof(CMemDataRow));
  auto* row = new (place) CMemDataRow(memory);
  rows.emplace_hint(rows.end(), number, row);
  return row;
}

// A row of a merged dual-protocol stream: the source row and its numbers in the two source streams (0 = not from it).
struct CMergeDataRow_2M {
  CMemDataRow* row = nullptr;
  std::uint32_t td_row_number = 0;
  std::uint32_t gsm_row_number = 0;
};
using MergedRowMap = std::pmr::map<std::int32_t, CMergeDataRow_2M>;

}  // namespace loom
