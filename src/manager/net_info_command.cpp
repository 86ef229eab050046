#include "manager/io_manager.h"
#include "netinfo/net_info_importer.h"
#include "platform/completes.h"

namespace loom {

int CIOManager::ImportNetInfo(ProtocolTypeEnum& protocol) {
  auto* const importer = dynamic_cast<CNetInfoImporter*>(GetImporterByType(kImporterNetInfo));
  if (importer == nullptr) return 0;
  int result = 0;
  Completes([&] { result = importer->Import("", nullptr); });
  protocol = importer->GetProtocolType();
  return result;
}

}  // namespace loom
