#pragma once

#include <cstdint>
#include <map>
#include <memory>
#include <set>
#include <vector>

#include "components/field_value.h"
#include "components/import_settings.h"
#include "platform/cstring.h"

namespace loom {

// One information element of a catalogue.
struct CIEEntry {
  std::int32_t id = -255;
  CString name;
  CString unit;
  MemTableFieldTypeEnum type = kFieldNone;
  bool has_range = false;
  double minimum = kInvalidDouble;
  double maximum = kInvalidDouble;
};

// A stream as the project records it.
class CProjectStream {
 public:
  void SetStreamName(const CString& name) { name_ = name; }
  const CString& GetStreamName() const { return name_; }
  void SetStreamType(const CString& decimal) { type_ = decimal; }
  const CString& GetStreamType() const { return type_; }
  void SetProtocol(const CString& text) { protocol_ = text; }
  const CString& GetProtocol() const { return protocol_; }
  void SetFilterOperator(const CString& text) { filter_operator_ = text; }
  const CString& GetFilterOperator() const { return filter_operator_; }

 private:
  CString name_;
  CString type_;
  CString protocol_;
  CString filter_operator_;
};

// A log as the project records it.
class CProjectLogfile {
 public:
  void SetLogFileName(const CString& name) { name_ = name; }
  const CString& GetLogFileName() const { return name_; }
  void SetLogFilePath(const CString& path) { path_ = path; }
  const CString& GetLogFilePath() const { return path_; }
  void SetFacType(std::int32_t model_code) { fac_type_ = model_code; }
  std::int32_t GetFacType() const { return fac_type_; }
  void SetStreams(const std::map<CString, CProjectStream>& streams) { streams_ = streams; }
  const std::map<CString, CProjectStream>& GetStreams() const { return streams_; }

 private:
  CString name_;
  CString path_;
  std::int32_t fac_type_ = 0;
  std::map<CString, CProjectStream> streams_;
};

// The logs that the project lists.
class CNTLog {
 public:
  virtual ~CNTLog() = default;
  virtual const CProjectLogfile* GetProjectLogFileByPath(const CString& path) const = 0;  // null when not listed
  virtual std::vector<const CProjectLogfile*> GetProjectLogFiles() const = 0;             // in the order added
};

// The record of one batch of logs: which files, with which information elements.
class CImportSetting {
 public:
  void AddLogFile(const CString& path) { log_files_.push_back(path); }
  std::int32_t GetLogFileNum() const { return static_cast<std::int32_t>(log_files_.size()); }
  const std::vector<CString>& GetLogFiles() const { return log_files_; }
  void SetParamSetting(const ImpIESettings& settings) { settings_ = settings; }
  const ImpIESettings& GetParamSetting() const { return settings_; }

 private:
  std::vector<CString> log_files_;
  ImpIESettings settings_;
};

// The project's record of one text file, and the content of a text import configuration.
class CProjectTxtFile {
 public:
  void SetTxtName(const CString& name) { name_ = name; }
  const CString& GetTxtName() const { return name_; }
  void SetTxtPath(const CString& path) { path_ = path; }
  const CString& GetTxtPath() const { return path_; }
  void SetSeparate(const CString& separator) { separator_ = separator; }
  const CString& GetSeparate() const { return separator_; }
  void SetDataFormat(const CString& name) { time_layout_ = name; }
  const CString& GetDataFormat() const { return time_layout_; }
  void SetHeadLineIsIgnore(bool ignored) { head_line_ignored_ = ignored; }
  bool GetHeadLineIsIgnore() const { return head_line_ignored_; }
  void SetStreamType(std::int32_t type) { stream_type_ = type; }
  std::int32_t GetStreamType() const { return stream_type_; }
  void SetStreams(const std::map<CString, CProjectStream>& streams) { streams_ = streams; }
  const std::map<CString, CProjectStream>& GetStreams() const { return streams_; }
  void SetColumnMapIE(const std::map<std::int32_t, CString>& map) { column_map_ = map; }
  const std::map<std::int32_t, CString>& GetColumnMapIE() const { return column_map_; }
  void SetColumnTitle(const std::map<std::int32_t, CString>& titles) { column_titles_ = titles; }
  const std::map<std::int32_t, CString>& GetColumnTitle() const { return column_titles_; }

 private:
  CString name_;
  CString path_;
  CString separator_;
  CString time_layout_;
  bool head_line_ignored_ = false;
  std::int32_t stream_type_ = -255;  // 0 downlink, 1 uplink, 2 scan, -255 = cannot be imported again
  std::map<CString, CProjectStream> streams_;
  std::map<std::int32_t, CString> column_map_;     // column from 0 -> IE name
  std::map<std::int32_t, CString> column_titles_;  // column from 0 -> title
};

// A project: its catalogue of information elements and events, its logs, text files and their settings. Nothing here
// throws but what its storage throws (Error).
class CProject {
 public:
  virtual ~CProject() = default;

  virtual std::int32_t GetIEID(const CString& name) const = 0;  // -255 when unknown
  virtual CString GetIEName(std::int32_t id) const = 0;         // empty when unknown
  virtual MemTableFieldTypeEnum GetIEMemType(std::int32_t id) const = 0;
  virtual const CIEEntry* GetIEByName(const CString& name) const = 0;  // null when unknown
  virtual CString GetIEUnitByIEName(const CString& name) const = 0;
  // True when the information element has a value range; note the order: maximum first.
  virtual bool GetIEValueRangeByName(const CString& name, double& maximum, double& minimum) const = 0;
  virtual CString GetEventName(std::int32_t id) const = 0;  // empty when unknown

  virtual CString GetPath() const = 0;  // project folder without a trailing separator

  virtual void AddProjectLogFile(const CProjectLogfile& log) = 0;  // replaces one of the same path
  virtual void RemoveLogFile(const CString& path) = 0;
  virtual CNTLog* GetNTLog() = 0;
  virtual void AddBinningSetting(const CString& name, const struct_BinningSetting& setting) = 0;
  virtual void GetBinningSetting(const CString& path, struct_BinningSetting& setting) const = 0;  // untouched if none
  virtual void AddImpSetting(const CImportSetting& setting) = 0;
  virtual ImpIESettings GetImpSettingByLogFile(const CString& path) const = 0;

  virtual void AddTxtFile(const CProjectTxtFile& file) = 0;  // replaces one of the same name
  virtual void RemoveTxtFile(const CString& name) = 0;
  virtual const CProjectTxtFile* GetProjectTxtFileByName(const CString& name) const = 0;  // null when not listed

  std::uint8_t modified = 0;  // 1 once a caller changed the project
};

// Field types by IE id.
class CMemDataType {
 public:
  virtual ~CMemDataType() = default;
  virtual MemTableFieldTypeEnum GetType(std::int32_t ie_id) const = 0;
};

// What the application remembers between projects.
class CSystemConfig {
 public:
  virtual ~CSystemConfig() = default;
  virtual CString GetRecentLogFile(std::int32_t index) const = 0;  // 0 = latest; empty when there is none
  virtual void SetRecentLogFile(const CString& path) = 0;
};

// Set by the host's library while an application runs; never null then.
extern CProject* g_project;     // the open project
extern CProject* g_sysProject;  // the system project with the definitions of IEs and events
extern CMemDataType* g_memDataType;
extern CSystemConfig* g_systemConfig;

}  // namespace loom
