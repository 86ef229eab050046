#pragma once

#include <string>
#include <vector>

#include "apps/qloom/command_line.h"
#include "text/dialect/text_dialect.h"

namespace loom {

// The overrides of a text file's dialect as they stand on the command line.
struct DialectOptions {
  std::string dialect_file;
  std::optional<std::string> encoding, separator, quote, comment, decimal, time, zone, latitude, longitude;
  std::optional<std::int32_t> preamble, header, footer;
  std::vector<std::string> nulls;

  bool IsAnyGiven() const;
};

void AddDialectOptions(Command& command, DialectOptions& options, bool has_separator = false);

// What the dialect file says, and over it what the options say. Throws Error.
dialect::Overrides OverridesFrom(const DialectOptions& options);

// Files as named, and of folders every file below with the extension csv, tsv, txt or log.
std::vector<CString> TextFilesOf(const std::vector<std::string>& names);

}  // namespace loom
