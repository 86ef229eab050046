#include "logtools/logfile_partition_dialog.h"

#include <cmath>
#include <optional>

#include "components/autotest.h"
#include "components/log_store.h"
#include "platform/completes.h"
#include "platform/error.h"
#include "platform/file.h"
#include "platform/interrupt.h"
#include "platform/path.h"
#include "platform/ui/file_dialog.h"
#include "platform/ui/message_box.h"
#include "platform/ui/wait_cursor.h"
#include "resources/log_tools_templates.h"

namespace loom {
namespace {

constexpr const char* kPartitionFilter = "Log File (*.log)|*.log||";
constexpr const char* kLogEnding = ".log";

// A time of day on the log's own day: hours beyond 24 start over.
COleDateTime OnDayOf(CDTFile& log, const sys_time& time) {
  const auto second_of_day = static_cast<std::int64_t>(std::floor(time.toSecond())) % 86'400;
  return COleDateTime(LocalTime{.day = {log.getYear(), log.getMonth(), log.getDate()},
                                .hour = static_cast<int>(second_of_day / 3600),
                                .minute = static_cast<int>(second_of_day / 60 % 60),
                                .second = static_cast<int>(second_of_day % 60)});
}

// -1 for the fields of one that is not valid, which makes the sum invalid.
COleDateTime Joined(const COleDateTime& date, const COleDateTime& time) {
  return COleDateTime(date.GetYear(), date.GetMonth(), date.GetDay(), time.GetHour(), time.GetMinute(),
                      time.GetSecond());
}

}  // namespace

CLogfilePartitionDlg::CLogfilePartitionDlg() : CDialog(kPartitionTemplate) {
  const COleDateTime now = COleDateTime::GetCurrentTime();
  source_ = {now, now};
  start_date_ = start_time_ = end_date_ = end_time_ = now;
  OnClicked(kButtonPartitionSource, [this] { ChooseSource(); });
  OnClicked(kButtonPartitionTarget, [this] { ChooseTarget(); });
}

void CLogfilePartitionDlg::DoDataExchange(CDataExchange& exchange) {
  exchange.Text(kEditPartitionSource, source_path_);
  exchange.Text(kEditPartitionTarget, target_path_);
  exchange.Text(kStaticSourceStart, source_start_text_);
  exchange.Text(kStaticSourceEnd, source_end_text_);
  exchange.DateTime(kPickerStartDate, start_date_);
  exchange.DateTime(kPickerStartTime, start_time_);
  exchange.DateTime(kPickerEndDate, end_date_);
  exchange.DateTime(kPickerEndTime, end_time_);
}

void CLogfilePartitionDlg::Complain(const CString& text) const {
  ShowMessageBox(text, MessageIcon::kError, MessageButtons::kOk, kApplicationCaption, this);
}

void CLogfilePartitionDlg::ChooseSource() {
  UpdateData(true);
  CFileDialog dialog(true, "", "", CFileDialog::kFileMustExist, kPartitionFilter);
  if (dialog.DoModal() != kIdOk) return;
  const CString path = dialog.GetPathName();
  const bool is_read = Completes([&] {
    const SourceKind kind = CCSLogImportWrap().IsCSLog(path) ? SourceKind::kAutoTestLog : SourceKind::kStoreLog;
    SetRange(ReadRange(path, kind));
    source_kind_ = kind;
    source_path_ = path;
  });
  if (is_read) {
    UpdateData(false);
  } else {
    SetOutcome(DialogOutcome::kNotDone);
    ShowMessageBox("源文件已损坏或格式无法识别！请选择有效的日志。"_gbk, MessageIcon::kWarning, MessageButtons::kOk,
                   kApplicationCaption, this);
  }
}

// Throws Error when the file is no log of its kind or fails to read.
CLogfilePartitionDlg::TimeRange CLogfilePartitionDlg::ReadRange(const CString& path, SourceKind kind) {
  const CWaitCursor wait;
  return kind == SourceKind::kAutoTestLog ? ReadAutoTestRange(path) : ReadStoreRange(path);
}

CLogfilePartitionDlg::TimeRange CLogfilePartitionDlg::ReadStoreRange(const CString& path) {
  const auto [folder, file_name] = SplitPath(path);
  CLogFileManager log;
  if (log.OpenFile(folder, file_name, 0) == 0) throw FileError(path, 0, "cannot be opened as a log");
  const struct Closing {
    CLogFileManager& log;
    ~Closing() { log.CloseReadingFile(); }
  } closing{log};
  CDTFile& file = *log.GetLogFile();
  return {OnDayOf(file, log.GetRecordStartTime()), OnDayOf(file, log.GetRecordEndTime())};
}

CLogfilePartitionDlg::TimeRange CLogfilePartitionDlg::ReadAutoTestRange(const CString& path) {
  SYSTEMTIME begin;
  SYSTEMTIME end;
  if (!CCSLogImportWrap().GetBeginEndTime(path, begin, end)) throw FileError(path, 0, "tells no times");
  return {COleDateTime(CTime(begin).GetLocalTime()), COleDateTime(CTime(end).GetLocalTime())};
}

void CLogfilePartitionDlg::SetRange(const TimeRange& range) {
  source_ = range;
  source_start_text_ = range.start.Format();
  source_end_text_ = range.end.Format();
  start_date_ = range.start.DateOnly();
  start_time_ = range.start.TimeOnly();
  end_date_ = range.end.DateOnly();
  end_time_ = range.end.TimeOnly();
}

void CLogfilePartitionDlg::ChooseTarget() {
  UpdateData(true);
  CFileDialog dialog(false, "", "", CFileDialog::kOverwritePrompt, kPartitionFilter);
  if (dialog.DoModal() != kIdOk) return;
  target_path_ = picked_target_ = dialog.GetPathName();
  UpdateData(false);
}

CLogfilePartitionDlg::TimeRange CLogfilePartitionDlg::Wanted() const {
  return {Joined(start_date_, start_time_), Joined(end_date_, end_time_)};
}

bool CLogfilePartitionDlg::Check() {
  const bool has_paths = !source_path_.IsEmpty() && !target_path_.IsEmpty();
  if (source_path_.IsEmpty())
    Complain("源文件路径为空！请选择要截取的源文件。"_gbk);
  else if (target_path_.IsEmpty())
    Complain("目标文件路径为空！请输入目标文件路径。"_gbk);
  if (target_path_.Right(4) != kLogEnding) target_path_ += kLogEnding;
  if (!has_paths || !HasTargetFolder(FolderOf(target_path_))) return false;

  const TimeRange wanted = Wanted();
  if (!(wanted.end > wanted.start)) {
    Complain("目标文件截取设置中结束时间必须大于起始时间！请重新设置。"_gbk);
    return false;
  }
  if (wanted.start < source_.start || wanted.end > source_.end) {
    Complain("目标文件截取时间不能超过源文件的起止时间！请重新设置。"_gbk);
    return false;
  }
  if (!MayReplace(picked_target_, target_path_, this)) return false;
  picked_target_ = target_path_;
  return true;
}

bool CLogfilePartitionDlg::HasTargetFolder(const CString& folder) {
  if (folder.IsEmpty() || FolderExists(folder)) return true;
  if (ShowMessageBox(Format("文件夹\"%s\"不存在，是否创建？"_gbk, folder), MessageIcon::kError, MessageButtons::kYesNo,
                     kApplicationCaption, this) != MessageAnswer::kYes) {
    Complain("目标文件路径不存在！请选择有效的目标文件。"_gbk);
    return false;
  }
  if (Completes([&] { CreateOneFolder(folder); })) return true;
  Complain("目标文件夹创建失败！请确认路径是否有效。"_gbk);
  return false;
}

bool CLogfilePartitionDlg::Cut() const {
  const CWaitCursor wait;
  const TimeRange wanted = Wanted();
  const CTime start(wanted.start.Fields());
  const CTime end(wanted.end.Fields());
  const auto [folder, file_name] = SplitPath(target_path_);
  int result = kExtractFailed;
  if (source_kind_ == SourceKind::kAutoTestLog)
    result = CCSLogImportWrap().ExtractLogByTimeW(source_path_, start.GetAsSystemTime(), end.GetAsSystemTime(),
                                                  target_path_);
  else if (source_kind_ == SourceKind::kStoreLog)
    result = CLogFileManager().ExtractLogFile(source_path_, start, end, folder, file_name);
  return result == kExtractDone;
}

void CLogfilePartitionDlg::OnOK() {
  if (!UpdateData(true) || !Check()) return;
  constexpr int kThrew = -1;
  constexpr int kCancelled = 2;
  const int cut = ResultOr(kThrew, [&] {
    try {
      return Cut() ? 1 : 0;
    } catch (const Interrupted&) {
      return kCancelled;
    }
  });
  if (cut == kCancelled) return;
  SetOutcome(cut == 1 ? DialogOutcome::kDone : DialogOutcome::kNotDone);
  if (cut == kThrew) return Complain("日志截取过程出现异常！请确认日志是否有效。"_gbk);
  const bool is_done = cut == 1;
  const MessageIcon icon = is_done ? MessageIcon::kNone : MessageIcon::kInformation;
  ShowMessageBox(is_done ? "日志截取成功！"_gbk : "日志截取失败！"_gbk, icon, MessageButtons::kOk, kApplicationCaption,
                 this);
  if (is_done) EndDialog(kIdOk);
}

}  // namespace loom
