#pragma once

#include <cpl_error.h>

#include <string>

#include "platform/cstring.h"

namespace loom {

// While it lives, what libgdal says goes here: warnings become notes with the file, the last failure is kept.
class GdalErrors {
 public:
  explicit GdalErrors(const CString& path);
  GdalErrors(const GdalErrors&) = delete;
  GdalErrors& operator=(const GdalErrors&) = delete;
  ~GdalErrors();

  // Throws FileError when something has failed since the last call.
  void ThrowIfFailed();
  // Throws FileError with the failure, or with `otherwise` when none was told.
  [[noreturn]] void Throw(const std::string& otherwise);

 private:
  static void CPL_STDCALL Take(CPLErr kind, CPLErrorNum number, const char* text);

  CString path_;
  std::string failure_;
};

}  // namespace loom
