#include "host/workbook/cell_address.h"

#include "platform/number.h"

namespace loom {

std::string ColumnLetters(std::uint32_t column) {
  std::string letters;
  for (std::uint32_t rest = column + 1; rest > 0; rest = (rest - 1) / 26) {
    letters.insert(letters.begin(), static_cast<char>('A' + (rest - 1) % 26));
  }
  return letters;
}

std::string CellText(CellAddress cell) { return ColumnLetters(cell.column) + std::to_string(cell.row + 1); }

std::optional<CellAddress> ParseCell(std::string_view text) {
  std::uint32_t column = 0;
  std::size_t letters = 0;
  for (; letters < text.size() && text[letters] >= 'A' && text[letters] <= 'Z'; ++letters) {
    column = column * 26 + static_cast<std::uint32_t>(text[letters] - 'A') + 1;
    if (column > kMaxSheetColumns) return std::nullopt;
  }
  const auto row = ParseInt<std::uint32_t>(text.substr(letters));
  if (letters == 0 || !row || *row == 0 || *row > kMaxSheetRows) return std::nullopt;
  return CellAddress{*row - 1, column - 1};
}

}  // namespace loom
