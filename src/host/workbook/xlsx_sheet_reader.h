#pragma once

#include <optional>
#include <string>
#include <vector>

#include "components/workbook_reader.h"
#include "host/workbook/cell_text_reader.h"
#include "host/workbook/xlsx_parts_reader.h"

namespace loom {

// What the cells of a sheet refer to.
struct XlsxCellContext {
  SharedStrings* strings = nullptr;  // null: the workbook has none
  const std::vector<bool>& date_styles;
  bool from_1904 = false;
};

// One worksheet part, row by row.
class XlsxSheetReader : private XmlPartHandler {
 public:
  XlsxSheetReader(ZipPart part, const XlsxCellContext& context, IWorksheetSink& sink)
      : reader_(std::move(part), *this), context_(context), sink_(sink) {}
  void Read();

 private:
  // A cell of the row being read; its text stands in texts_, which moves as it grows.
  struct PendingCell {
    WorksheetCell cell;
    std::optional<std::size_t> own_text_at;
  };

  void OnStart(std::string_view name, const XmlAttributes& attributes, int depth) override;
  void OnEnd(std::string_view name, int depth) override;
  void OnText(std::string_view text) override;
  void BeginRow(const XmlAttributes& attributes);
  void BeginCell(const XmlAttributes& attributes);
  void EndCell();
  void EndRow();
  bool TakeValue(WorksheetCell& cell);
  bool TakeNumber(WorksheetCell& cell);
  void TakeOwnText(WorksheetCell::Kind kind, std::string_view text);
  std::string Place() const;  // "cell C7"

  XmlPartReader reader_;
  const XlsxCellContext context_;
  IWorksheetSink& sink_;
  bool in_rows_ = false;
  bool in_value_ = false;
  bool in_inline_ = false;
  bool has_formula_ = false;
  std::uint32_t row_ = 0;
  std::uint32_t next_column_ = 0;
  std::uint32_t merged_ranges_ = 0;
  std::uint64_t style_ = 0;
  std::string type_;
  std::string value_;
  StringElement inline_;
  std::string texts_;
  std::vector<PendingCell> pending_;
  std::vector<WorksheetCell> cells_;
};

}  // namespace loom
