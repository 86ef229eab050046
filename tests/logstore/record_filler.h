#pragma once

#include <cstddef>
#include <memory_resource>
#include <string>
#include <tuple>
#include <utility>

#include "components/records/testdata.h"

namespace loom::records {

// Calls the function with the pointer to every block of a record.
template <class Function>
void ForEachBlock(Function&& function) {
  [&]<std::size_t... kBlock>(std::index_sequence<kBlock...>)->void { (function(std::get<kBlock>(kRecordBlocks)), ...); }
  (std::make_index_sequence<std::tuple_size_v<std::remove_cv_t<decltype(kRecordBlocks)>>>());
}

// Gives every field of a record a value that differs from its neighbours', lists of two entries included.
void FillRecord(CTestdataBase& record, std::pmr::memory_resource& arena);

// Names of the blocks in which two records differ, "header" for the header; every field of the descriptions counts.
std::string DifferingParts(const CTestdataBase& a, const CTestdataBase& b);

}  // namespace loom::records
