#pragma once

#include <string>
#include <vector>

#include "apps/qloom/command_line.h"
#include "apps/qloom/window_steps.h"

namespace loom {

// The options of the text export wizard as they stand on the command line.
struct TextExportOptions {
  std::string stream;
  std::vector<std::string> parameters;
  std::vector<std::string> limits;
  std::string file;
  std::string separator;
  bool no_header = false;
  bool units = false;
  bool fill = false;
  bool binned = false;
};
void AddTextExportOptions(Command& command, TextExportOptions& options);
std::vector<WindowPage> TextExportPages(const TextExportOptions& options);

}  // namespace loom
