#pragma once

#include <filesystem>

#include "platform/cstring.h"

namespace loom {
struct HostOptions;
}

// Where the files of this build are. Only places.cpp is compiled with them, so that every other object is the same
// in each clone and comes from the compiler cache.
namespace loom::testing {

std::filesystem::path SourceFolder();
std::filesystem::path ProgramPath();  // of `qloom`
CString ConfigFolder();               // of the catalogue that the project ships

// A host with that catalogue and a temporary project.
HostOptions PlainHost();

// Real files beside the source tree or in QLOOM_SAMPLES, no part of the project; empty when they are not there.
std::filesystem::path SharedSamples();

}  // namespace loom::testing
