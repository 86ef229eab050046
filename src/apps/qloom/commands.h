#pragma once

#include <CLI/CLI.hpp>
#include <functional>

#include "apps/qloom/session.h"

namespace loom {

// What a parsed command line has chosen: the command's work, and the options that every command takes.
struct CommandLine {
  CommonOptions common;
  std::function<int()> run;  // gives the exit code
};

// Each adds the commands of one subject.
void AddLogCommands(CLI::App& app, CommandLine& line);           // import, import-by-name, open-log, open-recent, rows
void AddStoreCommands(CLI::App& app, CommandLine& line);         // log info, make, dump, simulate
void AddProjectCommands(CLI::App& app, CommandLine& line);       // project show, net list, net put, ies
void AddIntermediateCommands(CLI::App& app, CommandLine& line);  // import-intermediate, log to-intermediate (after log)
void AddOpenCommand(CLI::App& app, CommandLine& line);           // open
void AddNavigatorCommands(CLI::App& app, CommandLine& line);     // navigator tree, navigator lists
void AddLogToolCommands(CLI::App& app, CommandLine& line);       // combine, cut
void AddTextImportCommands(CLI::App& app, CommandLine& line);    // import-text, open-text
void AddExportTextCommand(CLI::App& app, CommandLine& line);     // export-text
void AddExportExcelCommand(CLI::App& app, CommandLine& line);    // export-excel
void AddNetImportCommand(CLI::App& app, CommandLine& line);      // import-net
void AddUiCommand(CLI::App& app, CommandLine& line);             // ui

// The paths of files that are all there; throws Error otherwise.
std::vector<CString> ExistingFiles(const std::vector<std::string>& native);

// The path of one file from the root, likewise.
CString ExistingPath(const std::string& native);

// A subcommand that takes the common options.
CLI::App* AddCommand(CLI::App& parent, CommandLine& line, const char* name, const char* description);

}  // namespace loom
