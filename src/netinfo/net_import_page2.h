#pragma once

#include <list>
#include <map>
#include <vector>

#include "components/db_mapper.h"
#include "netinfo/net_import_page1.h"
#include "netinfo/net_mapping.h"
#include "platform/ui/list_ctrl.h"

namespace loom {

// The second page: the worksheet, and which network element parameter each of its columns is.
class CNetInfoImportWizPage2 final : public CPropertyPage {
 public:
  explicit CNetInfoImportWizPage2(const CNetInfoImportWizPage1& first_page);  // outlives this one

  const NetMapping& GetMapping() const { return mapping_; }
  SourceFileType GetSourceFileType() const { return source_file_type_; }
  ProtocolTypeEnum GetProtocol() const { return protocol_; }
  NetDataType GetDataType() const { return data_type_; }
  const CString& GetFilePath() const { return file_path_; }
  const CString& GetWorksheet() const { return worksheet_; }

 protected:
  bool OnSetActive() override;
  bool OnWizardFinish() override;

 private:
  CListCtrl& List() const;
  bool IsLoadedFor(const CNetInfoImportWizPage1& page) const;
  bool LoadFrom(const CNetInfoImportWizPage1& page);
  bool HasRequiredTables() const;
  int LoadWorkbook();
  int FillWorksheets();
  int FillMapping();
  int ReadHeadings();
  void MapAutomatically();
  void ShowRows();
  void OnWorksheetChanged();
  void SelectWorksheet(const CString& name);
  void MapRow();
  void NameRow();
  void ClearRow();
  void SetRowParameter(const CString& parameter, const CString& attribute, bool is_stored);
  bool HasSelectedRow() const;
  CString RowHeading() const;
  CString RowParameter() const;
  void ShowWizardButtons();
  void Warn(const CString& text) const;

  const CNetInfoImportWizPage1& first_page_;
  IDBMapper* mapper_;
  NetMapping mapping_;
  SourceFileType source_file_type_ = kSourceOther;
  ProtocolTypeEnum protocol_ = kProtocolNone;
  NetDataType data_type_ = kNetNone;
  CString file_path_;
  CString worksheet_;
  std::list<CString> headings_;
  std::map<CString, CString> heading_attributes_;
  std::vector<CString> catalogue_names_;
  std::vector<CString> catalogue_attributes_;
  int selected_row_ = -1;
  int loaded_ = 0;
};

}  // namespace loom
