#pragma once

#include <cstdint>
#include <optional>

#include "host/project/database.h"
#include "platform/cstring.h"

namespace loom {

// A new project's database: its tables, nothing in them.
Database NewProjectDatabase();

// Tells the content of a project file from another; nothing stands for a file that is missing.
using ProjectStamp = std::optional<std::uint64_t>;
ProjectStamp StampOfProjectFile(const CString& path);

struct ProjectFile {
  Database database;
  ProjectStamp stamp;
};

// Reads a project file (*.qlp) into a working copy; the file itself is not held open. A missing one is a new project.
// Throws FileError when it cannot be read, is no project, was cut or damaged, or has a newer schema.
ProjectFile ReadProjectFile(const CString& path);

// Replaces the file by the database's content: it is the new one, whose stamp is returned, or, with a FileError, the
// old one.
ProjectStamp WriteProjectFile(const CString& path, Database& database);

// Throws FileError when the file could not be replaced as things are: its mode, owner or folder do not allow it.
void RequireWritableProject(const CString& path);

}  // namespace loom
