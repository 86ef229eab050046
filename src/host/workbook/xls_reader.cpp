#include "host/workbook/xls_reader.h"

#include <freexl.h>

#include <set>

#include "host/workbook/biff_formula_reader.h"
#include "host/workbook/cell_date_reader.h"
#include "host/workbook/cell_text_reader.h"
#include "platform/encoding.h"
#include "platform/error.h"

namespace loom {
namespace {

const char* OpenFailure(int result) {
  switch (result) {
    case FREEXL_BIFF_INVALID_BOF:
    case FREEXL_BIFF_WORKBOOK_NOT_FOUND:
      return "is a compound file, but no workbook";
    case FREEXL_INSUFFICIENT_MEMORY:
      return "needs more memory than there is";
    default:
      return "is a damaged workbook";
  }
}

class XlsReader final : public IWorkbookReader {
 public:
  explicit XlsReader(const CString& path) : path_(path) {
    const int result = freexl_open(GbkPathToNative(path).c_str(), &handle_.get());
    if (result != FREEXL_OK) Fail(OpenFailure(result), result);
    if (Info(FREEXL_BIFF_PASSWORD) == FREEXL_BIFF_OBFUSCATED) throw FileError(path, 0, "is encrypted");
    const unsigned sheets = Info(FREEXL_BIFF_SHEET_COUNT);
    std::set<CString> taken;
    for (unsigned sheet = 0; sheet < sheets; ++sheet) {
      const char* name = nullptr;
      const int named = freexl_get_worksheet_name(handle_.get(), static_cast<unsigned short>(sheet), &name);
      if (named != FREEXL_OK || name == nullptr) Fail("has a sheet without a name", named);
      names_.push_back(SheetName(name, taken));
    }
  }

  const std::vector<CString>& SheetNames() const override { return names_; }

  void ReadSheet(std::size_t sheet, IWorksheetSink& sink) override {
    unsigned rows = 0;
    unsigned short columns = 0;
    Check(freexl_select_active_worksheet(handle_.get(), static_cast<unsigned short>(sheet)), "a sheet cannot be read");
    Check(freexl_worksheet_dimensions(handle_.get(), &rows, &columns), "a sheet cannot be read");
    const BiffResults results = ReadBiffResults(path_, sheet);
    std::vector<WorksheetCell> cells;
    for (unsigned row = 0; row < rows; ++row) {
      cells.clear();
      for (unsigned short column = 0; column < columns; ++column) AddCell(row, column, results, cells);
      if (!cells.empty() && !sink.OnRow(row + 1, cells)) return;
    }
  }

 private:
  // freexl's handle, closed with the reader.
  class Handle {
   public:
    Handle() = default;
    Handle(const Handle&) = delete;
    Handle& operator=(const Handle&) = delete;
    ~Handle() {
      if (handle_ != nullptr) freexl_close(handle_);
    }
    const void*& get() { return handle_; }

   private:
    const void* handle_ = nullptr;
  };

  [[noreturn]] void Fail(const char* what, int result) const {
    throw FileError(path_, 0, std::string(what) + " (" + std::to_string(result) + ")");
  }
  void Check(int result, const char* what) const {
    if (result != FREEXL_OK) Fail(what, result);
  }
  unsigned Info(unsigned short what) {
    unsigned value = 0;
    Check(freexl_get_info(handle_.get(), what, &value), "cannot be read");
    return value;
  }

  void AddCell(unsigned row, unsigned short column, const BiffResults& results, std::vector<WorksheetCell>& cells) {
    if (const auto found = results.find({row, column}); found != results.end()) {
      const BiffResult& result = found->second;
      if (result.kind == WorksheetCell::Kind::kText && result.text.empty()) return;
      cells.push_back({column, result.kind, result.number, result.text});
      return;
    }
    FreeXL_CellValue value;
    Check(freexl_get_cell_value(handle_.get(), row, column, &value), "a cell cannot be read");
    WorksheetCell cell;
    cell.column = column;
    switch (value.type) {
      case FREEXL_CELL_INT:
        cell.kind = WorksheetCell::Kind::kNumber;
        cell.number = value.value.int_value;
        break;
      case FREEXL_CELL_DOUBLE:
        cell.kind = WorksheetCell::Kind::kNumber;
        cell.number = value.value.double_value;
        break;
      case FREEXL_CELL_TEXT:
      case FREEXL_CELL_SST_TEXT:
        cell.text = value.value.text_value != nullptr ? value.value.text_value : "";
        if (cell.text.empty()) return;
        break;
      case FREEXL_CELL_DATE:
      case FREEXL_CELL_DATETIME:
      case FREEXL_CELL_TIME:
        cell.text = value.value.text_value;
        if (const auto days = DaysOfIsoText(cell.text)) {
          cell.kind = WorksheetCell::Kind::kDate;
          cell.number = *days;
        }
        break;
      default:
        return;
    }
    cells.push_back(cell);
  }

  CString path_;
  Handle handle_;
  std::vector<CString> names_;
};

}  // namespace

std::unique_ptr<IWorkbookReader> OpenXls(const CString& path) { return std::make_unique<XlsReader>(path); }

}  // namespace loom
