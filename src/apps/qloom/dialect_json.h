#pragma once

#include "apps/qloom/json_streams.h"
#include "text/dialect/text_dialect.h"

namespace loom {

// What was found of a text file, and the remarks apart, as notes of it.
Json FindingsJson(const dialect::Findings& found);
void NoteRemarks(const dialect::Remarks& remarks, const CString& path);

// A dialect in a file: the form of FindingsJson, of which everything may be left away. Throws Error with file and
// reason.
dialect::Overrides OverridesFromJson(const Json& json);
dialect::Overrides ReadDialectFile(const CString& path);
Json DialectJson(const dialect::Findings& found);

// "2025-07-18T22:11:08.25Z", a time of the day without its day where that is not known.
std::string InstantText(double seconds, bool has_date);

}  // namespace loom
