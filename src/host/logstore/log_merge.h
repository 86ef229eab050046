#pragma once

#include <span>

#include "components/log_store.h"
#include "host/logstore/log_header.h"
#include "platform/cstring.h"

namespace loom {

// What CLogFileManager::MergeFile describes, for the kinds that `accepts` tells. Of the log store's own logs those up
// to kLastUnmergeableVersion are left out.
LogMergeResult MergeLogs(std::span<const CString> paths, const CString& target, bool (*accepts)(LogKind kind));

}  // namespace loom
