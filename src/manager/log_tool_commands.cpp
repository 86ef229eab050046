#include "manager/io_manager.h"
#include "platform/log.h"

namespace loom {

void CIOManager::CombineLogFile() { Log(LogLevel::kError, "this build cannot combine logs"); }
void CIOManager::PartitionLogfile() { Log(LogLevel::kError, "this build cannot cut logs"); }

}  // namespace loom
