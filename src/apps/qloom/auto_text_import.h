#pragma once

#include <map>
#include <string>

#include "apps/qloom/dialect_json.h"
#include "apps/qloom/session.h"

namespace loom {

// How a text file of another tool is imported without a wizard.
struct AutoTextImport {
  dialect::Overrides overrides;
  std::map<std::size_t, std::string> elements;  // column -> information element, where a person has mapped it
  std::string stream_name = "UnknownDevice";
  int stream_type = 0;
};

// Inspects, converts and imports one file. What was found, mapped and left out stands in the document, and in the
// notes. Gives the import's result in "result".
Json ImportTextAutomatically(Session& session, const CString& path, const AutoTextImport& how);

// A text file of the project: converted again when its source changed.
void RefreshConvertedText(Session& session, const CString& converted);
// After it was imported again: its stream's protocol as the project records it.
void RestoreProtocol(Session& session, const CString& converted);

}  // namespace loom
