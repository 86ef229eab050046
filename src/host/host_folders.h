#pragma once

#include "components/host_folders.h"

namespace loom {

// What GetChosenConfigFolder answers from now on.
void SetChosenConfigFolder(const CString& folder);

}  // namespace loom
