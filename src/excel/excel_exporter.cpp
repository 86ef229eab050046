#include "excel/excel_exporter.h"

#include <algorithm>

#include "platform/automation/process.h"
#include "platform/completes.h"
#include "platform/log.h"
#include "platform/ui/message_box.h"

namespace loom {
namespace {

constexpr const char* kExcelImage = "EXCEL.EXE";
constexpr const char* kFreezeCell = "B2";

// Clears the flag on every way out.
class FlagScope {
 public:
  explicit FlagScope(std::int32_t& flag) : flag_(flag) { flag_ = 1; }
  FlagScope(const FlagScope&) = delete;
  FlagScope& operator=(const FlagScope&) = delete;
  ~FlagScope() { flag_ = 0; }

 private:
  std::int32_t& flag_;
};

// Gives up the workbook when an exception passes: a server that was started for it ends with its last reference.
template <class Work>
void GivingUpOnFailure(Sheets& sheets, Work work) {
  try {
    work();
  } catch (...) {
    sheets.ReleaseDispatch();
    throw;
  }
}

void EndProcess(std::uint32_t id) {
  ProcessHandle process = ProcessHandle::OpenForTermination(id);
  if (!process.IsOpen() || !process.Terminate(0))
    Log(LogLevel::kError, "the spreadsheet program, process " + std::to_string(id) + ", could not be ended");
}

// The running server, or one that is started (`created` 1). 1 when the wrapper holds it, 0 after a message.
int AttachOrStart(_Application& application, int& created) {
  CLSID class_id{};
  if (!CLSIDFromProgID(kExcelProgId, class_id)) {
    ShowMessageBox("不能打开Excel,请检查是否安装！"_gbk, MessageIcon::kNone, MessageButtons::kOk, HostCaption());
    return 0;
  }
  const ComPtr<IUnknown> running = GetActiveObject(class_id);
  if (running && running->QueryDispatch() != nullptr) {
    application.AttachDispatch(running->QueryDispatch());
    return 1;
  }
  if (!application.CreateDispatch(kExcelProgId)) {
    ShowMessageBox("不能打开Excel,请检查是否安装正确！"_gbk, MessageIcon::kNone, MessageButtons::kOk, HostCaption());
    return 0;
  }
  created = 1;
  return 1;
}

void CheckCounts(std::size_t items, std::size_t sheet_names) {
  if (sheet_names < items) throw Error("every table of an export needs a sheet name");
}

}  // namespace

int CExcelExporter::Export(CString, ISubject*) { return 0; }

int CExcelExporter::Export() { return 0; }

int CExcelExporter::Export(CString, ISubject* subject, std::vector<CString>& columns) {
  COleSafeArray table;
  BuildTable(subject, table, columns);
  if (is_multi_subject_ != 0) {
    WriteMultiSheetFile(&table);
    return 1;
  }
  _Application application;
  int created = 0;
  if (GetExcelApplication(application, created) == 0) return 0;
  GivingUpOnFailure(sheets_, [&] {
    StartWorkbook(application);
    current_sheet_name_ = "导出数据"_gbk;
    WriteMultiSheetFile(&table);
    FinishWorkbook(application);
  });
  return 1;
}

int CExcelExporter::Export(CString name, std::vector<ISubject*> subjects, std::vector<CString>& sheet_names,
                           std::vector<std::vector<CString>>& column_lists) {
  const FlagScope multi_subject(is_multi_subject_);
  CheckCounts(subjects.size(), sheet_names.size());
  CheckCounts(subjects.size(), column_lists.size());
  _Application application;
  int created = 0;
  if (GetExcelApplication(application, created) == 0) return 0;
  GivingUpOnFailure(sheets_, [&] {
    StartWorkbook(application);
    for (std::size_t at = 0; at < subjects.size(); ++at) {
      current_sheet_name_ = sheet_names[at];
      std::vector<CString> columns = column_lists[at];
      Export(name, subjects[at], columns);
      ++current_sheet_;
    }
    FinishWorkbook(application);
  });
  return 0;
}

int CExcelExporter::Export(CString, std::vector<COleSafeArray>& tables, std::vector<CString>& sheet_names) {
  std::list<std::uint32_t> earlier_ids;
  const bool listed = GetCurSysProcessIDList(earlier_ids) != 0;
  std::uint32_t started_id = 0;
  bool started = false;
  _Application application;
  const bool is_complete = Completes([&] {
    int created = 0;
    if (GetExcelApplication(application, created) == 0) return;
    started = created != 0 && listed && GetNewExcelAppProcessID(earlier_ids, started_id) != 0;
    WriteTables(application, tables, sheet_names);
  });
  if (is_complete) return 0;
  if (started) EndProcess(started_id);
  sheets_.ReleaseDispatch();
  ShowMessageBox("导出数据失败，请减少导出数据量再重试，若问题仍然存在，建议重启软件！"_gbk);
  return 0;
}

void CExcelExporter::WriteTables(_Application& application, std::vector<COleSafeArray>& tables,
                                 const std::vector<CString>& sheet_names) {
  CheckCounts(tables.size(), sheet_names.size());
  StartWorkbook(application);
  for (std::size_t at = 0; at < tables.size(); ++at) {
    current_sheet_name_ = sheet_names[at];
    WriteMultiSheetFile(&tables[at]);
    ++current_sheet_;
  }
  FinishWorkbook(application);
}

void CExcelExporter::StartWorkbook(_Application& application) {
  application.GetWorkbooks().Add(VARIANT::Missing());
  sheets_ = _Workbook(application.GetApplication().get()).GetSheets();
  current_sheet_ = 1;
}

void CExcelExporter::FinishWorkbook(_Application& application) {
  AutoFit(application);
  application.SetVisible(true);
  application.SetAlertBeforeOverwriting(false);
  application.SetDisplayAlerts(false);
}

void CExcelExporter::AutoFit(_Application& application) {
  const Sheets sheets = application.GetWorksheets();
  const std::int32_t count = sheets.GetCount();
  for (std::int32_t number = 1; number <= count; ++number) {
    const _Worksheet sheet = sheets.GetItem(VARIANT::I4(number));
    sheet.Activate();
    sheet.GetUsedRange().GetEntireColumn().AutoFit();
    sheet.GetRange(VARIANT(kFreezeCell), VARIANT(kFreezeCell)).Select();
    application.GetActiveWindow().SetFreezePanes(true);
  }
  sheets.GetItem(VARIANT::I4(1)).Activate();
}

int CExcelExporter::GetExcelApplication(_Application& application, int& created) {
  created = 0;
  application.DetachDispatch();
  int is_held = 0;
  if (Completes([&] { is_held = AttachOrStart(application, created); })) return is_held;
  ShowMessageBox("获取Excel应用程序指针失败，请确认Excel已正确安装！"_gbk, MessageIcon::kError);
  return 0;
}

int CExcelExporter::GetCurSysProcessIDList(std::list<std::uint32_t>& ids) {
  ids.clear();
  ProcessSnapshot snapshot;
  ProcessEntry entry;
  if (!snapshot.First(entry)) return 0;
  do ids.push_back(entry.id);
  while (snapshot.Next(entry));
  return 1;
}

int CExcelExporter::GetNewExcelAppProcessID(const std::list<std::uint32_t>& earlier_ids, std::uint32_t& id) {
  ProcessSnapshot snapshot;
  ProcessEntry entry;
  for (bool more = snapshot.First(entry); more; more = snapshot.Next(entry)) {
    if (entry.image_name.CompareNoCase(kExcelImage) != 0) continue;
    if (std::find(earlier_ids.begin(), earlier_ids.end(), entry.id) != earlier_ids.end()) continue;
    id = entry.id;
    return 1;
  }
  return 0;
}

}  // namespace loom
