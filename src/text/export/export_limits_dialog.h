#pragma once

#include "platform/ui/dialog.h"
#include "text/export/text_export_writer.h"

namespace loom {

// The dialog "参数导出设置": the limits of one parameter within its valid range. -255 is none.
class CSelExportDialog final : public CDialog {
 public:
  CSelExportDialog(const CString& ie_name, double valid_minimum, double valid_maximum, double minimum, double maximum);

  const ExportLimit& GetResult() const { return result_; }  // after OK

 protected:
  void DoDataExchange(CDataExchange& exchange) override;
  void OnOK() override;

 private:
  CString ie_name_;
  CString valid_minimum_;
  CString valid_maximum_;
  CString minimum_;
  CString maximum_;
  ExportLimit result_;
};

}  // namespace loom
