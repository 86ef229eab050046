#pragma once

#include <map>
#include <optional>
#include <string>

#include "platform/cstring.h"

// Template files of the IE selection: an XML document element IMPSETTING that holds, for every ticked leaf of the tree,
// an element IE with the leaf's text and, in its attribute "name", the information element that stands for it.
namespace loom {

using IeTemplate = std::map<CString, CString>;  // leaf text -> IE name

// Nothing when the file cannot be read, is no XML or no such template; `error` then says why, UTF-8.
std::optional<IeTemplate> ReadIeTemplate(const CString& path, std::string& error);

// In ascending order of the leaf texts. False, with the reason, when the file cannot be written.
bool WriteIeTemplate(const CString& path, const IeTemplate& content, std::string& error);

}  // namespace loom
