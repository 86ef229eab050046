#pragma once

#include <vector>

#include "importers/importer.h"
#include "netinfo/net_checks.h"
#include "netinfo/net_mapping.h"
#include "netinfo/net_tables.h"
#include "platform/notes.h"

namespace loom {

class CNetInfoImportWizPage2;

// Brings network elements from a workbook into the project's database, as a person directs in the wizard.
class CNetInfoImporter final : public CImporter {
 public:
  CNetInfoImporter();

  // Runs the wizard and imports; both arguments are ignored. The data type when the rows are stored; 0 when the wizard
  // was cancelled, the workbook could not be read or its data are not valid; otherwise the mapper's result.
  int Import(const CString& name, ILogfile** logfile) override;

  ProtocolTypeEnum GetProtocolType() const { return protocol_; }  // of the last finished wizard

 private:
  bool RunWizard();
  void TakeSettings(const CNetInfoImportWizPage2& page);
  int ImportRows();
  int GetNetInfoFromExcel();
  int IsValidCellData();
  int IsValidCustomCPIGroupData(bool group_first);
  int Judge(const NetCheckResult& result, const NoteKind& kind);
  void ReportCheck(const CString& message) const;

  NetMapping mapping_;
  CString file_path_;
  SourceFileType source_file_type_ = kSourceOther;
  NetDataType data_type_ = kNetNone;
  ProtocolTypeEnum protocol_ = kProtocolNone;
  CString worksheet_;
  std::vector<NetInfoRow> rows_;
  CString fault_text_;  // where the last check found a value that is no integer
};

}  // namespace loom
