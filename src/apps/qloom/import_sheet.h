#pragma once

#include <string>
#include <vector>

#include "apps/qloom/command_line.h"
#include "apps/qloom/window_steps.h"

namespace loom {

// The options of the settings sheet of a log import as they stand on the command line.
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
// None when none of the options is given: the sheet stays closed.
std::vector<WindowPage> ImportSheetPages(const ImportSheetOptions& options);

}  // namespace loom
