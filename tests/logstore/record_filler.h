#pragma once

#include <cstddef>
#include <memory_resource>
#include <string>

#include "components/records/block_table.h"

namespace loom::records {

// Gives every field of a record a value that differs from its neighbours', lists of two entries included.
void FillRecord(CTestdataBase& record, std::pmr::memory_resource& arena);

// Names of the blocks in which two records differ, "header" for the header; every field of the descriptions counts.
std::string DifferingParts(const CTestdataBase& a, const CTestdataBase& b);

}  // namespace loom::records
