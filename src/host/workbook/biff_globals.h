#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace loom {

// What the cells of a BIFF workbook refer to.
struct BiffGlobals {
  bool is_biff8 = false;
  bool from_1904 = false;
  unsigned code_page = 1252;          // of the texts before BIFF8
  std::vector<std::uint32_t> sheets;  // where each starts in the stream
  std::vector<bool> date_styles;      // by number of a cell's format: whether it shows dates
};
BiffGlobals ReadBiffGlobals(std::string_view stream);

}  // namespace loom
