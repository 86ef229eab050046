#pragma once

#include <optional>
#include <string>
#include <vector>

#include "apps/qloom/import_sheet.h"
#include "apps/qloom/log_report.h"
#include "apps/qloom/session.h"
#include "apps/qloom/text_import_wizard.h"

namespace loom {

// Options of the commands that import logs.
struct ImportOptions {
  std::vector<std::string> logs;
  std::string node = "outdoor";
  std::optional<std::string> handset;
  std::optional<bool> keep_log;
  std::optional<bool> keep_all;
  bool no_node_check = false;
  ImportSheetOptions sheet;
  std::string stream;
  std::int32_t from = 1;
  std::optional<std::int32_t> count;
  std::vector<std::string> show;
  bool intermediate = false;
  bool key_rows = false;
  std::optional<std::string> track;  // of recordings
  TextImportOptions text;
};

void AddHandsetOptions(Command& command, ImportOptions& options);
void AddNodeOption(Command& command, ImportOptions& options);
// Of the commands that write what they import from one source, which is the option that is returned.
Option AddSourceOptions(Command& command, ImportOptions& options);

// For commands over logs, and for those over one source, which may be a text file.
BatchAnswers AnswersFrom(const ImportOptions& options);
BatchAnswers SourceAnswersFrom(const ImportOptions& options);

CString FirstLog(const ImportOptions& options);

// Imports the log, the intermediate file or the text file that the options name: a BatchResult.
int ImportSource(CIOManager& manager, const ImportOptions& options, const LogReport& report);

// Of what was imported; null, with the names of those there are on stderr, when none has the name.
IDataStream* FindStreamOrList(const LogReport& report, const std::string& name);

}  // namespace loom
