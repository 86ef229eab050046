#include "platform/path.h"

#include <algorithm>

namespace loom {
namespace {

int LastSeparator(const CString& path) { return std::max(path.ReverseFind('\\'), path.ReverseFind('/')); }

}  // namespace

PathParts SplitPath(const CString& path) {
  const int name = LastSeparator(path) + 1;
  return {path.Left(name), path.Mid(name)};
}

NameParts SplitName(const CString& name) {
  const int dot = name.ReverseFind('.');
  if (dot < 0) return {name, CString()};
  return {name.Left(dot), name.Mid(dot + 1)};
}

CString WithSeparator(const CString& folder) {
  const int last = LastSeparator(folder);
  if (folder.IsEmpty() || last == folder.GetLength() - 1) return folder;
  return folder + (last < 0 ? '/' : folder[last]);
}

CString JoinPath(const CString& folder, const CString& name) { return WithSeparator(folder) + name; }

}  // namespace loom
