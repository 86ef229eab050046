#pragma once

#include <memory>
#include <string>

#include "platform/cstring.h"
#include "platform/error.h"
#include "platform/file.h"

namespace loom {

// Another process holds the project.
struct ProjectInUse : Error {
  // `holder`, UTF-8: "qloom (process 4711 on bench-2, since 2024-05-17 09:30:00)".
  ProjectInUse(const CString& project_path, std::string holder);
  std::string holder;
};

// The right to change a project file, which one process has at a time: a byte-range lock on the file NAME.lock beside
// the project, links followed. The system takes it back when the process ends, however that ends, and file servers
// know such locks. The lock file says who holds it and goes when it is released; one left by a process that died is
// taken over.
class ProjectLock {
 public:
  // Null when another holds it, `holder` says who. Throws FileError when the lock file cannot be made or locked.
  static std::unique_ptr<ProjectLock> TryTake(const CString& project_path, std::string& holder);

  ProjectLock(const ProjectLock&) = delete;
  ProjectLock& operator=(const ProjectLock&) = delete;
  ~ProjectLock();

  // By whatever name: links and folders are resolved.
  bool IsOf(const CString& project_path) const;

 private:
  ProjectLock(std::string native_path, FileHandle handle);

  std::string native_path_;
  FileHandle handle_;
};

}  // namespace loom
