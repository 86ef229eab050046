#pragma once

#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "components/project.h"
#include "host/catalogue/catalogue.h"
#include "host/project/database.h"
#include "host/project/project_content.h"
#include "host/project/project_file.h"
#include "host/project/project_lock.h"

namespace loom {

// Folder of a file, absolute, without a trailing separator; of the empty path the working folder.
CString AbsoluteFolderOf(const CString& file_path);

// How a project file is opened.
struct ProjectAccess {
  enum class Mode {
    kRead,             // takes no lock: the state saved last, which Save() does not change
    kWrite,            // holds the project from here to the end, or throws
    kWriteIfPossible,  // the same, but reads where kWrite would throw since another holds it or it cannot be replaced
  };
  Mode mode = Mode::kWrite;
  // With kWrite: called each time another process turns out to hold the project. Returns to try again, having waited,
  // or throws to give up. Without it ProjectInUse is thrown at once.
  std::function<void(const ProjectInUse&)> wait = {};
};

// A project in one file (*.qlp), or a temporary one without a file. All work happens on a copy in memory, the tables of
// the network elements included; only Save() touches the file.
class StoredProject final : public CProject, private CNTLog {
 public:
  // Temporary, in the folder given.
  StoredProject(const IECatalogue& catalogue, const CString& folder);
  // Opens the file, throwing FileError when it is no whole project of a known schema or, with kWrite, could not be
  // replaced. Without a file of that name the project is new and the first Save() makes the file.
  static std::unique_ptr<StoredProject> Open(const IECatalogue& catalogue, const CString& path,
                                             const ProjectAccess& access);

  std::int32_t GetIEID(const CString& name) const override;
  CString GetIEName(std::int32_t id) const override;
  MemTableFieldTypeEnum GetIEMemType(std::int32_t id) const override { return catalogue_.TypeOf(id); }
  const CIEEntry* GetIEByName(const CString& name) const override { return catalogue_.FindByName(name); }
  CString GetIEUnitByIEName(const CString& name) const override;
  bool GetIEValueRangeByName(const CString& name, double& maximum, double& minimum) const override;
  CString GetEventName(std::int32_t id) const override { return catalogue_.EventName(id); }

  CString GetPath() const override { return folder_; }

  void AddProjectLogFile(const CProjectLogfile& log) override;
  void RemoveLogFile(const CString& path) override;  // with its settings
  CNTLog* GetNTLog() override { return this; }
  void AddBinningSetting(const CString& name, const struct_BinningSetting& setting) override;
  void GetBinningSetting(const CString& path, struct_BinningSetting& setting) const override;
  void AddImpSetting(const CImportSetting& setting) override;  // its logs leave earlier batches
  ImpIESettings GetImpSettingByLogFile(const CString& path) const override;
  // Of a log that was imported anew: what a batch had chosen for it before no longer counts.
  void DropImpSetting(const CString& path) { RemoveFromImportSettings({path}); }

  void AddTxtFile(const CProjectTxtFile& file) override;
  void RemoveTxtFile(const CString& name) override;
  const CProjectTxtFile* GetProjectTxtFileByName(const CString& name) const override;

  // Writes the project to its file and clears the modified flag. Throws std::logic_error for a temporary project, else
  // Error; the file is then what it was. A project that is open for reading is refused, and so is a file that is no
  // longer the one that was read.
  void Save();
  // The same to another file, which is the project's from then on and held; ProjectInUse when another process holds it.
  void SaveAs(const CString& path);

  // Whether the content differs from that of the file, or of a new project; the network elements' count.
  bool HasChanged() const;
  // Grows or differs with every change.
  std::size_t ChangeStamp() const;
  // The bytes of a project file with the content as it is.
  std::string Image();
  // The content of another project file takes the place of this one's, and counts as changed. Throws FileError.
  void TakeContentOf(const CString& path);
  // Logs and texts that are missing of an earlier content and that `wanted` names are listed again.
  void PutBack(const ProjectContent& earlier, const std::function<bool(const CString& path)>& wanted);

  bool IsTemporary() const { return path_.IsEmpty(); }
  // Why Save() is refused, UTF-8; empty when it is not.
  const std::string& ReadOnlyReason() const { return read_only_reason_; }
  const CString& FilePath() const { return path_; }            // empty for a temporary project
  void SetFolder(const CString& folder) { folder_ = folder; }  // of a temporary project
  const ProjectContent& Content() const { return content_; }
  std::vector<CString>& RecentLogs() { return content_.recent_logs; }
  Database& WorkingCopy() { return database_; }

 private:
  StoredProject(const IECatalogue& catalogue, const CString& path, ProjectFile file);
  void RequireFileThatWasRead() const;
  void IndexLogs();
  void CountAsUnchanged();
  void Write(const CString& path);
  const CProjectLogfile* GetProjectLogFileByPath(const CString& path) const override;
  std::vector<const CProjectLogfile*> GetProjectLogFiles() const override;
  void RemoveFromImportSettings(const std::vector<CString>& paths);

  const IECatalogue& catalogue_;
  CString path_;
  CString folder_;
  std::unique_ptr<ProjectLock> lock_;  // null for a temporary project and for one that is open for reading
  std::string read_only_reason_;
  ProjectStamp stamp_;  // of the file as it was read or written
  Database database_;
  ProjectContent content_;
  std::map<CString, std::list<CProjectLogfile>::iterator> log_by_path_;
  std::size_t unchanged_content_ = 0;  // stamp
  std::int64_t unchanged_count_ = 0;   // of the database's changes
};

}  // namespace loom
