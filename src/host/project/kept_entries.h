#pragma once

#include <functional>

#include "host/project/stored_project.h"

namespace loom {

// What the project lists when the work begins it lists when the work has ended, with its settings, whatever became of
// reopening it.
void KeepingEntries(StoredProject& project, const std::function<void()>& work);

}  // namespace loom
