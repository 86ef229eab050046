#include "logtools/combine_file_dialog.h"

#include <algorithm>
#include <iterator>
#include <string_view>

#include "components/autotest.h"
#include "components/log_store.h"
#include "platform/completes.h"
#include "platform/encoding.h"
#include "platform/path.h"
#include "platform/ui/file_dialog.h"
#include "platform/ui/message_box.h"
#include "platform/ui/wait_cursor.h"
#include "resources/images.h"
#include "resources/log_tools_templates.h"

namespace loom {
namespace {

constexpr std::size_t kMergedNamesBufferBytes = 65535;
constexpr const char* kCombineFilter = "Log(*.log)|*.log||";
constexpr int kMergeMode = 1;

constexpr std::string_view kKinds[] = {"LTE日志", "自动路测日志"};
constexpr int kAutoTestKind = 1;

enum Column { kOrder, kLogName, kPath, kType, kStart, kEnd };
struct ColumnLayout {
  std::string_view heading;
  ColumnAlignment alignment;
  int width_px;
};
// clang-format off
constexpr ColumnLayout kColumns[] = {
    {"合并顺序", ColumnAlignment::kCentre, 100},
    {"文件名",   ColumnAlignment::kLeft,   150},
    {"路径",     ColumnAlignment::kLeft,   150},
    {"类型",     ColumnAlignment::kLeft,   150},
    {"起始时间", ColumnAlignment::kLeft,   150},
    {"结束时间", ColumnAlignment::kLeft,   150},
};

// Why a log is left out.
struct Refusal {
  LogCheck check;
  std::string_view text;
  std::string_view caption;
};
constexpr Refusal kRefusals[] = {
    {LogCheck::kOtherKind,     "%s日志文件类型与选择类型不符!",                   "类型错误"},
    {LogCheck::kWrongTestType, "%s日志文件类型错误!",                             "类型错误"},
    {LogCheck::kVersionTooOld, "%s日志文件版本过低，不能合并!",                   "版本错误"},
    {LogCheck::kOtherTestType, "%s日志文件类型与前面文件类型不一致，不能合并!",   "类型错误"},
    {LogCheck::kCannotOpen,    "%s日志文件打开异常!",                             kApplicationCaption},
};
// clang-format on

}  // namespace

CCombineFileDialog::CCombineFileDialog() : CDialog(kCombineTemplate) {
  OnClicked(kButtonCombineTarget, [this] { ChooseTarget(); });
  OnClicked(kButtonAddLogs, [this] { AddLogs(); });
  OnClicked(kButtonMoveUp, [this] { MoveSelected(-1); });
  OnClicked(kButtonMoveDown, [this] { MoveSelected(1); });
  OnClicked(kButtonRemoveLogs, [this] { RemoveSelected(); });
  OnClicked(kButtonClearLogs, [this] { Clear(); });
  OnSelChange(kComboCombineKind, [this] { ShowSelectedList(); });
}

void CCombineFileDialog::DoDataExchange(CDataExchange& exchange) { exchange.Text(kEditCombineTarget, target_path_); }

void CCombineFileDialog::OnInitDialog() {
  CDialog::OnInitDialog();
  images_ = CImageList(kTreeImages);
  auto& lte_list = GetDlgItem<CListCtrl>(kListLteLogs);
  auto& auto_test_list = GetDlgItem<CListCtrl>(kListAutoTestLogs);
  SetUpList(lte_list);
  SetUpList(auto_test_list);
  auto_test_list.SetPlacement(lte_list.GetPlacement());
  EnableItems({kIdOk}, false);
  auto& kinds = GetDlgItem<CComboBox>(kComboCombineKind);
  for (const std::string_view kind : kKinds) kinds.AddString(Utf8ToGbk(kind));
  kinds.SetCurSel(0);
  ShowSelectedList();
}

void CCombineFileDialog::SetUpList(CListCtrl& list) {
  for (int at = 0; at < std::ssize(kColumns); ++at) {
    const ColumnLayout& column = kColumns[at];
    list.InsertColumn(at, Utf8ToGbk(column.heading), column.width_px, column.alignment);
  }
  list.SetImageList(images_);
}

bool CCombineFileDialog::IsAutoTestSelected() const {
  return GetDlgItem<CComboBox>(kComboCombineKind).GetCurSel() == kAutoTestKind;
}

CListCtrl& CCombineFileDialog::List() const {
  return GetDlgItem<CListCtrl>(IsAutoTestSelected() ? kListAutoTestLogs : kListLteLogs);
}

std::vector<CString>& CCombineFileDialog::Paths() { return IsAutoTestSelected() ? auto_test_paths_ : lte_paths_; }

void CCombineFileDialog::ShowSelectedList() {
  GetDlgItem(kListLteLogs).ShowWindow(!IsAutoTestSelected());
  GetDlgItem(kListAutoTestLogs).ShowWindow(IsAutoTestSelected());
}

void CCombineFileDialog::ChooseTarget() {
  UpdateData(true);
  CFileDialog dialog(false, "log", "", CFileDialog::kOverwritePrompt, kCombineFilter);
  dialog.SetTitle("新建日志文件"_gbk);
  if (dialog.DoModal() == kIdOk) target_path_ = dialog.GetPathName();
  UpdateData(false);
  EnableItems({kIdOk}, HasEnoughLogs() && !target_path_.IsEmpty());
}

void CCombineFileDialog::AddLogs() {
  const std::vector<LogInformation> logs = PickLogs();
  List().SetRedraw(false);
  {
    const CWaitCursor wait;
    for (const LogInformation& log : logs) InsertLog(log);
    Renumber();
  }
  if (!target_path_.IsEmpty() && HasEnoughLogs()) EnableItems({kIdOk}, true);
  List().SetRedraw(true);
}

std::vector<LogInformation> CCombineFileDialog::PickLogs() {
  CFileDialog dialog(true, "", "", CFileDialog::kAllowMultiSelect | CFileDialog::kFileMustExist, kCombineFilter);
  dialog.SetTitle("选择日志文件"_gbk);
  dialog.SetNameBufferSize(kMergedNamesBufferBytes);
  for (;;) {
    if (dialog.DoModal() == kIdOk) return CheckLogs(dialog.GetPathList());
    if (!dialog.IsNameBufferTooSmall()) return {};
    ShowMessageBox("选择文件个数过多，请减少文件个数后重试!"_gbk, MessageIcon::kWarning, MessageButtons::kOk,
                   kApplicationCaption, this);
  }
}

// Those that may be combined; a log that cannot be opened takes those in front of it along.
std::vector<LogInformation> CCombineFileDialog::CheckLogs(const std::vector<CString>& paths) {
  const CWaitCursor wait;
  std::vector<LogInformation> accepted;
  for (const CString& path : paths) {
    LogInformation log;
    const LogCheck check = Check(path, log);
    if (check == LogCheck::kAccepted) {
      accepted.push_back(std::move(log));
      continue;
    }
    has_refused_log_ = true;
    if (check == LogCheck::kCannotOpen) accepted.clear();
    const Refusal& refusal = *std::ranges::find(kRefusals, check, &Refusal::check);
    ShowMessageBox(Format(Utf8ToGbk(refusal.text), path), MessageIcon::kWarning, MessageButtons::kOk,
                   Utf8ToGbk(refusal.caption), this);
  }
  return accepted;
}

LogCheck CCombineFileDialog::Check(const CString& path, LogInformation& information) {
  const bool is_auto_test = IsAutoTestSelected();
  if (CCSLogImportWrap().IsCSLog(path) != is_auto_test) return LogCheck::kOtherKind;
  return is_auto_test ? CheckAutoTestLog(path, information) : CheckStoreLog(path, locked_test_type_, information);
}

// Behind the last row that starts earlier; a path that is listed already is skipped.
void CCombineFileDialog::InsertLog(const LogInformation& log) {
  std::vector<CString>& paths = Paths();
  if (std::ranges::find(paths, log.path) != paths.end()) return;
  CListCtrl& list = List();
  int at = 0;
  for (int row = 0; row < list.GetItemCount(); ++row) {
    if (log.start > list.GetItemText(row, kStart)) at = row + 1;
  }
  paths.insert(paths.begin() + at, log.path);
  list.InsertItem(at, Format("%d", at + 1), kImageLogFile);
  list.SetItemText(at, kLogName, NameOf(log.path));
  list.SetItemText(at, kPath, log.path);
  list.SetItemText(at, kType, LogTypeLabel(log.type));
  list.SetItemText(at, kStart, log.start);
  list.SetItemText(at, kEnd, log.end);
}

void CCombineFileDialog::Renumber() {
  CListCtrl& list = List();
  for (int row = 0; row < list.GetItemCount(); ++row) list.SetItemText(row, kOrder, Format("%d", row + 1));
}

// One place up (-1) or down (1), as long as the outermost selected row has room.
void CCombineFileDialog::MoveSelected(int step) {
  CListCtrl& list = List();
  std::vector<int> rows = list.GetSelectedRows();
  if (step > 0) std::ranges::reverse(rows);
  if (rows.empty() || rows.front() == (step < 0 ? 0 : list.GetItemCount() - 1)) return;
  for (const int row : rows) MoveRow(row, row + step);
  Renumber();
  list.SetFocus();
  for (const int row : rows) {
    list.SetItemSelected(row + step, true);
    list.SetFocusedRow(row + step);
    list.EnsureVisible(row + step);
  }
}

void CCombineFileDialog::MoveRow(int from, int to) {
  CListCtrl& list = List();
  std::vector<CString> cells;
  for (int column = 0; column < list.GetColumnCount(); ++column) cells.push_back(list.GetItemText(from, column));
  list.DeleteItem(from);
  list.InsertItem(to, cells[kOrder], kImageLogFile);
  for (int column = kLogName; column < list.GetColumnCount(); ++column)
    list.SetItemText(to, column, cells[static_cast<std::size_t>(column)]);
  std::vector<CString>& paths = Paths();
  std::swap(paths[static_cast<std::size_t>(from)], paths[static_cast<std::size_t>(to)]);
}

void CCombineFileDialog::RemoveSelected() {
  CListCtrl& list = List();
  std::vector<int> rows = list.GetSelectedRows();
  if (!rows.empty() && ShowMessageBox("是否从列表中删除选中的日志文件？"_gbk, MessageIcon::kNone,
                                      MessageButtons::kYesNo, kApplicationCaption, this) == MessageAnswer::kYes) {
    std::ranges::reverse(rows);
    for (const int row : rows) {
      std::erase(Paths(), list.GetItemText(row, kPath));
      list.DeleteItem(row);
    }
    Renumber();
  }
  if (list.GetItemCount() < 2) EnableItems({kIdOk}, false);
  if (list.GetItemCount() == 0) locked_test_type_ = 0;
}

void CCombineFileDialog::Clear() {
  List().DeleteAllItems();
  EnableItems({kIdOk}, false);
  Paths().clear();
  locked_test_type_ = 0;
  has_refused_log_ = false;
}

void CCombineFileDialog::OnOK() {
  const auto refuse = [this](const CString& text) {
    ShowMessageBox(text, MessageIcon::kWarning, MessageButtons::kOk, kApplicationCaption, this);
  };
  if (!HasEnoughLogs()) return refuse("请选择多个日志文件进行合并！"_gbk);
  if (target_path_.IsEmpty()) return refuse("请指定新文件路径和名称！"_gbk);
  ReportMerge(Merge());
}

std::optional<int> CCombineFileDialog::Merge() {
  return ResultOr<std::optional<int>>(std::nullopt, [&] {
    const CWaitCursor wait;
    if (IsAutoTestSelected()) return CCSLogImportWrap().MergeFile(target_path_, Paths());
    return CLogFileManager().MergeFile(Paths(), target_path_, kMergeMode);
  });
}

void CCombineFileDialog::ReportMerge(std::optional<int> result) {
  const auto report = [this](const CString& text, MessageIcon icon, MessageButtons buttons = MessageButtons::kOk) {
    ShowMessageBox(text, icon, buttons, kApplicationCaption, this);
  };
  SetOutcome(DialogOutcome::kNotDone);
  if (!result) return report("合并过程中出现异常！请重试。"_gbk, MessageIcon::kError);
  switch (*result) {
    case kMergeDone:
      SetOutcome(has_refused_log_ ? DialogOutcome::kInPart : DialogOutcome::kDone);
      report(Format("合并日志文件 %s 成功！"_gbk, NameOf(target_path_)), MessageIcon::kNone);
      Clear();
      target_path_.Empty();
      UpdateData(false);
      break;
    case kMergeFailed:
      report("合并过程出现错误！请重试。"_gbk, MessageIcon::kError);
      break;
    case kMergeInPart:
      report("部分文件版本过旧，未能参与合并。"_gbk, MessageIcon::kNone, MessageButtons::kYesNo);
      break;
    case kMergeRefused:
      report("文件异常，无法合并！"_gbk, MessageIcon::kError);
      break;
    default:
      break;
  }
}

}  // namespace loom
