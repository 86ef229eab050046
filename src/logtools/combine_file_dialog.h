#pragma once

#include <cstdint>
#include <optional>
#include <vector>

#include "logtools/log_check.h"
#include "platform/ui/dialog.h"
#include "platform/ui/image_list.h"
#include "platform/ui/list_ctrl.h"

namespace loom {

// Collects logs of one kind in the order in which they are merged, and has the log's library merge them. Stays open
// until it is left.
class CCombineFileDialog final : public CDialog {
 public:
  CCombineFileDialog();

 protected:
  void OnInitDialog() override;
  void OnOK() override;  // merges
  void DoDataExchange(CDataExchange& exchange) override;

 private:
  bool IsAutoTestSelected() const;
  CListCtrl& List() const;        // of the selected kind
  std::vector<CString>& Paths();  // its paths, row by row
  bool HasEnoughLogs() { return Paths().size() > 1; }

  void SetUpList(CListCtrl& list);
  void ShowSelectedList();
  void ChooseTarget();
  void AddLogs();
  std::vector<LogInformation> PickLogs();
  std::vector<LogInformation> CheckLogs(const std::vector<CString>& paths);
  LogCheck Check(const CString& path, LogInformation& information);
  void InsertLog(const LogInformation& log);
  void MoveSelected(int step);
  void MoveRow(int from, int to);
  void RemoveSelected();
  void Clear();
  void Renumber();
  std::optional<int> Merge();  // nothing when it threw
  void ReportMerge(std::optional<int> result);

  CString target_path_;
  CImageList images_;
  std::vector<CString> lte_paths_;
  std::int32_t locked_test_type_ = 0;  // of the listed logs of the log store; 0: none yet
  bool has_refused_log_ = false;       // since the list was empty
  std::vector<CString> auto_test_paths_;
};

}  // namespace loom
