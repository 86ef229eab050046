#include "host/host_folders.h"

#include <filesystem>

#include "platform/encoding.h"

namespace loom {
namespace {

CString& ChosenFolder() {
  static CString folder;
  return folder;
}

}  // namespace

CString GetModuleFileName() { return NativePathToGbk(std::filesystem::read_symlink("/proc/self/exe").native()); }

CString GetChosenConfigFolder() { return ChosenFolder(); }

void SetChosenConfigFolder(const CString& folder) { ChosenFolder() = folder; }

}  // namespace loom
