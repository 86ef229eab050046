#include "host/sinks/gdal/gdal_errors.h"

#include <utility>

#include "components/note_kinds.h"
#include "platform/error.h"

namespace loom {

GdalErrors::GdalErrors(const CString& path) : path_(path) { CPLPushErrorHandlerEx(&GdalErrors::Take, this); }

GdalErrors::~GdalErrors() { CPLPopErrorHandler(); }

void CPL_STDCALL GdalErrors::Take(CPLErr kind, CPLErrorNum, const char* text) {
  auto& self = *static_cast<GdalErrors*>(CPLGetErrorHandlerUserData());
  if (kind == CE_Warning) CurrentNotes().Add("format's library"_note, self.path_, "writing", text);
  if (kind >= CE_Failure && self.failure_.empty()) self.failure_ = text;
}

void GdalErrors::ThrowIfFailed() {
  if (!failure_.empty()) throw FileError(path_, 0, std::exchange(failure_, {}));
}

void GdalErrors::Throw(const std::string& otherwise) {
  ThrowIfFailed();
  throw FileError(path_, 0, otherwise);
}

}  // namespace loom
