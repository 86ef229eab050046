#include "tests/logstore/record_filler.h"

#include <algorithm>
#include <cstdint>
#include <span>
#include <type_traits>

#include "components/records/blocks_gsm.h"
#include "components/records/blocks_lte.h"
#include "components/records/blocks_scan.h"
#include "components/records/blocks_service.h"
#include "components/records/blocks_td.h"
#include "components/records/blocks_td_more.h"
#include "components/records/testdata.h"
#include "host/logstore/record_value_traits.h"

namespace loom::records {
namespace {

class RecordFiller {
 public:
  explicit RecordFiller(std::pmr::memory_resource& arena) : arena_(arena) {}

  void Fill(CTestdataBase& record) {
    FillValue(record);
    ForEachBlock([&](const auto& row) { record.*row.member = &FillValue(*Make<BlockOfRow<decltype(row)>>(1)); });
  }

 private:
  template <class Row>
  using BlockOfRow = typename std::remove_cvref_t<Row>::Block;

  template <class T>
  T* Make(std::size_t count) {
    T* made = static_cast<T*>(arena_.allocate(count * sizeof(T), alignof(T)));
    for (std::size_t i = 0; i < count; ++i) new (made + i) T{};
    return made;
  }

  RecordText NextText() {
    const std::string text = "text" + std::to_string(++next_);
    char* kept = Make<char>(text.size());
    text.copy(kept, text.size());
    return {kept, text.size()};
  }

  template <class T>
  T& FillValue(T& value) {
    if constexpr (kIsNumber<T>) {
      ++next_;
      value = static_cast<T>(next_ % 120 + (sizeof(T) > 1 ? 256 * (next_ % 50) : 0));
    } else if constexpr (kIsTime<T>) {
      value.seconds = ++next_ + 0.125;
    } else if constexpr (kIsText<T>) {
      value = NextText();
    } else if constexpr (kIsBytes<T>) {
      value = T(std::as_bytes(std::span(NextText())));
    } else if constexpr (kIsArray<T>) {
      for (auto& entry : value) FillValue(entry);
    } else if constexpr (kIsInlineList<T>) {
      value.size = 2;
      for (std::uint8_t i = 0; i < value.size; ++i) FillValue(value.entries[i]);
    } else if constexpr (kIsList<T>) {
      auto* entries = Make<std::remove_cv_t<typename T::element_type>>(2);
      value = {&FillValue(entries[0]), 2};
      FillValue(entries[1]);
    } else if constexpr (kIsPart<T>) {
      FillValue(value.emplace());
    } else {
      ForEachField<T>([&](const auto& field) { FillValue(value.*field.member); });
    }
    return value;
  }

  std::pmr::memory_resource& arena_;
  int next_ = 0;
};

// Whether two values agree in every field of their description, entries and parts included.
template <class T>
bool AllFieldsEqual(const T& a, const T& b) {
  if constexpr (kIsNumber<T> || kIsTime<T> || kIsText<T>) {
    return a == b;
  } else if constexpr (kIsBytes<T>) {
    return std::ranges::equal(BytesOf(a), BytesOf(b));
  } else if constexpr (kIsArray<T> || kIsInlineList<T> || kIsList<T>) {
    return std::equal(a.begin(), a.end(), b.begin(), b.end(),
                      [](const auto& left, const auto& right) { return AllFieldsEqual(left, right); });
  } else if constexpr (kIsPart<T>) {
    return a.has_value() == b.has_value() && (!a || AllFieldsEqual(*a, *b));
  } else {
    bool equal = true;
    ForEachField<T>([&](const auto& field) { equal = equal && AllFieldsEqual(a.*field.member, b.*field.member); });
    return equal;
  }
}

}  // namespace

void FillRecord(CTestdataBase& record, std::pmr::memory_resource& arena) { RecordFiller(arena).Fill(record); }

std::string DifferingParts(const CTestdataBase& a, const CTestdataBase& b) {
  std::string names = AllFieldsEqual(a, b) ? "" : "header ";
  ForEachBlock([&](const auto& row) {
    const auto* left = a.*row.member;
    const auto* right = b.*row.member;
    const bool same = left && right ? AllFieldsEqual(*left, *right) : left == right;
    if (!same) names += std::string(row.name) + " ";
  });
  return names;
}

}  // namespace loom::records
