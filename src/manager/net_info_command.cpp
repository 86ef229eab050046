#include <exception>

#include "manager/io_manager.h"
#include "netinfo/net_info_importer.h"
#include "platform/log.h"

namespace loom {

int CIOManager::ImportNetInfo(ProtocolTypeEnum& protocol) {
  auto* const importer = dynamic_cast<CNetInfoImporter*>(GetImporterByType(kImporterNetInfo));
  if (importer == nullptr) return 0;
  int result = 0;
  try {
    result = importer->Import("", nullptr);
  } catch (const std::exception& error) {
    Log(LogLevel::kError, error.what());
  }
  protocol = importer->GetProtocolType();
  return result;
}

}  // namespace loom
