#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace loom {

// Limits of the workbook format.
inline constexpr std::uint32_t kMaxSheetRows = 1048576;
inline constexpr std::uint32_t kMaxSheetColumns = 16384;
inline constexpr std::size_t kMaxCellCharacters = 32767;
inline constexpr std::size_t kMaxSheetNameCharacters = 31;

// A cell by row and column, both from 0.
struct CellAddress {
  std::uint32_t row = 0;
  std::uint32_t column = 0;
  friend bool operator==(const CellAddress&, const CellAddress&) = default;
};

std::string ColumnLetters(std::uint32_t column);
std::string CellText(CellAddress cell);                       // "B2"
std::optional<CellAddress> ParseCell(std::string_view text);  // nothing for a text that names no cell of a sheet

}  // namespace loom
