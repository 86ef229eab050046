#pragma once

#include <string>

#include "platform/cstring.h"

// Replacing a file by one that was written beside it. Everything that fails throws FileError.
namespace loom {

// The native path of the file that a write to `native` goes to: links are followed, also to a file that is missing.
std::string ResolveLinks(const std::string& native);

// Refuses a target (native path, links resolved) that is a folder or a device, or whose mode does not let the user
// write; for root its owner's bits count. One that is missing is fine.
void RequireReplaceable(const CString& path, const std::string& native_target);

// Gives an open file owner, group and mode of the target that it is going to replace, or the mode of new files when
// there is none. Refuses what RequireReplaceable refuses, and an owner or a group that this user cannot give away.
void TakeOverPermissions(const CString& path, int descriptor, const std::string& native_target);

// Puts a file that is written and synced in the place of `target`, in the same folder, with its owner, group and mode,
// and syncs the folder. `target` is untouched when anything before the renaming fails.
void ReplaceFile(const CString& path, const CString& target);

// Makes what was created or renamed in a folder durable; `path` names the file in errors.
void SyncFolder(const CString& path, const std::string& native_folder);

}  // namespace loom
