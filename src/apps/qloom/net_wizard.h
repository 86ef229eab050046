#pragma once

#include <string>
#include <vector>

#include "apps/qloom/command_line.h"
#include "apps/qloom/window_steps.h"

namespace loom {

// The options of the wizard of the network element import as they stand on the command line.
struct NetWizardOptions {
  std::string workbook;
  std::string protocol;
  std::string data;
  std::string sheet;
  std::vector<std::string> map;
  std::vector<std::string> custom;
};
void AddNetWizardOptions(Command& command, NetWizardOptions& options);
std::vector<WindowPage> NetWizardPages(const NetWizardOptions& options, const CString& workbook);

}  // namespace loom
