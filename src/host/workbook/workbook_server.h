#pragma once

#include <memory>
#include <optional>
#include <vector>

#include "platform/automation/com.h"
#include "platform/cstring.h"

namespace loom {

class SpreadsheetApplication;

// The reference server behind "Excel.Application", inside this process. A new workbook has three worksheets; a
// worksheet is filled by one assignment. The active workbook is saved as .xlsx when its application becomes visible. An
// application that is visible keeps running until the server ends; one that nobody refers to before that ends unsaved.
class WorkbookServer {
 public:
  // `folder`: of workbooks for which no path is given.
  explicit WorkbookServer(const CString& folder);
  WorkbookServer(const WorkbookServer&) = delete;
  WorkbookServer& operator=(const WorkbookServer&) = delete;
  ~WorkbookServer();

  void UseFolder(const CString& folder) { folder_ = folder; }
  // Where the next workbook goes; a file that is there is replaced. Without it a name that is free is found.
  void SaveNextAs(const CString& path) { next_path_ = path; }
  // Whether saved workbooks are handed to the desktop's program for them; off at first.
  void OpenSaved(bool open) { open_saved_ = open; }
  const std::vector<CString>& SavedPaths() const { return saved_; }

 private:
  friend class SpreadsheetApplication;
  ComPtr<IUnknown> Start();
  ComPtr<IUnknown> Running() const;
  CString TargetOfNext() const;
  CString TakeTarget();
  void Saved(const CString& path, std::shared_ptr<SpreadsheetApplication> application);

  CString folder_;
  std::optional<CString> next_path_;
  bool open_saved_ = false;
  std::vector<CString> saved_;
  std::vector<std::weak_ptr<SpreadsheetApplication>> started_;
  std::vector<std::shared_ptr<SpreadsheetApplication>> visible_;
  std::unique_ptr<RegisteredClass> class_;
};

}  // namespace loom
