#include "platform/ui/file_dialog.h"

#include "platform/file.h"
#include "platform/path.h"
#include "platform/ui/message_box.h"
#include "platform/ui/template.h"

namespace loom {
namespace {

std::size_t NameBufferBytes(const std::vector<CString>& paths) {
  if (paths.size() == 1) return paths[0].view().size() + 1;
  // The folder stands without its separator, as a name of its own; the list ends with an empty name.
  std::size_t bytes = FolderOf(paths[0]).view().size() + 1;
  for (const CString& path : paths) bytes += NameOf(path).view().size() + 1;
  return bytes;
}

}  // namespace

CFileDialog::CFileDialog(bool open, const CString& default_extension, const CString& file_name, unsigned flags,
                         const CString& filter) {
  request_.default_extension = default_extension.Mid(default_extension.ReverseFind('.') + 1);
  request_.save = !open;
  request_.filters = ParseFileFilters(filter);
  request_.initial_folder = FolderOf(file_name);
  request_.initial_name = NameOf(file_name);
  request_.multi_select = (flags & kAllowMultiSelect) != 0;
  request_.must_exist = (flags & kFileMustExist) != 0;
  request_.overwrite_prompt = (flags & kOverwritePrompt) != 0;
}

bool MayReplace(const CString& picked, const CString& target, const CDialog* owner) {
  if (target == picked || !FileExists(target)) return true;
  return ShowMessageBox(OverwriteQuestionFor(target), MessageIcon::kWarning, MessageButtons::kYesNo,
                        kApplicationCaption, owner) == MessageAnswer::kYes;
}

int CFileDialog::DoModal() {
  buffer_too_small_ = false;
  paths_.clear();
  auto picked = CurrentFrontEnd().ShowFileDialog(request_);
  if (!picked || picked->empty()) return kIdCancel;
  for (CString& path : *picked) path = CompletedPath(request_, path);
  buffer_too_small_ = name_buffer_bytes_ > 0 && NameBufferBytes(*picked) > name_buffer_bytes_;
  if (buffer_too_small_) return kIdCancel;
  paths_ = std::move(*picked);
  return kIdOk;
}

}  // namespace loom
