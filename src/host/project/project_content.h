#pragma once

#include <functional>
#include <list>
#include <map>
#include <vector>

#include "components/project.h"

namespace loom {

class Database;

// What a project remembers.
struct ProjectContent {
  std::list<CProjectLogfile> logs;                   // in the order added
  std::map<CString, struct_BinningSetting> binning;  // by log name
  std::vector<CImportSetting> import_settings;       // batches, oldest first
  std::list<CProjectTxtFile> text_files;             // in the order added
  std::vector<CString> recent_logs;                  // latest first
};

// Makes the tables of an empty database.
void CreateProjectTables(Database& database);
// Both throw DatabaseError; writing replaces what the tables hold, within the caller's transaction.
ProjectContent ReadProjectContent(Database& database);
void WriteProjectContent(Database& database, const ProjectContent& content);
// The same number for the same content.
std::size_t ProjectContentStamp(const ProjectContent& content);

// Logs and texts of an earlier content that `wanted` names and that are missing now come back to their place, with
// their settings. A log is named by its path, a text by its name.
void PutBackEntries(ProjectContent& content, const ProjectContent& earlier,
                    const std::function<bool(const CString&)>& wanted);

}  // namespace loom
