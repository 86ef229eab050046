#pragma once

#include <optional>
#include <vector>

#include "manager/log_opener.h"

namespace loom {

// What a person chose for one batch of logs.
struct LogSelection {
  std::vector<CString> paths;      // up to the first whose file cannot be found
  std::optional<CString> missing;  // which is this one
  LogSettings settings;
};

// Asks for logs of a project node, with the settings sheet behind a button. No paths when the dialog is cancelled.
LogSelection ChooseLogs(ImporterTypeEnum node_type);

}  // namespace loom
