#include "host/workbook/xls_reader.h"

#include <freexl.h>

#include <algorithm>
#include <set>

#include "host/workbook/biff_sheet_reader.h"
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

constexpr unsigned kXlsColumns = 256;

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
    unsigned shared_rows = 0;
    unsigned short columns = 0;
    Check(freexl_select_active_worksheet(handle_.get(), static_cast<unsigned short>(sheet)), "a sheet cannot be read");
    Check(freexl_worksheet_dimensions(handle_.get(), &shared_rows, &columns), "a sheet cannot be read");
    const BiffSheet own = ReadBiffSheet(path_, sheet);
    auto next = own.cells.begin();
    const unsigned rows = std::max(shared_rows, own.cells.empty() ? 0 : own.cells.back().row + 1);
    std::vector<WorksheetCell> cells;
    for (unsigned row = 0; row < rows; ++row) {
      cells.clear();
      for (unsigned column = 0; column < kXlsColumns; ++column) {
        const bool is_own = next != own.cells.end() && next->row == row && next->cell.column == column;
        if (is_own) AddOwnCell((next++)->cell, cells);
        if (!is_own && row < shared_rows && column < columns)
          AddSharedText(row, static_cast<unsigned short>(column), cells);
      }
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

  static void AddOwnCell(const WorksheetCell& cell, std::vector<WorksheetCell>& cells) {
    if (cell.kind != WorksheetCell::Kind::kText || !cell.text.empty()) cells.push_back(cell);
  }

  // The texts of cells stand in a table that the library reads.
  void AddSharedText(unsigned row, unsigned short column, std::vector<WorksheetCell>& cells) {
    FreeXL_CellValue value;
    Check(freexl_get_cell_value(handle_.get(), row, column, &value), "a cell cannot be read");
    const bool is_text = value.type == FREEXL_CELL_TEXT || value.type == FREEXL_CELL_SST_TEXT;
    if (!is_text || value.value.text_value == nullptr || *value.value.text_value == '\0') return;
    WorksheetCell& cell = cells.emplace_back();
    cell.column = column;
    cell.text = value.value.text_value;
  }

  CString path_;
  Handle handle_;
  std::vector<CString> names_;
};

}  // namespace

std::unique_ptr<IWorkbookReader> OpenXls(const CString& path) { return std::make_unique<XlsReader>(path); }

}  // namespace loom
