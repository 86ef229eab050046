#include "manager/present_titles.h"

#include "platform/path.h"
#include "platform/ui/message_box.h"

namespace loom {

PresentTitles::PresentTitles(const LogListener& listener) : listener_(listener) {
  std::map<CString, ILogfile*> logs;
  CStreamManagerCreator::CreateStreamManager()->GetLogfileNames(logs);
  for (const auto& [name, logfile] : logs) titles_.insert(TitleOf(name));
}

bool PresentTitles::Refuse(const CString& path) const {
  const CString title = TitleOf(path);
  if (!titles_.contains(title)) return false;
  ShowMessageBox(Format("已导入同名日志文件:%s !"_gbk, title), MessageIcon::kWarning);
  listener_({.path = path, .result = kImportAlreadyPresent});
  return true;
}

}  // namespace loom
