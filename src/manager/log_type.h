#pragma once

#include "components/importer.h"
#include "components/log_store.h"
#include "platform/cstring.h"

// What a log is, as its file tells.
namespace loom {

// Who reads the file: 1, 2, 3, 5, or 0 when it was refused with a message. The second form asks the log store only.
ImporterTypeEnum GetImporterType(const CString& path);
ImporterTypeEnum GetImporterType(CLogFileManager& store, const CString& path);

int GetLogVersion(const CString& path);  // kUnreadableVersion when the file cannot be opened

// Of the dialog that asks for logs of a project node.
CString GetLogFilter(ImporterTypeEnum node_type);

}  // namespace loom
