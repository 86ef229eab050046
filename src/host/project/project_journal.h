#pragma once

#include <memory>
#include <optional>
#include <vector>

#include "host/project/stored_project.h"

namespace loom {

// What was done in a project since it was saved, in a file of the project's own form: NAME.qlp.journal beside it, or
// one of the state folder for a temporary project. It goes when the project is saved or let go in order; one that is
// left behind tells of a program that ended otherwise.
class ProjectJournal {
 public:
  // Nothing is written before Keep(). With an empty state folder a temporary project has no journal.
  ProjectJournal(StoredProject& project, const CString& state_folder);
  ProjectJournal(const ProjectJournal&) = delete;
  ProjectJournal& operator=(const ProjectJournal&) = delete;
  ~ProjectJournal();

  // Writes what differs from the saved project, or removes the file when nothing does. A project that is open for
  // reading has no journal. Throws Error when it cannot be written.
  void Keep();
  void Remove();
  // Leaves the file behind, as a program does that ends without a word.
  void Abandon();
  const CString& path() const { return path_; }

  // The journal that a project was left with, by a program that no longer runs; empty: none.
  static CString LeftBehind(const CString& project_path);
  // Those of temporary projects, oldest first.
  static std::vector<CString> LeftUntitled(const CString& state_folder);
  static void Discard(const CString& journal);

 private:
  StoredProject& project_;
  CString path_;                       // empty: none is kept
  std::unique_ptr<ProjectLock> lock_;  // of an untitled one: others see that it is in use
  std::optional<std::size_t> kept_;    // stamp of what the file holds; nothing: there is none of this process
};

}  // namespace loom
