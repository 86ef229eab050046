#pragma once

#include <map>
#include <string>
#include <vector>

#include "apps/qloom/command_line.h"
#include "apps/qloom/window_steps.h"

namespace loom {

// The options of a text import as they stand on the command line.
struct TextImportOptions {
  std::string config;
  std::string stream_name;
  std::string stream_type;
  std::string time_format;
  std::string separator;
  bool no_header = false;
  std::vector<std::string> columns;
  std::string save_config;

  bool IsAnyGiven() const;
  int StreamType() const;                      // position in the list
  std::map<int, std::string> Columns() const;  // column from 0 -> information element; empty: the automatic mapping
};
// `prefix` distinguishes those that the command has for something else as well: "--source-separator".
void AddTextImportOptions(Command& command, TextImportOptions& options, const std::string& prefix = "");
std::vector<WindowPage> TextImportPages(const TextImportOptions& options, const CString& file);

}  // namespace loom
