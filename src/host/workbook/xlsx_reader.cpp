#include "host/workbook/xlsx_reader.h"

#include <optional>
#include <set>

#include "host/workbook/cell_text_reader.h"
#include "host/workbook/xlsx_parts_reader.h"
#include "host/workbook/xlsx_sheet_reader.h"

namespace loom {
namespace {

class XlsxReader final : public IWorkbookReader {
 public:
  explicit XlsxReader(const CString& path) : archive_(path), parts_(ReadXlsxParts(archive_)) {
    std::set<CString> taken;
    for (const XlsxSheet& sheet : parts_.sheets) names_.push_back(SheetName(sheet.name, taken));
    if (parts_.styles && archive_.Has(*parts_.styles)) date_styles_ = ReadDateStyles(archive_, *parts_.styles);
  }

  const std::vector<CString>& SheetNames() const override { return names_; }

  void ReadSheet(std::size_t sheet, IWorksheetSink& sink) override {
    std::optional<SharedStrings> strings;
    if (parts_.shared_strings && archive_.Has(*parts_.shared_strings))
      strings.emplace(archive_, *parts_.shared_strings);
    const XlsxCellContext context{strings ? &*strings : nullptr, date_styles_, parts_.from_1904};
    XlsxSheetReader(archive_.Open(parts_.sheets.at(sheet).part), context, sink).Read();
  }

 private:
  ZipReader archive_;
  XlsxParts parts_;
  std::vector<CString> names_;
  std::vector<bool> date_styles_;
};

}  // namespace

std::unique_ptr<IWorkbookReader> OpenXlsx(const CString& path) { return std::make_unique<XlsxReader>(path); }

}  // namespace loom
