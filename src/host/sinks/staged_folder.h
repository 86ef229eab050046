#pragma once

#include <span>
#include <string>
#include <vector>

#include "platform/cstring.h"

namespace loom {

// A folder beside the files that are to be replaced, in which they are written under their own names. It goes with the
// object, and with it whatever was not published.
class StagedFolder {
 public:
  explicit StagedFolder(const CString& beside);  // a path in the folder that the files go to
  StagedFolder(const StagedFolder&) = delete;
  StagedFolder& operator=(const StagedFolder&) = delete;
  ~StagedFolder();

  std::string NativePath(const CString& name) const;  // of a file that is written
  CString TargetPath(const CString& name) const;      // of the file that it becomes

  // Syncs every file and renames it over its target: those of the names `last` in their order behind all others.
  // Throws FileError; what was renamed before stays.
  void Publish(std::span<const CString> last);

 private:
  std::vector<std::string> NamesInside() const;  // native
  void Sync(const std::string& name) const;
  void Rename(const std::string& name) const;

  CString folder_;      // with its separator
  std::string native_;  // of the targets, with a separator
  std::string staged_;  // likewise, of what is written
};

}  // namespace loom
