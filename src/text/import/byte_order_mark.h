#pragma once

#include <string_view>

#include "platform/cstring.h"

namespace loom {

// Whether a text file starts with the mark of UTF-8 or UTF-16. Files are read in GBK, where its bytes belong to the
// first cell, whose title then means nothing.
bool HasByteOrderMark(std::string_view first_line);

// Notes it, once for a file: where it spoils the titles nothing may be imported afterwards.
void NoteByteOrderMark(const CString& path, std::string_view first_line);

}  // namespace loom
