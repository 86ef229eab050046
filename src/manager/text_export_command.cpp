#include "manager/io_manager.h"
#include "platform/completes.h"

namespace loom {

int CIOManager::ExportTxt() {
  int result = 0;
  Completes([&] {
    IExporter* const exporter = GetExporterByType(kExporterText);
    if (exporter != nullptr) result = exporter->Export();
  });
  return result;
}

}  // namespace loom
