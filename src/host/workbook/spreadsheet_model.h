#pragma once

#include <memory>
#include <optional>
#include <vector>

#include "host/workbook/workbook_writer.h"
#include "platform/automation/process.h"

namespace loom {

class WorkbookServer;

// The application that a server runs: its workbooks, and its entry in the process table.
class SpreadsheetApplication : public std::enable_shared_from_this<SpreadsheetApplication> {
 public:
  explicit SpreadsheetApplication(WorkbookServer& server);

  // Throws AutomationError once the application has ended.
  void CheckRuns() const;
  bool Runs() const { return process_ != nullptr; }
  void End();

  std::shared_ptr<WorkbookWriter> AddWorkbook();
  // Throws AutomationError when there is none.
  const std::shared_ptr<WorkbookWriter>& ActiveWorkbook() const;
  bool IsVisible() const { return visible_; }
  void SetVisible(bool visible);

  bool display_alerts = true;
  bool alert_before_overwriting = true;

 private:
  WorkbookServer* server_;  // null once it has ended
  std::unique_ptr<LocalProcess> process_;
  std::shared_ptr<WorkbookWriter> active_;
  bool active_is_saved_ = false;
  bool visible_ = false;
};

// The object by which the application is reached from outside.
ComPtr<IUnknown> MakeApplicationObject(std::shared_ptr<SpreadsheetApplication> application);

}  // namespace loom
