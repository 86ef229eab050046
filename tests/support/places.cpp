#include "tests/support/places.h"

#include <cstdlib>

#include "host/application.h"
#include "platform/encoding.h"

namespace loom::testing {

std::filesystem::path SourceFolder() { return QLOOM_SOURCE_DIR; }

std::filesystem::path ProgramPath() { return QLOOM_PROGRAM; }

CString ConfigFolder() { return NativePathToGbk((SourceFolder() / "config").string()); }

HostOptions PlainHost() { return {.config_folder = ConfigFolder(), .project_path = {}, .recent_logs_path = {}}; }

std::filesystem::path SharedSamples() {
  const char* named = std::getenv("QLOOM_SAMPLES");
  const std::filesystem::path folder = named ? named : SourceFolder().parent_path() / "shared" / "samples";
  return std::filesystem::is_directory(folder) ? folder : std::filesystem::path();
}

}  // namespace loom::testing
