#pragma once

#include <iosfwd>
#include <string>

#include "apps/qloom/session.h"
#include "host/recordings/make_log.h"

namespace loom {

// {"result", "files", "packets", "records", "skipped"}: 1 every file, 0 nothing usable, 2 some files refused.
Json RecordingReportJson(const RecordingReport& report);
void PrintRecordingReport(std::ostream& out, const RecordingReport& report, const std::string& log);
int ExitCodeOf(const RecordingReport& report);

}  // namespace loom
