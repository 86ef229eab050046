#include "text/import/text_import_settings.h"

#include "components/factory.h"
#include "components/project.h"
#include "platform/ui/file_dialog.h"
#include "platform/ui/message_box.h"
#include "platform/ui/template.h"
#include "text/import/time_text.h"

namespace loom {
namespace {

CString WithConfigExtension(const CString& path) {
  const int dot = path.ReverseFind('.');
  if (dot >= 0 && path.Mid(dot + 1).CompareNoCase(kImportConfigExtension) == 0) return path;
  return path + '.' + kImportConfigExtension;
}

CProjectTxtFile ConfigOf(const TextImportSettings& settings) {
  CProjectTxtFile record;
  settings.PutInto(record);
  record.SetTxtName(settings.stream_name);
  return record;
}

}  // namespace

TextImportSettings::TextImportSettings() {
  time_layout = kTimeLayouts[0].name;
  separator = "\t";
}

bool RequireTimeColumn(const ColumnMap& columns) {
  if (HasTimeColumn(columns)) return true;
  ShowMessageBox("导入设置无效！请导入时间(RecordTime)。"_gbk, MessageIcon::kInformation);
  return false;
}

bool SaveImportConfig(const TextImportSettings& settings) {
  if (!RequireTimeColumn(settings.columns)) return false;
  CFileDialog dialog(false, kImportConfigExtension, CString(), CFileDialog::kOverwritePrompt, kImportConfigFilter);
  dialog.SetTitle("保存导入配置"_gbk);
  if (dialog.DoModal() != kIdOk || dialog.GetPathName().IsEmpty()) return false;
  const CString path = WithConfigExtension(dialog.GetPathName());
  if (!MayReplace(dialog.GetPathName(), path)) return false;
  const bool is_saved = CFactory::Instance().CreateDBMapper()->SaveTextConfig(path, ConfigOf(settings));
  ShowMessageBox(is_saved ? "配置文件保存成功！"_gbk : "配置文件保存失败！"_gbk);
  return is_saved;
}

bool LoadImportConfig(const CString& path, TextImportSettings& settings) {
  CProjectTxtFile record;
  record.SetTxtPath(settings.path);
  if (!CFactory::Instance().CreateDBMapper()->LoadTextConfig(path, record)) return false;
  const std::size_t titles = record.GetColumnTitle().size();
  if (titles != 0 && record.GetColumnMapIE().size() > titles) {
    ShowMessageBox("配置文件与文本文件不匹配，请检查您的配置文件！"_gbk, MessageIcon::kWarning);
    return false;
  }
  settings.stream_name = record.GetTxtName();
  settings.TakeFrom(record);
  return true;
}

}  // namespace loom
