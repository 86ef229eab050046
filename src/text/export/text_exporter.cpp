#include "text/export/text_exporter.h"

#include "components/resource_handle.h"
#include "platform/interrupt.h"
#include "platform/ui/message_box.h"
#include "text/export/text_export_page1.h"
#include "text/export/text_export_page2.h"
#include "text/export/text_export_page3.h"
#include "text/export/text_export_writer.h"
#include "text/selection/import_wiz.h"

namespace loom {

int CTextExporter::Export() {
  const CResourceHandle resources;
  std::map<CString, ILogfile*> logs;
  stream_manager_->GetLogfileNames(logs);
  CImportWiz wizard("文本文件导出向导"_gbk);
  CTextExportWizPage1 stream_page(std::move(logs));
  CTextExportWizPage2 parameter_page(stream_page);
  CTextExportWizPage3 file_page;
  wizard.AddPage(stream_page);
  wizard.AddPage(parameter_page);
  wizard.AddPage(file_page);
  wizard.SetWizardMode();
  if (wizard.DoModal() != kIdWizardFinish) return 0;

  const CTextExportWizPage3::Flags& flags = file_page.GetFlags();
  const TextExportSettings settings{.file_name = file_page.GetFileName(),
                                    .separator = file_page.GetSeparator(),
                                    .write_header = flags.write_header,
                                    .write_units = flags.write_units,
                                    .binned_data = flags.binned_data,
                                    .fill_gaps = flags.fill_gaps,
                                    .limits = &parameter_page.GetLimits()};
  std::vector<CString> parameters = parameter_page.GetParameters();
  int result = 0;
  try {
    result = WriteStreamAsText(settings, stream_page.GetStream(), parameters);
  } catch (const Interrupted&) {
    return 0;
  }
  if (result == 1)
    ShowMessageBox("导出文本文件成功!"_gbk, MessageIcon::kInformation);
  else
    ShowMessageBox("导出文本文件失败!"_gbk, MessageIcon::kError);
  return result;
}

}  // namespace loom
