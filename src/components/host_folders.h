#pragma once

#include "platform/cstring.h"

// Where the host application is installed. Defined by the host's library.
namespace loom {

// Full path of the running program.
CString GetModuleFileName();

// The configuration folder that the host has chosen; empty: the one beside the program's folder.
CString GetChosenConfigFolder();

}  // namespace loom
