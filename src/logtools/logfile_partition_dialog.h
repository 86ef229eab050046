#pragma once

#include <cstdint>

#include "platform/system_time.h"
#include "platform/ui/dialog.h"
#include "platform/ui/ole_date_time.h"

namespace loom {

// Cuts a time window out of one log into a new one.
class CLogfilePartitionDlg final : public CDialog {
 public:
  CLogfilePartitionDlg();

 protected:
  void OnOK() override;  // cuts
  void DoDataExchange(CDataExchange& exchange) override;

 private:
  enum class SourceKind : std::int32_t { kNone = 0, kStoreLog = 1, kAutoTestLog = 3 };
  struct TimeRange {
    COleDateTime start;
    COleDateTime end;
  };

  void ChooseSource();
  void ChooseTarget();
  static TimeRange ReadRange(const CString& path, SourceKind kind);
  static TimeRange ReadStoreRange(const CString& path);
  static TimeRange ReadAutoTestRange(const CString& path);
  void SetRange(const TimeRange& range);

  bool Check();
  bool HasTargetFolder(const CString& folder);
  TimeRange Wanted() const;
  bool Cut() const;
  void Complain(const CString& text) const;

  CString source_path_;
  CString target_path_;
  CString picked_target_;  // that may be replaced
  CString source_start_text_;
  CString source_end_text_;
  TimeRange source_;
  COleDateTime start_date_;
  COleDateTime start_time_;
  COleDateTime end_date_;
  COleDateTime end_time_;
  SourceKind source_kind_ = SourceKind::kNone;
};

}  // namespace loom
