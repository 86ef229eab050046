#pragma once

#include "host/project/database.h"
#include "platform/cstring.h"

namespace loom {

// A new project's database: its tables, nothing in them.
Database NewProjectDatabase();

// Reads a project file (*.qlp) into a working copy; the file itself is not held open. Throws FileError when it cannot
// be read, is no project, was cut or damaged, or has a newer schema.
Database ReadProjectFile(const CString& path);

// Replaces the file by the database's content: it is the new one or, with a FileError, the old one.
void WriteProjectFile(const CString& path, Database& database);

}  // namespace loom
