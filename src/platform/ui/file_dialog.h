#pragma once

#include <cstddef>
#include <vector>

#include "platform/cstring.h"
#include "platform/ui/front_end.h"

namespace loom {

// The system's dialog for picking files to open or to save.
class CFileDialog {
 public:
  enum Flags : unsigned {
    kAllowMultiSelect = 1u << 0,
    kFileMustExist = 1u << 1,
    kOverwritePrompt = 1u << 2,
    kHideReadOnly = 1u << 3,  // no front end shows the read-only box
  };

  // `default_extension` ("log", also written "*.log") is added to a picked name without extension, when opening only if
  // there is no file of the bare name. `filter` as ParseFileFilters takes it.
  CFileDialog(bool open, const CString& default_extension, const CString& file_name, unsigned flags,
              const CString& filter);
  CFileDialog(const CFileDialog&) = delete;
  CFileDialog& operator=(const CFileDialog&) = delete;
  virtual ~CFileDialog() = default;

  void SetTitle(const CString& title) { request_.title = title; }
  void SetInitialFolder(const CString& folder) { request_.initial_folder = folder; }
  // Bytes for the names, terminators included: one path, or a folder, each name and an empty one. 0: no limit.
  void SetNameBufferSize(std::size_t bytes) { name_buffer_bytes_ = bytes; }

  // kIdOk or kIdCancel; kIdCancel also when the selection does not fit the name buffer.
  int DoModal();
  bool IsNameBufferTooSmall() const { return buffer_too_small_; }
  const std::vector<CString>& GetPathList() const { return paths_; }  // empty unless it ended with kIdOk
  CString GetPathName() const { return paths_.empty() ? CString() : paths_.front(); }

 protected:
  // An extension of the dialog by one push button.
  void SetExtraButton(int id, const CString& text) {
    request_.extra_button = {id, text, [this] { OnExtraButton(); }};
  }
  virtual void OnExtraButton() {}

 private:
  FileDialogRequest request_;
  std::size_t name_buffer_bytes_ = 0;
  bool buffer_too_small_ = false;
  std::vector<CString> paths_;
};

// Whether `target` may be written, the name that a `picked` one got by an extension behind the dialog: when it is
// another and a file of that name is there, the overwrite question is asked for it.
bool MayReplace(const CString& picked, const CString& target, const CDialog* owner = nullptr);

}  // namespace loom
