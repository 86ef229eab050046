#pragma once

#include <vector>

#include "apps/qloom-desktop/shell/desktop_session.h"

namespace loom {

// Writes a report of streams and opens it in the browser, where there is a display. Throws Error.
void WriteReportOf(DesktopSession& session, const std::vector<IDataStream*>& streams, const CString& out);

}  // namespace loom
