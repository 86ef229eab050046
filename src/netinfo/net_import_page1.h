#pragma once

#include <cstdint>

#include "netinfo/net_tables.h"
#include "platform/ui/property_sheet.h"

namespace loom {

// The first page of the network element import: which file holds what.
class CNetInfoImportWizPage1 final : public CPropertyPage {
 public:
  CNetInfoImportWizPage1();

  const CString& GetFilePath() const { return file_path_; }
  SourceFileType GetSourceFileType() const { return source_file_type_; }
  // As of the last time that the page was left.
  ProtocolTypeEnum GetProtocol() const { return protocol_; }
  NetDataType GetDataType() const { return data_type_; }
  bool ShowsTdList() const { return shows_td_list_ != 0; }  // the kinds of data are those of TD-SCDMA
  // A kind of data that the page does not offer: it stands until the person chooses one.
  void SetDataType(NetDataType data_type);

 protected:
  void OnInitDialog() override;
  void DoDataExchange(CDataExchange& exchange) override;
  bool OnSetActive() override;
  int OnWizardNext() override;

 private:
  void Browse();
  void OnProtocolChanged();
  void OnDataTypeChanged();
  void ShowWizardButtons();

  CString protocol_text_;
  CString data_type_text_;
  std::int32_t shows_td_list_ = 1;
  CString file_path_;
  SourceFileType source_file_type_ = kSourceOther;
  ProtocolTypeEnum protocol_ = kProtocolNone;
  NetDataType data_type_ = kNetCell;
};

}  // namespace loom
