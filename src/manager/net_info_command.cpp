#include "manager/io_manager.h"

namespace loom {

int CIOManager::ImportNetInfo(ProtocolTypeEnum&) { return 0; }

}  // namespace loom
