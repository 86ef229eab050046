#pragma once

#include <functional>
#include <optional>
#include <string>
#include <vector>

#include "apps/qloom/command_line.h"
#include "platform/ui/property_sheet.h"

namespace loom {

// What the settings sheet of a log import is filled with; what is not given stays as the sheet shows it.
struct ImportSheetAnswers {
  std::vector<CString> ies;              // leaves to tick, and no others
  std::optional<CString> load_template;  // before the leaves are ticked
  std::optional<CString> save_template;
  bool merges = false;                           // whether merging is switched on
  int type_radio = 0;                            // 0: as shown
  std::vector<std::pair<int, CString>> numbers;  // edits of that type
  int value_radio = 0;                           // 0: as shown
  std::optional<CString> ue_parameter;
  std::optional<CString> scanner_parameter;
};

// The options of the sheet as they stand on the command line.
struct ImportSheetOptions {
  std::vector<std::string> ies;
  std::string load_template;
  std::string save_template;
  std::string binning;
  std::string value;
  std::string ue_parameter;
  std::string scanner_parameter;
};
void AddImportSheetOptions(Command& command, ImportSheetOptions& options);
// Nothing when none of them is given: the sheet stays closed.
std::optional<ImportSheetAnswers> ImportSheetAnswersFrom(const ImportSheetOptions& options);

bool IsImportSheet(const CPropertySheet& sheet);

// Fills the pages and presses OK. `pick_file` is told the file for the file dialog that comes next. False when the
// sheet did not accept what it holds, which a message has said; it is closed then. Throws Error for an answer that the
// sheet has no place for and a template that cannot be used.
bool FillImportSheet(CPropertySheet& sheet, const ImportSheetAnswers& answers,
                     const std::function<void(const CString&)>& pick_file);

}  // namespace loom
