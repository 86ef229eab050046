#include <exception>

#include "manager/io_manager.h"
#include "platform/log.h"

namespace loom {

int CIOManager::ExportTxt() {
  try {
    IExporter* exporter = GetExporterByType(kExporterText);
    return exporter ? exporter->Export() : 0;
  } catch (const std::exception& error) {
    Log(LogLevel::kError, error.what());
    return 0;
  }
}

}  // namespace loom
