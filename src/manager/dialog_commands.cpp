#include "manager/dialog_commands.h"

#include "components/resource_handle.h"
#include "logtools/combine_file_dialog.h"
#include "logtools/logfile_partition_dialog.h"
#include "manager/io_registry.h"
#include "netinfo/net_info_importer.h"
#include "platform/completes.h"

namespace loom {
namespace {

// With the module's resources current.
template <class Dialog>
void ShowModal() {
  Completes([] {
    const CResourceHandle resources;
    Dialog dialog;
    dialog.DoModal();
  });
}

}  // namespace

int DialogCommands::ExportTxt() {
  return ResultOr(0, [this] {
    IExporter* const exporter = registry_.GetExporterByType(kExporterText);
    return exporter != nullptr ? exporter->Export() : 0;
  });
}

int DialogCommands::ImportNetInfo(ProtocolTypeEnum& protocol) {
  CNetInfoImporter* const importer = registry_.GetNetInfoImporter();
  if (importer == nullptr) return 0;
  const int result = ResultOr(0, [&] { return importer->Import("", nullptr); });
  protocol = importer->GetProtocolType();
  return result;
}

void DialogCommands::CombineLogFile() { ShowModal<CCombineFileDialog>(); }

void DialogCommands::PartitionLogfile() { ShowModal<CLogfilePartitionDlg>(); }

}  // namespace loom
