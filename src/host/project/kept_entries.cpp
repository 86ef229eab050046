#include "host/project/kept_entries.h"

namespace loom {

void KeepingEntries(StoredProject& project, const std::function<void()>& work) {
  const ProjectContent before = project.Content();
  const auto put_back = [&] { project.PutBack(before, [](const CString&) { return true; }); };
  try {
    work();
  } catch (...) {
    put_back();
    throw;
  }
  put_back();
}

}  // namespace loom
