#include <exception>

#include "components/resource_handle.h"
#include "logtools/combine_file_dialog.h"
#include "logtools/logfile_partition_dialog.h"
#include "manager/io_manager.h"
#include "platform/log.h"

namespace loom {
namespace {

// Shows a dialog with the module's resources current; nothing that it throws goes further.
template <class Dialog>
void ShowModal() {
  try {
    const CResourceHandle resources;
    Dialog dialog;
    dialog.DoModal();
  } catch (const std::exception& error) {
    Log(LogLevel::kError, error.what());
  } catch (...) {
    Log(LogLevel::kError, "a command ended with an unknown exception");
  }
}

}  // namespace

void CIOManager::CombineLogFile() { ShowModal<CCombineFileDialog>(); }
void CIOManager::PartitionLogfile() { ShowModal<CLogfilePartitionDlg>(); }

}  // namespace loom
