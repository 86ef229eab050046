#pragma once

#include <string>

#include "platform/cstring.h"

// The last step of writing a file that is complete or absent. Everything that fails throws FileError.
namespace loom {

// Puts a file that is written and synced in the place of `target`, in the same folder, and syncs the folder. `target`
// is untouched when the renaming fails.
void ReplaceFile(const CString& path, const CString& target);

// Makes what was created or renamed in a folder durable; `path` names the file in errors.
void SyncFolder(const CString& path, const std::string& native_folder);

}  // namespace loom
