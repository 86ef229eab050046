#include "manager/log_selection.h"

#include "components/project.h"
#include "components/resource_handle.h"
#include "manager/import_file_dialog.h"
#include "manager/log_type.h"
#include "platform/file.h"
#include "platform/path.h"
#include "platform/ui/message_box.h"
#include "platform/ui/template.h"

namespace loom {
namespace {

constexpr std::size_t kNameBufferBytes = 65535;

// False when the dialog is cancelled. One whose names do not fit comes again.
bool Confirms(CImportFileDialog& dialog) {
  while (dialog.DoModal() != kIdOk) {
    if (!dialog.IsNameBufferTooSmall()) return false;
    ShowMessageBox("选择文件个数过多，请减少文件个数后重试!"_gbk, MessageIcon::kWarning);
  }
  return true;
}

void TakePaths(const std::vector<CString>& picked, LogSelection& selection) {
  for (const CString& path : picked) {
    if (!FileExists(path)) {
      ShowMessageBox("无法找到日志文件:"_gbk + path);
      selection.missing = path;
      return;
    }
    selection.paths.push_back(path);
  }
}

}  // namespace

LogSelection ChooseLogs(ImporterTypeEnum node_type) {
  const CResourceHandle resources;
  CImportFileDialog dialog(true, CString(), CString(),
                           CFileDialog::kAllowMultiSelect | CFileDialog::kFileMustExist | CFileDialog::kHideReadOnly,
                           GetLogFilter(node_type));
  dialog.SetTitle("选择日志文件"_gbk);
  dialog.SetNameBufferSize(kNameBufferBytes);
  const CString recent = g_systemConfig->GetRecentLogFile(0);
  if (!recent.IsEmpty()) dialog.SetInitialFolder(FolderOf(recent));
  LogSelection selection;
  if (!Confirms(dialog)) return selection;
  TakePaths(dialog.GetPathList(), selection);
  selection.settings = {dialog.GetIESettings(), dialog.GetBinningSetting()};
  return selection;
}

}  // namespace loom
