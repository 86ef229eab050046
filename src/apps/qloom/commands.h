#pragma once

#include "apps/qloom/command_line.h"
#include "apps/qloom/session.h"

namespace loom {

// Each adds the commands of one subject; those of intermediate files need the group `log`.
void AddLogCommands(Command& program, CommandLine& line);    // import, import-by-name, open-log, open-recent, rows
void AddStoreCommands(Command& program, CommandLine& line);  // log info, make, dump, simulate
void AddRecordingCommands(Command& program, CommandLine& line);
void AddProjectCommands(Command& program, CommandLine& line);       // project show, net list, net put, ies
void AddIntermediateCommands(Command& program, CommandLine& line);  // import-intermediate, log to-intermediate
void AddOpenCommand(Command& program, CommandLine& line);           // open
void AddNavigatorCommands(Command& program, CommandLine& line);     // navigator tree, navigator lists
void AddLogToolCommands(Command& program, CommandLine& line);       // combine, cut
void AddTextImportCommands(Command& program, CommandLine& line);    // import-text, open-text
void AddTextCommands(Command& program, CommandLine& line);          // text inspect, text convert
void AddExportTextCommand(Command& program, CommandLine& line);     // export-text
void AddExportExcelCommand(Command& program, CommandLine& line);    // export-excel
void AddExportLayerCommand(Command& program, CommandLine& line);    // export-layer
void AddNetImportCommand(Command& program, CommandLine& line);      // import-net
void AddReportCommand(Command& program, CommandLine& line);         // report
void AddUiCommand(Command& program, CommandLine& line);             // ui

// The paths of files that are all there; throws Error otherwise.
std::vector<CString> ExistingFiles(const std::vector<std::string>& native);

// The path of one file from the root, likewise.
CString ExistingPath(const std::string& native);

}  // namespace loom
