#pragma once

#include <iosfwd>
#include <string>
#include <string_view>

#include "host/logstore/log_header.h"
#include "platform/cstring.h"

// Logs as JSON lines: the first line is the header {"kind", "version", "test_type", "date"}, every further line one
// record with the names of docs/records.md. Making, dumping and making again gives the same bytes.
namespace loom {

// Writes the log that the lines describe; it appears complete or not at all. Empty lines are passed over. Throws
// FileError that names the file of the lines and the line, or whichever file cannot be read or written.
void MakeLog(const CString& lines_path, const CString& log_path);

// Prints a log as lines. A record that cannot be read or decoded is left out and noted. Throws FileError when the file
// is no log or cannot be read. Ends where `out` fails, which its state tells.
void DumpLog(const CString& log_path, std::ostream& out);

// The header line without its end, and its inverse; throws Error.
std::string HeaderToJson(const LogHeader& header);
LogHeader HeaderFromJson(std::string_view json);

}  // namespace loom
