// Any bytes as a workbook: refused with a reason that names the file, or readable sheet by sheet.
#include <cstdlib>

#include "components/workbook_reader.h"
#include "fuzz/memory_file.h"
#include "fuzz/target.h"
#include "platform/encoding.h"
#include "platform/error.h"

namespace {

using namespace loom;

// Rows and cells come in order where the cells of a row are concerned, and texts are there to be read.
class CheckingSink final : public IWorksheetSink {
 public:
  bool OnRow(std::uint32_t row, std::span<const WorksheetCell> cells) override {
    if (row == 0 || cells.empty()) std::abort();
    const WorksheetCell* previous = nullptr;
    for (const WorksheetCell& cell : cells) {
      if (previous != nullptr && cell.column <= previous->column) std::abort();
      if (cell.kind == WorksheetCell::Kind::kText && Utf8ToGbkOr(cell.text, '?').IsEmpty()) std::abort();
      previous = &cell;
    }
    return ++rows_ < 10'000;
  }

 private:
  int rows_ = 0;
};

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const MemoryFile file(data, size);
  try {
    const auto workbook = OpenWorkbookReader(file.Path());
    for (std::size_t sheet = 0; sheet < workbook->SheetNames().size(); ++sheet) {
      CheckingSink sink;
      workbook->ReadSheet(sheet, sink);
    }
  } catch (const Error& error) {
    if (std::string(error.what()).find("/proc/self/fd/") == std::string::npos) std::abort();
  }
  return 0;
}
