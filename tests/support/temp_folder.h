#pragma once

#include <stdlib.h>

#include <filesystem>
#include <stdexcept>
#include <string>

#include "platform/encoding.h"

namespace loom::testing {

// A fresh folder that is gone, with everything in it, at the end of the test.
class TempFolder {
 public:
  TempFolder() {
    std::string name = (std::filesystem::temp_directory_path() / "qloom-test-XXXXXX").string();
    if (!mkdtemp(name.data())) throw std::runtime_error("no temporary folder");
    path_ = name;
  }
  TempFolder(const TempFolder&) = delete;
  TempFolder& operator=(const TempFolder&) = delete;
  ~TempFolder() {
    std::error_code ignored;
    std::filesystem::remove_all(path_, ignored);
  }

  const std::filesystem::path& native() const { return path_; }
  CString Folder() const { return NativePathToGbk(path_.string() + "/"); }
  CString File(const CString& name) const { return Folder() + name; }

 private:
  std::filesystem::path path_;
};

}  // namespace loom::testing
