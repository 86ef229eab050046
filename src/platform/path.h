#pragma once

#include "platform/cstring.h"

// Where a path is cut. Folders end at '\' or '/', whichever stands last.
namespace loom {

struct PathParts {
  CString folder;  // with its separator; empty for a bare file name
  CString name;
};
PathParts SplitPath(const CString& path);

struct NameParts {
  CString title;      // up to the last dot
  CString extension;  // behind it, without the dot; empty when there is none
};
NameParts SplitName(const CString& name);

inline CString FolderOf(const CString& path) { return SplitPath(path).folder; }
inline CString NameOf(const CString& path) { return SplitPath(path).name; }
inline CString TitleOf(const CString& path) { return SplitName(NameOf(path)).title; }
inline CString ExtensionOf(const CString& path) { return SplitName(NameOf(path)).extension; }

// `folder` + `name` with a separator between them: the folder's own where it ends with one, else the kind that it uses
// ('/' when it uses none). An empty folder adds nothing.
CString JoinPath(const CString& folder, const CString& name);
CString WithSeparator(const CString& folder);

}  // namespace loom
