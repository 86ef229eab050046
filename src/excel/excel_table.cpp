#include <algorithm>
#include <array>

#include "components/dt_time.h"
#include "excel/excel_exporter.h"
#include "platform/number.h"

// Tables: filled from subjects, cut into pieces, written to worksheets.
namespace loom {
namespace {

constexpr std::int32_t kMostColumns = 702;        // A to ZZ
constexpr std::int32_t kRecordsPerSheet = 65534;  // beside the header
constexpr const char* kFirstCell = "A1";
constexpr std::string_view kInvalidText = "-255";
constexpr std::string_view kTimeColumn = "RecordTime";
constexpr int kTimeFormat = 127;  // with the date, which a time of day alone cannot tell apart

CString CellTextOf(const CString& column, CString text) {
  if (text.view() == kInvalidText) return {};
  if (column.view() != kTimeColumn || text.IsEmpty()) return text;
  const double time_s = PrefixDouble(text);
  return time_s != -255.0 ? CDTTime(time_s).ToString(kTimeFormat) : text;
}

void CreateTable(COleSafeArray& table, std::int32_t rows, std::size_t columns) {
  table.Create(VT_VARIANT, std::array{static_cast<std::uint32_t>(rows), static_cast<std::uint32_t>(columns)});
}

template <class Data>
void Arrange(Data& data, COleSafeArray& table, const std::vector<CString>& columns) {
  const std::int32_t rows = data.GetRowCount();
  CreateTable(table, rows + 1, columns.size());
  std::transform(columns.begin(), columns.end(), table.Row(0).begin(),
                 [](const CString& column) { return VARIANT(column); });
  if (rows > 0) {
    data.BeginReading();
    data.MoveFirst();
  }
  for (std::int32_t row = 0; row < rows; ++row) {
    const std::span<VARIANT> cells = table.Row(row + 1);
    for (std::size_t at = 0; at < columns.size(); ++at)
      cells[at] = VARIANT(CellTextOf(columns[at], data.GetFieldText(columns[at])));
    data.Move(1);
  }
  if (data.GetRowCount() > 0) data.EndReading();
}

// Letters of a column from 0: at most two.
std::string ColumnLetters(std::int32_t column) {
  const std::int32_t quotient = column / 26;
  if (quotient < 1) return {static_cast<char>(65 + column)};
  return {static_cast<char>(64 + quotient), static_cast<char>(65 + (column - 26 * quotient))};
}

std::string CellName(const std::string& letters, std::int32_t row_number) {
  return letters + std::to_string(row_number);
}

}  // namespace

void CExcelExporter::ArrangeExcelData(IRecordsetData* data, COleSafeArray& table, std::vector<CString>& columns) {
  Arrange(*data, table, columns);
}

void CExcelExporter::ArrangeExcelData(IMemoryData* data, COleSafeArray& table, std::vector<CString>& columns) {
  Arrange(*data, table, columns);
}

void CExcelExporter::BuildTable(ISubject* subject, COleSafeArray& table, std::vector<CString>& columns) {
  if (subject == nullptr) throw Error("there is no subject to export");
  if (IsRecordsetKind(subject->GetSubjectKind())) {
    auto* data = dynamic_cast<IRecordsetData*>(subject);
    if (data == nullptr) throw Error("a subject of a record set cannot be read as one");
    return ArrangeExcelData(data, table, columns);
  }
  auto* data = dynamic_cast<IMemoryData*>(subject);
  if (data == nullptr) throw Error("a subject of rows in memory cannot be read as one");
  ArrangeExcelData(data, table, columns);
}

void CExcelExporter::CaculateArray(std::int32_t row_count, std::vector<std::int32_t>& pieces) {
  const std::int32_t full_pieces = (row_count - 2) / kRecordsPerSheet;
  if (full_pieces == 0) {
    pieces.push_back(row_count);
    return;
  }
  pieces.insert(pieces.end(), static_cast<std::size_t>(full_pieces), kRecordsPerSheet + 1);
  pieces.push_back(row_count - kRecordsPerSheet * full_pieces);
}

void CExcelExporter::SplitSafeArray(COleSafeArray* table, std::vector<COleSafeArray>& pieces) {
  const auto copy_row = [&](std::int32_t from, COleSafeArray& piece, std::int32_t to) {
    const std::span<const VARIANT> cells = std::as_const(*table).Row(from);
    std::copy(cells.begin(), cells.end(), piece.Row(to).begin());
  };
  std::int32_t base = 0;
  for (COleSafeArray& piece : pieces) {
    const std::int32_t rows = piece.GetUBound(1);  // its last row stays empty
    copy_row(0, piece, 0);
    for (std::int32_t row = 1; row < rows; ++row) copy_row(base + row, piece, row);
    base += kRecordsPerSheet;
  }
}

void CExcelExporter::WriteMultiSheetFile(COleSafeArray* table) {
  const std::int32_t last_row = table->GetUBound(1);
  const std::int32_t columns = table->GetUBound(2) + 1;
  if (columns < 1 || columns > kMostColumns)
    throw AutomationError("a table has 1 to 702 columns, not " + std::to_string(columns));
  const std::string letters = ColumnLetters(columns - 1);
  std::vector<std::int32_t> piece_rows;
  CaculateArray(last_row + 1, piece_rows);
  // Behind a table in pieces that ended with the last sheet there is none in advance.
  if (current_sheet_ > sheets_.GetCount()) AddSheetBehind(sheets_.GetCount());
  if (piece_rows.size() > 1) return WritePieces(*table, letters, piece_rows);
  if (current_sheet_ > 2) AddSheetBehind(current_sheet_);
  WriteSheet(current_sheet_name_, CellName(letters, last_row + 1), *table);
}

void CExcelExporter::WritePieces(COleSafeArray& table, const std::string& letters,
                                 const std::vector<std::int32_t>& piece_rows) {
  std::vector<COleSafeArray> pieces(piece_rows.size());
  for (std::size_t at = 0; at < pieces.size(); ++at) {
    CreateTable(pieces[at], piece_rows[at] + 1, static_cast<std::size_t>(table.GetUBound(2)) + 1);
  }
  SplitSafeArray(&table, pieces);
  for (std::size_t at = 0; at < pieces.size(); ++at) {
    if (at > 0) {
      AddSheetBehind(current_sheet_);
      ++current_sheet_;
    }
    WriteSheet(Format("%s_%d", current_sheet_name_, at + 1), CellName(letters, piece_rows[at] + 1), pieces[at]);
  }
}

void CExcelExporter::AddSheetBehind(std::int32_t number) {
  const _Worksheet before = sheets_.GetItem(VARIANT::I2(static_cast<std::int16_t>(number)));
  const VARIANT missing = VARIANT::Missing();
  sheets_.Add(missing, VARIANT(before.GetDispatch()), missing, missing);
}

void CExcelExporter::WriteSheet(const CString& sheet_name, const std::string& last_cell, const COleSafeArray& values) {
  const _Worksheet sheet = sheets_.GetItem(VARIANT::I2(static_cast<std::int16_t>(current_sheet_)));
  sheet.SetName(sheet_name);
  const Range range = sheet.GetRange(VARIANT(kFirstCell), VARIANT(std::string_view(last_cell)));
  range.SetVerticalAlignment(VARIANT::I2(kXlCenter));
  range.SetValue(VARIANT(values));
}

}  // namespace loom
